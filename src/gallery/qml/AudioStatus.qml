import QtQuick

// The audio status panel at the sidebar's foot: a rounded panel with 12 points of padding inside.
// Its content (symbol, title, text, "Datenschutz öffnen") arrives with the controls; until then the
// panel takes no room.
Rectangle {
    id: panel
    default property alias content: body.data
    readonly property bool hasContent: body.children.length > 0

    visible: hasContent
    implicitHeight: hasContent ? body.implicitHeight + 24 : 0
    radius: 12
    color: Qt.rgba(Theme.quaternaryFill.r, Theme.quaternaryFill.g, Theme.quaternaryFill.b, Theme.quaternaryFill.a * 0.6)

    Item {
        id: body
        anchors { fill: parent; margins: 12 }
        implicitHeight: childrenRect.height
    }
}
