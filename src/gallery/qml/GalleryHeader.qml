import QtQuick
import QtQuick.Layouts
import Quellton

// The detail column's head: the window's title and subtitle on the left, the toolbar on the right.
Item {
    implicitHeight: 64

    Column {
        anchors { left: parent.left; leftMargin: 20; verticalCenter: parent.verticalCenter }
        spacing: 1
        TextLabel {
            text: Gallery.title
            color: Theme.text
            font.pixelSize: Theme.titleSize
            font.weight: Font.Bold
        }
        TextLabel {
            text: Gallery.subtitle
            color: Theme.secondaryText
            font.pixelSize: Theme.calloutSize
        }
    }

    GalleryToolbar {
        objectName: "toolbar"
        anchors { right: parent.right; rightMargin: 16; verticalCenter: parent.verticalCenter }
    }
}
