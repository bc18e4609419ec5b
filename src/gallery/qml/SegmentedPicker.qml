import QtQuick
import QtQuick.Templates as T

// A segmented picker: one segment per entry of `model`, the one at `currentIndex` marked. Choosing
// emits `activated`; the owner writes the model, and `currentIndex` follows it. For the keyboard it
// is one stop, the marked segment, and the arrows choose the neighbours; screen readers hear a group
// of radio buttons named `name`.
Item {
    id: picker
    property var model: []
    property int currentIndex: -1
    property string name
    signal activated(int index)

    implicitWidth: 240
    implicitHeight: 26
    Accessible.role: Accessible.Grouping
    Accessible.name: name

    function choose(index, reason) {
        if (index < 0 || index >= segments.count) return
        segments.itemAt(index).forceActiveFocus(reason)
        activated(index)
    }
    // Gives the keyboard to the marked segment (or the first).
    function takeFocus() {
        const segment = segments.itemAt(Math.max(0, currentIndex))
        if (segment) segment.forceActiveFocus()
    }

    // Each segment gets its text's width and an equal share of the rest, so no text is cut short.
    FontMetrics {
        id: metrics
        font.pixelSize: Theme.calloutSize
        font.weight: Font.DemiBold
    }
    readonly property var textWidths: model.map(text => Math.ceil(metrics.advanceWidth(text)))
    readonly property real spare: (width - textWidths.reduce((sum, w) => sum + w, 0)) / Math.max(1, model.length)

    Rectangle {
        anchors.fill: parent
        radius: 7
        color: Theme.track
    }
    Rectangle {
        id: thumb
        // Asked again as the segments are made: itemAt() alone would not tell when they appear.
        readonly property Item marked: segments.count > 0 ? segments.itemAt(picker.currentIndex) : null
        visible: marked !== null
        x: marked ? marked.x + 2 : 0
        y: 2
        width: marked ? marked.width - 4 : 0
        height: picker.height - 4
        radius: 5
        color: Theme.control
        border.width: 1
        border.color: Theme.dark ? Qt.rgba(1, 1, 1, 0.06) : Qt.rgba(0, 0, 0, 0.06)
        Behavior on x { NumberAnimation { duration: Theme.controlSpringDuration; easing.type: Easing.OutCubic } }
        SoftShadow { z: -1; blur: 2; cornerRadius: 5; offsetY: 1; strength: 0.18 }
    }

    Row {
        anchors.fill: parent
        Repeater {
            id: segments
            model: picker.model
            T.RadioButton {
                id: segment
                required property int index
                required property string modelData
                readonly property bool marked: index === picker.currentIndex

                width: (picker.textWidths[index] || 0) + picker.spare
                height: picker.height
                text: modelData
                checked: marked
                // One stop for the whole picker: the marked segment.
                // (Kept while it has the focus: Qt refuses to take it from the focused item.)
                activeFocusOnTab: marked || activeFocus || (picker.currentIndex < 0 && index === 0)
                focusPolicy: activeFocusOnTab ? Qt.StrongFocus : Qt.ClickFocus
                onClicked: picker.activated(index)
                Keys.onLeftPressed: picker.choose(index - 1, Qt.TabFocusReason)
                Keys.onRightPressed: picker.choose(index + 1, Qt.TabFocusReason)
                Keys.onReturnPressed: picker.activated(index)
                Keys.onEnterPressed: picker.activated(index)

                contentItem: Text {
                    text: segment.text
                    horizontalAlignment: Text.AlignHCenter
                    verticalAlignment: Text.AlignVCenter
                    color: Theme.text
                    font.pixelSize: Theme.calloutSize
                    font.weight: segment.marked ? Font.DemiBold : Font.Normal
                    elide: Text.ElideRight
                    Accessible.ignored: true
                }
                background: Rectangle {
                    radius: 5
                    anchors.margins: 2
                    color: "transparent"
                    border.width: segment.visualFocus ? 2 : 0
                    border.color: Theme.accent
                }
                indicator: null
                Accessible.name: text
            }
        }
    }
}
