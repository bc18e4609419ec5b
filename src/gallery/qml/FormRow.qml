import QtQuick

// One row of a grouped form: the label at the left, the control at the right, a line above every
// row but the first. The control carries the label as its accessible name.
Item {
    id: row
    property string label
    default property alias control: slot.data
    readonly property alias hovered: hover.hovered

    width: parent ? parent.width : 0
    implicitHeight: Math.max(36, slot.childrenRect.height + 12)

    HoverHandler { id: hover }
    Rectangle {
        visible: row.Positioner.index > 0
        anchors { left: parent.left; right: parent.right; leftMargin: 10; rightMargin: 10 }
        height: 1
        color: Theme.separator
    }
    Text {
        anchors { left: parent.left; leftMargin: 12; verticalCenter: parent.verticalCenter }
        text: row.label
        color: Theme.text
        font.pixelSize: Theme.bodySize
        Accessible.ignored: true
    }
    Item {
        id: slot
        anchors { right: parent.right; rightMargin: 10; verticalCenter: parent.verticalCenter }
        width: childrenRect.width
        height: childrenRect.height
    }
}
