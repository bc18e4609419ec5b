import QtQuick
import QtQuick.Templates as T

// A continuous slider in our colours. When its value is changed from outside (a preset, the tray
// menu), the handle glides there with the controls' spring; while dragged it follows the pointer.
T.Slider {
    id: slider
    property string name

    implicitWidth: 200
    implicitHeight: 22
    padding: 0
    focusPolicy: Qt.StrongFocus
    Accessible.name: name

    Behavior on value {
        enabled: !slider.pressed
        NumberAnimation { duration: Theme.controlSpringDuration; easing.type: Easing.OutCubic }
    }

    background: Item {
        x: slider.leftPadding
        y: slider.topPadding + (slider.availableHeight - height) / 2
        width: slider.availableWidth
        height: 4
        Rectangle {
            anchors.fill: parent
            radius: 2
            color: Theme.track
        }
        Rectangle {
            width: slider.handle.x - slider.leftPadding + slider.handle.width / 2
            height: parent.height
            radius: 2
            color: Theme.accent
        }
    }
    handle: Rectangle {
        x: slider.leftPadding + slider.visualPosition * (slider.availableWidth - width)
        y: slider.topPadding + (slider.availableHeight - height) / 2
        width: 20
        height: 20
        radius: 10
        color: slider.pressed ? (Theme.dark ? "#d8d8de" : "#f0f0f3") : "#ffffff"
        border.width: slider.visualFocus ? 2 : 0.5
        border.color: slider.visualFocus ? Theme.accent : Qt.rgba(0, 0, 0, 0.25)
        SoftShadow { z: -1; blur: 3; cornerRadius: 10; offsetY: 1; strength: 0.3 }
    }
}
