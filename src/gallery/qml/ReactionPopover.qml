import QtQuick
import Quellton

// How strongly and how smoothly the picture follows the music: the presets, the two sliders, the
// level meter (running only while this is open) and a hint whether music arrives.
Popover {
    id: popover
    title: "Reaktion"
    readonly property var controls: Gallery.controls
    width: 320
    firstControl: quick

    Column {
        width: 320 - 36
        spacing: 16

        TextLabel {
            text: "Reaktion"
            color: Theme.text
            font.pixelSize: Theme.headlineSize
            font.weight: Font.DemiBold
        }
        SegmentedPicker {
            id: quick
            width: parent.width
            name: "Schnellwahl"
            model: popover.controls.presets
            currentIndex: popover.controls.preset
            onActivated: index => popover.controls.preset = index
            onActiveFocusChanged: if (activeFocus) takeFocus()
        }
        LabeledSlider {
            width: parent.width
            title: "Stärke"
            from: 0
            to: 2.5
            value: AppModel.reactivity
            minimumLabel: "Ruhig"
            maximumLabel: "Extrem"
            onMoved: value => AppModel.reactivity = value
        }
        LabeledSlider {
            width: parent.width
            title: "Bewegung"
            from: 0
            to: 1
            value: AppModel.smoothing
            minimumLabel: "Knackig"
            maximumLabel: "Weich"
            onMoved: value => AppModel.smoothing = value
        }
        LevelMeter {
            width: parent.width
            strength: AppModel.reactivity
            running: popover.visible
        }
        TextLabel {
            width: parent.width
            text: AppModel.hearing ? "So stark kommt die Musik gerade an." : "Spiel Musik ab, um es auszuprobieren."
            wrapMode: Text.WordWrap
            color: Theme.secondaryText
            font.pixelSize: Theme.captionSize
        }
    }
}
