import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Templates as T

// The round plus/check button in a card's corner: seen while the card is hovered or in the Mix, and
// there (for the keyboard and screen readers) also when not seen.
T.AbstractButton {
    id: button
    property bool inMix
    property bool cardHovered
    property string visualizerName

    width: 28
    height: 28
    opacity: cardHovered || inMix || hovered || visualFocus ? 1 : 0
    Behavior on opacity { NumberAnimation { duration: Theme.fadeDuration } }

    background: Rectangle {
        radius: width / 2
        color: button.inMix ? Theme.accent : Qt.rgba(0, 0, 0, button.hovered ? 0.5 : 0.38)
        border.width: 1
        border.color: Qt.rgba(1, 1, 1, button.inMix ? 0.35 : 0.22)
        Behavior on color { ColorAnimation { duration: Theme.fadeDuration } }
    }
    contentItem: Item {
        Symbol {
            id: plus
            anchors.centerIn: parent
            name: "plus"
            color: "white"
            size: 12
            opacity: button.inMix ? 0 : 1
            scale: button.inMix ? 0.5 : 1
            Behavior on opacity { NumberAnimation { duration: Theme.fadeDuration } }
            Behavior on scale { NumberAnimation { duration: Theme.fadeDuration } }
        }
        Symbol {
            anchors.centerIn: parent
            name: "checkmark"
            color: "white"
            size: 12
            opacity: 1 - plus.opacity
            scale: button.inMix ? 1 : 0.5
            Behavior on scale { NumberAnimation { duration: Theme.fadeDuration } }
        }
    }

    ToolTip.visible: hovered
    ToolTip.delay: 600
    ToolTip.text: inMix ? "Aus dem Mix nehmen" : "In den Mix legen"
    Accessible.role: Accessible.Button
    Accessible.name: visualizerName + (inMix ? " aus dem Mix nehmen" : " in den Mix legen")
}
