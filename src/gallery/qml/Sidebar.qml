import QtQuick
import QtQuick.Controls.Basic
import Quellton

// The sidebar: "Bibliothek" and "Kategorien" as one selectable list, the audio status pinned below it.
Rectangle {
    color: Theme.sidebar

    ListView {
        id: list
        objectName: "sidebar"
        anchors { fill: parent; leftMargin: 10; rightMargin: 10; bottomMargin: foot.height }
        topMargin: 12
        bottomMargin: 12
        spacing: 2
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        model: Gallery.sidebar
        currentIndex: Gallery.selectedRow
        keyNavigationEnabled: true
        focus: true
        onCurrentIndexChanged: Gallery.selectedRow = currentIndex
        Accessible.role: Accessible.List
        Accessible.name: "Seitenleiste"

        section.property: "section"
        section.delegate: Text {
            required property string section
            text: section
            width: ListView.view.width
            leftPadding: 10
            topPadding: section === "Bibliothek" ? 4 : 16
            bottomPadding: 6
            color: Theme.secondaryText
            font.pixelSize: Theme.captionSize
            font.weight: Font.DemiBold
        }

        delegate: SidebarRow {
            width: ListView.view.width
            selected: index === Gallery.selectedRow
            onClicked: Gallery.selectedRow = index
        }

        ScrollIndicator.vertical: ScrollIndicator {}
    }

    Item {
        id: foot
        anchors { left: parent.left; right: parent.right; bottom: parent.bottom }
        height: status.visible ? status.implicitHeight + 24 : 0

        AudioStatus {
            id: status
            objectName: "audioStatus"
            anchors { left: parent.left; right: parent.right; top: parent.top; margins: 12 }
        }
    }
}
