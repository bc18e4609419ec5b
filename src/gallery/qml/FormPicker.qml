import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Templates as T

// A pop-up picker of texts (`model` entries with a `text`), in our colours; `fallbackText` shows
// when the current value is none of the choices.
ComboBox {
    id: picker
    property string name
    property string fallbackText

    implicitWidth: 150
    implicitHeight: 26
    textRole: "text"
    font.pixelSize: Theme.calloutSize
    displayText: currentIndex >= 0 ? currentText : fallbackText
    Keys.onReturnPressed: popup.open()
    Keys.onEnterPressed: popup.open()
    Accessible.name: name
    // The chosen text, which screen readers would otherwise not hear: the name is the row's label.
    Accessible.description: displayText

    background: Rectangle {
        radius: 6
        color: Theme.control
        border.width: picker.visualFocus ? 2 : 1
        border.color: picker.visualFocus ? Theme.accent : Theme.controlBorder
    }
    contentItem: Text {
        leftPadding: 9
        rightPadding: picker.indicator.width + 4
        text: picker.displayText
        font: picker.font
        color: Theme.text
        verticalAlignment: Text.AlignVCenter
        elide: Text.ElideRight
        Accessible.ignored: true
    }
    indicator: Symbol {
        x: picker.width - width - 7
        y: (picker.height - height) / 2
        name: "chevron.up.chevron.down"
        color: Theme.secondaryText
        size: 12
    }
    delegate: ItemDelegate {
        id: choice
        required property int index
        required property var modelData
        width: ListView.view ? ListView.view.width : 0
        height: 26
        text: modelData.text
        highlighted: picker.highlightedIndex === index
        contentItem: Text {
            leftPadding: 4
            text: choice.text
            font: picker.font
            color: choice.highlighted ? Theme.accentText : Theme.text
            verticalAlignment: Text.AlignVCenter
            Accessible.ignored: true
        }
        background: Rectangle {
            radius: 5
            color: choice.highlighted ? Theme.accent : "transparent"
        }
        Accessible.role: Accessible.ListItem
        Accessible.name: text
        Accessible.selectable: true
        Accessible.selected: picker.currentIndex === index
    }
    popup: T.Popup {
        y: picker.height + 2
        width: Math.max(picker.width, 150)
        implicitHeight: contentItem.implicitHeight + 8
        padding: 4
        contentItem: ListView {
            implicitHeight: contentHeight
            model: picker.delegateModel
            currentIndex: picker.highlightedIndex
            interactive: false
            Accessible.role: Accessible.List
            Accessible.name: picker.name
        }
        background: Rectangle {
            radius: 8
            color: Theme.popover
            border.width: 1
            border.color: Theme.popoverBorder
            SoftShadow { z: -1; blur: 10; cornerRadius: 8; offsetY: 4; strength: 0.25 }
        }
    }
}
