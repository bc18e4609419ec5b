import QtQuick
import QtQuick.Controls.Basic
import Quellton

// The detail column: header, the hero (which does not scroll) and the scrolling grid of cards, or the
// empty Mix's panel. The grid's columns are 200 to 300 wide with 18 between them and 24 between rows.
Item {
    id: detail

    GalleryHeader {
        id: header
        anchors { top: parent.top; left: parent.left; right: parent.right }
    }

    HeroView {
        id: hero
        anchors { top: header.bottom; topMargin: 8; left: parent.left; right: parent.right; leftMargin: 20; rightMargin: 20 }
        height: implicitHeight
    }

    GridView {
        id: grid
        objectName: "cards"
        anchors { top: hero.bottom; topMargin: 8; left: parent.left; right: parent.right; bottom: parent.bottom }
        clip: true
        model: Gallery.cards
        Accessible.role: Accessible.List
        Accessible.name: "Darstellungen"

        readonly property real available: width - 40
        readonly property int columns: Math.max(1, Math.floor((available + 18) / (200 + 18)))
        readonly property real columnWidth: Math.floor(Math.min(300, (available - (columns - 1) * 18) / columns))
        readonly property real inset: 20 + Math.floor((available - columns * columnWidth - (columns - 1) * 18) / 2)
        readonly property real cardHeight: Math.round(columnWidth * 9 / 16) + 9 + 20

        leftMargin: inset
        rightMargin: width - inset - columns * cellWidth
        topMargin: 20
        bottomMargin: 0
        cellWidth: columnWidth + 18
        cellHeight: cardHeight + 24
        cacheBuffer: cellHeight * 2
        boundsBehavior: Flickable.StopAtBounds
        reuseItems: false

        delegate: VisualizerCard {
            width: grid.columnWidth
            height: grid.cardHeight
        }

        ScrollBar.vertical: ScrollBar {
            policy: grid.contentHeight > grid.height ? ScrollBar.AlwaysOn : ScrollBar.AsNeeded
            Accessible.ignored: true
        }
    }

    EmptyMixPanel {
        visible: grid.count === 0
        anchors { top: hero.bottom; topMargin: 8 + 40; horizontalCenter: parent.horizontalCenter }
    }
}
