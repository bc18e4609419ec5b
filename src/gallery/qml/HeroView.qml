import QtQuick
import QtQuick.Layouts
import Quellton
import Quellton.Gallery

// The running visualization, or the hovered one, live and large, with its name and three buttons.
Item {
    id: hero
    implicitHeight: 340
    Accessible.role: Accessible.Grouping
    Accessible.name: "Vorschau"

    readonly property var shown: Gallery.hero

    SoftShadow { blur: 18; cornerRadius: 22; offsetY: 8; strength: 0.22 }

    LivePreview {
        id: preview
        objectName: "livePreview"
        anchors.fill: parent
        radius: 22
        Accessible.ignored: true
    }

    // Darkens the lower half for the texts; takes no clicks, so they reach the picture.
    Rectangle {
        anchors.fill: parent
        radius: 22
        gradient: Gradient {
            GradientStop { position: 0.5; color: "transparent" }
            GradientStop { position: 1.0; color: Qt.rgba(0, 0, 0, 0.55) }
        }
        Accessible.ignored: true
    }

    RowLayout {
        id: row
        anchors { left: parent.left; right: parent.right; bottom: parent.bottom; margins: 22 }
        spacing: 16

        // A short rise whenever another visualization is shown.
        transform: Translate { id: rise }
        Connections {
            target: hero.shown
            function onShownIDChanged() { riseAnimation.restart() }
        }
        NumberAnimation {
            id: riseAnimation
            target: rise; property: "y"; from: Theme.reduceMotion ? 0 : 6; to: 0
            duration: Theme.springDuration; easing.type: Easing.OutCubic
        }

        ColumnLayout {
            spacing: 3
            Layout.alignment: Qt.AlignBottom
            Layout.fillWidth: true

            TextLabel {
                text: hero.shown.category
                color: Qt.rgba(1, 1, 1, 0.7)
                font.pixelSize: Theme.captionSize
                font.weight: Font.DemiBold
                font.letterSpacing: 1.4
            }
            CrossFadeText {
                text: hero.shown.name
                color: "white"
                font.pixelSize: 34
                font.weight: Font.Bold
                font.letterSpacing: -0.8
                Layout.fillWidth: true
            }
            TextLabel {
                text: hero.shown.hint
                color: Qt.rgba(1, 1, 1, 0.75)
                font.pixelSize: Theme.calloutSize + 1
                elide: Text.ElideRight
                Layout.fillWidth: true
            }
        }

        Row {
            spacing: 8
            Layout.alignment: Qt.AlignBottom
            HeroButton { symbol: "backward.fill"; label: "Vorherige"; onClicked: AppModel.previous() }
            HeroButton { symbol: "dice.fill"; label: "Zufällig"; onClicked: AppModel.random() }
            HeroButton { symbol: "forward.fill"; label: "Nächste"; onClicked: AppModel.next() }
        }
    }
}
