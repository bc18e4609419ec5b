pragma Singleton
import QtQuick
import Quellton

// Our own palette, light or dark as the desktop says, the type scale and the motion rules.
QtObject {
    readonly property bool dark: Desktop.dark
    readonly property bool reduceMotion: Desktop.reduceMotion

    readonly property color window: dark ? "#1b1b1f" : "#f6f6f8"
    readonly property color sidebar: dark ? "#232328" : "#ebecf0"
    readonly property color separator: dark ? Qt.rgba(1, 1, 1, 0.09) : Qt.rgba(0, 0, 0, 0.09)
    readonly property color text: dark ? "#f2f2f5" : "#1c1c20"
    readonly property color secondaryText: dark ? "#9d9da6" : "#6c6c74"
    readonly property color quaternaryFill: dark ? Qt.rgba(1, 1, 1, 0.07) : Qt.rgba(0, 0, 0, 0.055)
    readonly property color accent: dark ? "#9b87ff" : "#6f52ed"
    readonly property color accentText: "#ffffff"
    readonly property color hover: dark ? Qt.rgba(1, 1, 1, 0.06) : Qt.rgba(0, 0, 0, 0.05)
    // Popovers, their grouped forms and the controls in them.
    readonly property color popover: dark ? "#2b2b31" : "#fbfbfd"
    readonly property color popoverBorder: dark ? Qt.rgba(1, 1, 1, 0.12) : Qt.rgba(0, 0, 0, 0.12)
    readonly property color formGroup: dark ? Qt.rgba(1, 1, 1, 0.05) : Qt.rgba(0, 0, 0, 0.035)
    readonly property color control: dark ? "#3d3d45" : "#ffffff"
    readonly property color controlBorder: dark ? Qt.rgba(1, 1, 1, 0.1) : Qt.rgba(0, 0, 0, 0.16)
    readonly property color track: dark ? Qt.rgba(1, 1, 1, 0.14) : Qt.rgba(0, 0, 0, 0.12)
    readonly property color toolbarButton: dark ? Qt.rgba(1, 1, 1, 0.06) : Qt.rgba(0, 0, 0, 0.04)

    readonly property string fontFamily: Qt.application.font.family
    readonly property int titleSize: 20
    readonly property int headlineSize: 13
    readonly property int bodySize: 13
    readonly property int calloutSize: 12
    readonly property int captionSize: 11
    readonly property int caption2Size: 10
    readonly property int subheadlineSize: 12

    // A spring of response 0.3 s without bounce, or nothing when the desktop wants no animations.
    readonly property int springDuration: reduceMotion ? 0 : 300
    readonly property int fadeDuration: reduceMotion ? 0 : 220
    // The controls' springs of response 0.35 s (presets, the audio status, popovers).
    readonly property int controlSpringDuration: reduceMotion ? 0 : 350

    function symbol(name, colour) {
        return "image://symbol/" + name + "/" + colour.toString().slice(-6)
    }
}
