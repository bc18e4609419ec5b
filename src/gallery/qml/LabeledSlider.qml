import QtQuick

// A heading, a slider named like it, and the words at its two ends.
Column {
    id: group
    property alias title: heading.text
    property alias from: slider.from
    property alias to: slider.to
    property alias value: slider.value
    property alias minimumLabel: minimum.text
    property alias maximumLabel: maximum.text
    property alias slider: slider
    signal moved(real value)

    spacing: 4

    TextLabel {
        id: heading
        color: Theme.text
        font.pixelSize: Theme.subheadlineSize
        font.weight: Font.Medium
        Accessible.ignored: true
    }
    FormSlider {
        id: slider
        width: group.width
        name: heading.text
        onMoved: group.moved(value)
    }
    Item {
        width: group.width
        height: minimum.implicitHeight
        TextLabel {
            id: minimum
            color: Theme.secondaryText
            font.pixelSize: Theme.captionSize
        }
        TextLabel {
            id: maximum
            anchors.right: parent.right
            color: Theme.secondaryText
            font.pixelSize: Theme.captionSize
        }
    }
}
