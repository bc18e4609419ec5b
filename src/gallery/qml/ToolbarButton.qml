import QtQuick
import QtQuick.Templates as T

// A toolbar button: symbol and text, a tooltip, and a popover that a click (or Space or Enter) opens
// and closes. Without a popover it is a plain button.
T.AbstractButton {
    id: button
    property string symbol
    property string tip
    property T.Popup popover: null
    readonly property bool open: popover !== null && popover.visible

    implicitHeight: 30
    implicitWidth: label.implicitWidth + 22
    focusPolicy: Qt.StrongFocus
    hoverEnabled: true

    onPopoverChanged: if (popover) popover.parent = button
    Component.onCompleted: if (popover) popover.parent = button
    onClicked: if (popover) popover.visible ? popover.close() : popover.open()
    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()

    background: Rectangle {
        radius: 8
        color: button.pressed || button.open ? Theme.track : button.hovered ? Theme.hover : Theme.toolbarButton
        border.width: button.visualFocus ? 2 : 0
        border.color: Theme.accent
        Behavior on color { ColorAnimation { duration: 120 } }
    }
    contentItem: Item {
        Row {
            id: label
            anchors.centerIn: parent
            spacing: 6
            ReplacingSymbol {
                anchors.verticalCenter: parent.verticalCenter
                name: button.symbol
                color: button.open ? Theme.accent : Theme.text
                size: 16
            }
            Text {
                anchors.verticalCenter: parent.verticalCenter
                text: button.text
                color: Theme.text
                font.pixelSize: Theme.bodySize
                Accessible.ignored: true
            }
        }
    }

    Tip {
        visible: button.hovered && !button.open
        text: button.tip
    }
    Accessible.role: Accessible.Button
    Accessible.name: text
    Accessible.description: tip
}
