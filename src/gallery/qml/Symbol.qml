import QtQuick

// A monochrome symbol of the gallery's set in one colour.
Image {
    property string name
    property color color: Theme.text
    property int size: 16

    width: size
    height: size
    sourceSize: Qt.size(size * Screen.devicePixelRatio, size * Screen.devicePixelRatio)
    source: name ? Theme.symbol(name, color) : ""
    smooth: true
    Accessible.ignored: true
}
