import QtQuick
import QtQuick.Templates as T

// A colour world to choose: a capsule with the palette's colours from left to right (or, without
// colours, the colour wheel of "Original"), its name under it, a ring in the accent while selected.
T.AbstractButton {
    id: swatch
    property var colors: null
    property bool selected

    implicitWidth: 84
    implicitHeight: content.implicitHeight
    focusPolicy: Qt.StrongFocus
    hoverEnabled: true
    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()

    contentItem: Item {}
    Column {
        id: content
        anchors.horizontalCenter: parent.horizontalCenter
        spacing: 6
        scale: swatch.pressed ? 0.97 : 1
        Behavior on scale { NumberAnimation { duration: Theme.reduceMotion ? 0 : 200; easing.type: Easing.OutCubic } }

        Item {
            anchors.horizontalCenter: parent.horizontalCenter
            width: 76
            height: 26

            Rectangle {
                visible: swatch.colors !== null
                anchors.fill: parent
                radius: height / 2
                gradient: Gradient {
                    orientation: Gradient.Horizontal
                    // Every palette has four stops.
                    GradientStop { position: 0; color: swatch.colors ? swatch.colors[0] : "black" }
                    GradientStop { position: 1 / 3; color: swatch.colors ? swatch.colors[1] : "black" }
                    GradientStop { position: 2 / 3; color: swatch.colors ? swatch.colors[2] : "black" }
                    GradientStop { position: 1; color: swatch.colors ? swatch.colors[3] : "black" }
                }
            }
            ShaderEffect {
                visible: swatch.colors === null
                anchors.fill: parent
                property real radius: height / 2
                readonly property size boxSize: Qt.size(width, height)
                vertexShader: "qrc:/quellton/gallery/shaders/rounded.vert.qsb"
                fragmentShader: "qrc:/quellton/gallery/shaders/angular.frag.qsb"
            }
            Rectangle {
                readonly property real ring: swatch.selected ? 2.5 : swatch.visualFocus ? 2 : 0.5
                anchors.fill: parent
                radius: height / 2
                color: "transparent"
                border.width: ring
                border.color: swatch.selected || swatch.visualFocus ? Theme.accent : Theme.separator
                antialiasing: true
            }
        }
        Text {
            anchors.horizontalCenter: parent.horizontalCenter
            text: swatch.text
            color: swatch.selected ? Theme.text : Theme.secondaryText
            font.pixelSize: Theme.captionSize
            Accessible.ignored: true
        }
    }

    Accessible.role: Accessible.Button
    Accessible.name: text
    Accessible.selectable: true
    Accessible.selected: selected
}
