import QtQuick
import QtQuick.Controls.Basic

// A tooltip in our colours that wraps a long text onto lines of at most 300.
ToolTip {
    id: tip
    delay: 600
    padding: 7
    width: Math.min(300, label.implicitWidth) + leftPadding + rightPadding
    height: label.contentHeight + topPadding + bottomPadding
    // Centred above the parent, by the wrapped size rather than the one-line one.
    x: parent ? Math.round((parent.width - width) / 2) : 0
    y: -height - 4

    contentItem: Text {
        id: label
        text: tip.text
        wrapMode: Text.Wrap
        color: Theme.text
        font.pixelSize: Theme.captionSize + 1
        Accessible.ignored: true
    }
    background: Rectangle {
        radius: 6
        color: Theme.popover
        border.width: 1
        border.color: Theme.popoverBorder
        SoftShadow { z: -1; blur: 6; cornerRadius: 6; offsetY: 2; strength: 0.2 }
    }
}
