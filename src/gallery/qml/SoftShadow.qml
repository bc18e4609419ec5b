import QtQuick

// A soft drop shadow under a rounded rectangle the size of its parent.
BorderImage {
    property int blur: 6
    property real cornerRadius: 14
    property real offsetY: 3
    property real strength: 0.16

    readonly property int margin: 2 * blur

    x: -margin
    y: -margin + offsetY
    width: parent.width + 2 * margin
    height: parent.height + 2 * margin
    opacity: strength
    source: "image://shadow/" + blur + "/" + cornerRadius
    border { left: margin + Math.ceil(cornerRadius); right: margin + Math.ceil(cornerRadius)
             top: margin + Math.ceil(cornerRadius); bottom: margin + Math.ceil(cornerRadius) }
    Accessible.ignored: true
}
