import QtQuick
import QtQuick.Layouts
import QtQuick.Templates as T
import Quellton

// One visualization in the grid: its still selects it, the corner button puts it into the Mix, and
// hovering previews it in the hero.
Item {
    id: card
    required property string visualizerId
    required property string name
    required property string categoryTitle
    required property bool current
    required property bool inMix
    required property string thumbnail

    readonly property bool hovering: hover.hovered

    implicitHeight: pictureArea.height + 9 + caption.height
    z: hovering ? 2 : 0

    HoverHandler {
        id: hover
        onHoveredChanged: hovered ? Gallery.enterCard(card.visualizerId) : Gallery.leaveCard(card.visualizerId)
    }
    // A card that goes away under the pointer (out of the Mix, another filter) is left as well.
    Component.onDestruction: if (hovering) Gallery.leaveCard(visualizerId)

    Item {
        id: pictureArea
        width: card.width
        height: Math.round(card.width * 9 / 16)

        Item {
            id: lifted
            anchors.fill: parent
            scale: (picture.pressed ? 0.97 : 1) * (card.hovering && !Theme.reduceMotion ? 1.025 : 1)
            Behavior on scale { NumberAnimation { duration: picture.pressed ? 120 : Theme.springDuration; easing.type: Easing.OutCubic } }

            SoftShadow {
                blur: 6; offsetY: 3; strength: 0.16
                opacity: card.hovering ? 0 : strength
                Behavior on opacity { NumberAnimation { duration: 300 } }
            }
            SoftShadow {
                blur: 14; offsetY: 8; strength: 0.32
                opacity: card.hovering ? strength : 0
                Behavior on opacity { NumberAnimation { duration: 300 } }
            }

            T.AbstractButton {
                id: picture
                anchors.fill: parent
                focusPolicy: Qt.StrongFocus
                contentItem: Thumbnail { source: card.thumbnail; radius: 14 }
                onClicked: Gallery.chooseCard(card.visualizerId)
                Accessible.role: Accessible.Button
                Accessible.name: card.name + " als Hintergrund setzen"
            }

            Rectangle {
                anchors.fill: parent
                radius: 14
                color: "transparent"
                border.width: card.current || picture.visualFocus ? 3 : 1
                border.color: card.current || picture.visualFocus ? Theme.accent : Qt.rgba(1, 1, 1, 0.08)
                antialiasing: true
            }

            CardMixButton {
                anchors { top: parent.top; right: parent.right; margins: 8 }
                inMix: card.inMix
                cardHovered: card.hovering
                visualizerName: card.name
                onClicked: Gallery.toggleMix(card.visualizerId)
            }
        }
    }

    RowLayout {
        id: caption
        anchors { top: pictureArea.bottom; topMargin: 9; left: parent.left; right: parent.right }
        spacing: 6

        TextLabel {
            text: card.name
            color: Theme.text
            font.pixelSize: Theme.headlineSize
            font.weight: Font.DemiBold
            elide: Text.ElideRight
            Layout.maximumWidth: caption.width - category.implicitWidth - 30
        }
        Symbol {
            visible: card.current
            name: "waveform"
            color: Theme.accent
            size: 13
            Accessible.ignored: !card.current
            Accessible.role: Accessible.Graphic
            Accessible.name: "Aktiv"
        }
        Item { Layout.fillWidth: true }
        TextLabel {
            id: category
            text: card.categoryTitle
            color: Theme.secondaryText
            font.pixelSize: Theme.captionSize
        }
    }
}
