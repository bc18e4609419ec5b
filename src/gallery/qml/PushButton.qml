import QtQuick
import QtQuick.Templates as T

// A small bordered push button with a text.
T.AbstractButton {
    id: button
    implicitWidth: Math.max(64, label.implicitWidth + 24)
    implicitHeight: 26
    focusPolicy: Qt.StrongFocus
    hoverEnabled: true
    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()

    background: Rectangle {
        radius: 6
        color: button.pressed ? Theme.track : button.hovered ? Qt.darker(Theme.control, Theme.dark ? 0.9 : 1.03) : Theme.control
        border.width: button.visualFocus ? 2 : 1
        border.color: button.visualFocus ? Theme.accent : Theme.controlBorder
    }
    contentItem: Text {
        id: label
        text: button.text
        color: Theme.text
        font.pixelSize: Theme.calloutSize
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
        Accessible.ignored: true
    }
    scale: pressed ? 0.97 : 1
    Behavior on scale { NumberAnimation { duration: Theme.reduceMotion ? 0 : 120 } }

    Accessible.role: Accessible.Button
    Accessible.name: text
}
