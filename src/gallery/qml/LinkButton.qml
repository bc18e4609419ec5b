import QtQuick
import QtQuick.Templates as T

// A button that looks like a link: accent-coloured caption text, underlined under the pointer.
T.AbstractButton {
    id: link
    implicitWidth: label.implicitWidth + leftPadding + rightPadding
    implicitHeight: label.implicitHeight + topPadding + bottomPadding
    padding: 0
    focusPolicy: Qt.StrongFocus
    hoverEnabled: true
    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()

    contentItem: Text {
        id: label
        text: link.text
        color: link.pressed ? Qt.darker(Theme.accent, 1.3) : Theme.accent
        font.pixelSize: Theme.captionSize
        font.underline: link.hovered || link.visualFocus
        Accessible.ignored: true
    }
    HoverHandler { cursorShape: Qt.PointingHandCursor }

    Accessible.role: Accessible.Link
    Accessible.name: text
}
