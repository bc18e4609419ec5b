import QtQuick
import Quellton

// The audio status at the sidebar's foot: whether the system's sound is heard, and while it is not,
// the way to the desktop's sound settings. A change of state glides with the controls' spring.
Rectangle {
    id: panel
    readonly property bool hearing: AppModel.hearing

    implicitHeight: row.implicitHeight + 24
    radius: 12
    color: Qt.rgba(Theme.quaternaryFill.r, Theme.quaternaryFill.g, Theme.quaternaryFill.b, Theme.quaternaryFill.a * 0.6)
    clip: true
    Behavior on implicitHeight { NumberAnimation { duration: Theme.controlSpringDuration; easing.type: Easing.OutCubic } }

    Row {
        id: row
        anchors { left: parent.left; right: parent.right; top: parent.top; margins: 12 }
        spacing: 10

        ReplacingSymbol {
            name: panel.hearing ? "waveform" : "speaker.slash"
            color: panel.hearing ? Theme.accent : Theme.secondaryText
            size: 18
        }
        Column {
            id: texts
            width: row.width - 18 - row.spacing

            TextLabel {
                width: parent.width
                text: panel.hearing ? "Hört mit" : "Keine Musik"
                color: Theme.text
                font.pixelSize: Theme.calloutSize
                font.weight: Font.DemiBold
                wrapMode: Text.WordWrap
            }
            TextLabel {
                width: parent.width
                text: panel.hearing ? "Der Systemton steuert den Hintergrund."
                                    : "Spiel etwas ab. Bleibt es still, prüfe die Ausgabe in den Toneinstellungen."
                color: Theme.secondaryText
                font.pixelSize: Theme.captionSize
                wrapMode: Text.WordWrap
            }
            LinkButton {
                id: link
                readonly property bool wanted: !panel.hearing && Gallery.controls.canOpenSoundSettings
                topPadding: 2
                text: "Toneinstellungen öffnen"
                visible: opacity > 0
                enabled: wanted
                opacity: wanted ? 1 : 0
                height: wanted ? implicitHeight : 0
                Behavior on opacity { NumberAnimation { duration: Theme.controlSpringDuration; easing.type: Easing.OutCubic } }
                Behavior on height { NumberAnimation { duration: Theme.controlSpringDuration; easing.type: Easing.OutCubic } }
                onClicked: Gallery.controls.openSoundSettings()
            }
        }
    }
}
