import QtQuick

// A picture clipped to a rounded rectangle with smooth corners.
ShaderEffect {
    property variant source
    property real radius: 14
    readonly property size boxSize: Qt.size(width, height)

    vertexShader: "qrc:/quellton/gallery/shaders/rounded.vert.qsb"
    fragmentShader: "qrc:/quellton/gallery/shaders/rounded.frag.qsb"
}
