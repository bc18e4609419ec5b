import QtQuick
import QtQuick.Controls.Basic

// A card's still: a placeholder with a busy indicator until the picture arrives, then the picture,
// faded in.
Item {
    id: thumbnail
    property string source
    property real radius: 14

    // Opaque underneath, so the card's shadow does not show through the translucent fill.
    Rectangle {
        anchors.fill: parent
        radius: thumbnail.radius
        color: Theme.window
        visible: picture.opacity < 1
    }
    Rectangle {
        anchors.fill: parent
        radius: thumbnail.radius
        color: Theme.quaternaryFill
        visible: picture.opacity < 1

        BusyIndicator {
            anchors.centerIn: parent
            width: 26
            height: 26
            running: parent.visible
            palette.dark: Theme.secondaryText
            Accessible.ignored: true
        }
    }

    Image {
        id: image
        source: thumbnail.source
        visible: false
        mipmap: true
    }

    RoundedImage {
        id: picture
        anchors.fill: parent
        source: image
        radius: thumbnail.radius
        opacity: image.status === Image.Ready ? 1 : 0
        Behavior on opacity { NumberAnimation { duration: 350; easing.type: Easing.OutCubic } }
    }
}
