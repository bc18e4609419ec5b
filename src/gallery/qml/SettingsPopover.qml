import QtQuick
import Quellton

// Quality and frame rate, the screens, the system's own desktop picture, and starting at login.
Popover {
    id: popover
    title: "Einstellungen"
    readonly property var controls: Gallery.controls
    width: 340
    padding: 14
    firstControl: quality

    Column {
        width: 340 - 28
        spacing: 14

        FormSection {
            width: parent.width
            footer: "„Sparsam“ schont den Akku. Im Stromsparmodus läuft Quellton immer mit 30 fps."

            FormRow {
                label: "Qualität"
                SegmentedPicker {
                    id: quality
                    width: 224
                    name: "Qualität"
                    model: popover.controls.qualities
                    currentIndex: popover.controls.qualities.indexOf(AppModel.quality)
                    onActivated: index => AppModel.quality = popover.controls.qualities[index]
                    onActiveFocusChanged: if (activeFocus) takeFocus()
                }
            }
            FormRow {
                label: "Bildrate"
                FormPicker {
                    name: "Bildrate"
                    implicitWidth: 110
                    model: popover.controls.frameRates
                    currentIndex: popover.controls.frameRate
                    fallbackText: AppModel.fps + " fps"
                    onActivated: index => popover.controls.frameRate = index
                }
            }
        }
        FormSection {
            width: parent.width

            FormToggle {
                label: "Auf allen Bildschirmen"
                checked: AppModel.allScreens
                onToggled: checked => AppModel.allScreens = checked
            }
            FormToggle {
                label: "Systemhintergrund angleichen"
                tip: "Setzt das Schreibtischbild auf ein Standbild der laufenden Darstellung – für Übersicht, Anmelde- und Sperrbildschirm. Ausschalten stellt dein altes Bild wieder her."
                checked: AppModel.syncSystemWallpaper
                onToggled: checked => AppModel.syncSystemWallpaper = checked
            }
            FormToggle {
                label: "Bei der Anmeldung starten"
                checked: AppModel.launchAtLogin
                onToggled: checked => AppModel.launchAtLogin = checked
            }
        }
    }
}
