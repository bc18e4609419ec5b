import QtQuick
import Quellton

// The Mix: on or off, how often and whether on the beat it changes, how many are in it, and
// "Alle", "Keine", "Nächste".
Popover {
    id: popover
    title: "Mix"
    readonly property var controls: Gallery.controls
    width: 320
    padding: 14
    firstControl: enabledToggle.toggle

    FormSection {
        width: 320 - 28

        FormToggle {
            id: enabledToggle
            label: "Mix abspielen"
            checked: AppModel.mixEnabled
            onToggled: checked => AppModel.mixEnabled = checked
        }
        FormRow {
            label: "Wechseln alle"
            FormPicker {
                name: "Wechseln alle"
                model: popover.controls.intervals
                currentIndex: popover.controls.interval
                fallbackText: Math.round(AppModel.mixInterval) + " Sekunden"
                onActivated: index => popover.controls.interval = index
            }
        }
        FormToggle {
            label: "Im Takt wechseln"
            checked: AppModel.mixOnBeat
            onToggled: checked => AppModel.mixOnBeat = checked
        }
        FormRow {
            label: "Ausgewählt"
            TextLabel {
                text: popover.controls.selectedCount
                color: Theme.secondaryText
                font.pixelSize: Theme.bodySize
                Accessible.name: "Ausgewählt: " + text
            }
        }
        Item {
            width: parent.width
            implicitHeight: 42
            Rectangle {
                anchors { left: parent.left; right: parent.right; leftMargin: 10; rightMargin: 10 }
                height: 1
                color: Theme.separator
            }
            Row {
                anchors { left: parent.left; leftMargin: 10; verticalCenter: parent.verticalCenter }
                spacing: 8
                PushButton { text: "Alle"; onClicked: popover.controls.selectAll() }
                PushButton { text: "Keine"; onClicked: popover.controls.selectNone() }
            }
            PushButton {
                anchors { right: parent.right; rightMargin: 10; verticalCenter: parent.verticalCenter }
                text: "Nächste"
                onClicked: AppModel.next()
            }
        }
    }
}
