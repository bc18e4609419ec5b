import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Templates as T

// A round translucent button on the live picture; its label is its tooltip and its accessible name.
T.AbstractButton {
    id: button
    property string symbol
    property string label

    width: 38
    height: 38
    focusPolicy: Qt.StrongFocus
    scale: pressed ? 0.94 : 1
    Behavior on scale { NumberAnimation { duration: 120 } }

    background: Rectangle {
        radius: width / 2
        color: Qt.rgba(1, 1, 1, button.pressed ? 0.34 : button.hovered ? 0.26 : 0.17)
        border.width: 1
        border.color: Qt.rgba(1, 1, 1, button.visualFocus ? 0.9 : 0.26)
        Behavior on color { ColorAnimation { duration: 120 } }
    }
    contentItem: Item {
        Symbol { anchors.centerIn: parent; name: button.symbol; color: "white"; size: 15 }
    }

    ToolTip.visible: hovered
    ToolTip.delay: 600
    ToolTip.text: label
    Accessible.role: Accessible.Button
    Accessible.name: label
}
