import QtQuick

// A symbol that, when it becomes another, lets the old one shrink away while the new one grows in
// (the symbol-replace transition); at once when the desktop wants no animations.
Item {
    id: replacing
    property string name
    property color color: Theme.text
    property int size: 16

    property bool showingFirst: true

    implicitWidth: size
    implicitHeight: size

    // Neither symbol binds to `name`: the one going away keeps showing the old symbol.
    onNameChanged: {
        if (showingFirst) second.name = name; else first.name = name
        showingFirst = !showingFirst
    }
    Component.onCompleted: if (first.name === "" && second.name === "") first.name = name

    Symbol {
        id: first
        anchors.centerIn: parent
        color: replacing.color
        size: replacing.size
        opacity: replacing.showingFirst ? 1 : 0
        scale: replacing.showingFirst ? 1 : 0.6
        Behavior on opacity { NumberAnimation { duration: Theme.fadeDuration } }
        Behavior on scale { NumberAnimation { duration: Theme.springDuration; easing.type: Easing.OutCubic } }
    }
    Symbol {
        id: second
        anchors.centerIn: parent
        color: replacing.color
        size: replacing.size
        opacity: replacing.showingFirst ? 0 : 1
        scale: replacing.showingFirst ? 0.6 : 1
        Behavior on opacity { NumberAnimation { duration: Theme.fadeDuration } }
        Behavior on scale { NumberAnimation { duration: Theme.springDuration; easing.type: Easing.OutCubic } }
    }
}
