import QtQuick

// A text that cross-fades to its new wording; only the arriving text is read out.
Item {
    id: fader
    property string text
    property color color: "white"
    property font font
    property real letterSpacing: 0

    property bool showingFirst: true

    implicitWidth: Math.max(first.implicitWidth, second.implicitWidth)
    implicitHeight: first.implicitHeight

    onTextChanged: {
        if (showingFirst) second.text = text; else first.text = text
        showingFirst = !showingFirst
    }

    TextLabel {
        id: first
        text: fader.text
        color: fader.color
        font: fader.font
        opacity: fader.showingFirst ? 1 : 0
        Behavior on opacity { NumberAnimation { duration: Theme.fadeDuration } }
        Accessible.ignored: !fader.showingFirst
    }
    TextLabel {
        id: second
        color: fader.color
        font: fader.font
        opacity: fader.showingFirst ? 0 : 1
        Behavior on opacity { NumberAnimation { duration: Theme.fadeDuration } }
        Accessible.ignored: fader.showingFirst
    }
}
