import QtQuick
import QtQuick.Templates as T

// A popover under the button it belongs to: it opens with a short spring, takes the keyboard (its
// first control has the focus, Tab stays inside), and closes on Escape or a click outside it and its
// button, giving the focus back to the button unless something else took it.
T.Popup {
    id: popover
    // The control that gets the focus when the popover opens.
    property Item firstControl: null
    // What screen readers call it: the button's text. (The name belongs to the item that holds the
    // background and the content: the popup itself is no item.)
    property string title
    function nameForScreenReaders() { if (background && background.parent) background.parent.Accessible.name = title }
    onTitleChanged: nameForScreenReaders()
    Component.onCompleted: nameForScreenReaders()

    x: parent ? Math.round((parent.width - width) / 2) : 0
    y: parent ? parent.height + 6 : 0
    margins: 8
    padding: 18
    modal: false
    focus: true
    closePolicy: T.Popup.CloseOnEscape | T.Popup.CloseOnPressOutsideParent
    transformOrigin: T.Popup.Top
    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    implicitHeight: implicitContentHeight + topPadding + bottomPadding

    onOpened: if (firstControl) firstControl.forceActiveFocus()
    onClosed: {
        const focused = parent ? parent.Window.activeFocusItem : null
        if (parent && (!focused || focused === parent.Window.contentItem)) parent.forceActiveFocus(Qt.PopupFocusReason)
    }

    enter: Transition {
        NumberAnimation { property: "opacity"; from: 0; to: 1; duration: Theme.fadeDuration; easing.type: Easing.OutCubic }
        NumberAnimation { property: "scale"; from: 0.94; to: 1; duration: Theme.controlSpringDuration; easing.type: Easing.OutCubic }
    }
    exit: Transition {
        NumberAnimation { property: "opacity"; to: 0; duration: Theme.reduceMotion ? 0 : 120 }
    }

    background: Rectangle {
        radius: 12
        color: Theme.popover
        border.width: 1
        border.color: Theme.popoverBorder
        SoftShadow { z: -1; blur: 18; cornerRadius: 12; offsetY: 8; strength: Theme.dark ? 0.5 : 0.22 }
    }
}
