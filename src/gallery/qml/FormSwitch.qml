import QtQuick
import QtQuick.Templates as T

// An on/off switch in our colours; its knob slides with a short spring.
T.Switch {
    id: control
    property string name

    implicitWidth: 38
    implicitHeight: 22
    padding: 0
    focusPolicy: Qt.StrongFocus
    Keys.onReturnPressed: flip()
    Keys.onEnterPressed: flip()

    // As a click: toggle() alone does not tell the owner.
    function flip() {
        toggle()
        toggled()
    }

    indicator: Rectangle {
        width: control.width
        height: control.height
        radius: height / 2
        color: control.checked ? Theme.accent : Theme.track
        border.width: control.visualFocus ? 2 : 0
        border.color: Theme.dark ? "white" : Qt.darker(Theme.accent, 1.4)
        Behavior on color { ColorAnimation { duration: Theme.fadeDuration } }

        Rectangle {
            x: control.checked ? parent.width - width - 2 : 2
            y: 2
            width: parent.height - 4
            height: width
            radius: width / 2
            color: "white"
            Behavior on x { NumberAnimation { duration: Theme.springDuration; easing.type: Easing.OutCubic } }
            SoftShadow { z: -1; blur: 2; cornerRadius: width / 2; offsetY: 1; strength: 0.25 }
        }
    }
    contentItem: Item {}

    Accessible.role: Accessible.CheckBox
    Accessible.name: name
    Accessible.checkable: true
    Accessible.checked: checked
}
