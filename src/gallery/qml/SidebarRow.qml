import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts

// One row of the sidebar: symbol, text and live count; the selected row is filled with the accent.
ItemDelegate {
    id: row
    required property int index
    required property string label
    required property string symbol
    required property int count
    property bool selected

    height: 30
    padding: 0
    leftPadding: 10
    rightPadding: 10
    text: label
    highlighted: selected
    focusPolicy: Qt.NoFocus

    background: Rectangle {
        radius: 7
        color: row.selected ? Theme.accent : row.hovered ? Theme.hover : "transparent"
    }
    contentItem: RowLayout {
        spacing: 9
        Symbol {
            name: row.symbol
            color: row.selected ? Theme.accentText : Theme.accent
            size: 16
        }
        Text {
            text: row.label
            color: row.selected ? Theme.accentText : Theme.text
            font.pixelSize: Theme.bodySize
            elide: Text.ElideRight
            Layout.fillWidth: true
            Accessible.ignored: true
        }
        TextLabel {
            text: row.count
            color: row.selected ? Qt.rgba(1, 1, 1, 0.85) : Theme.secondaryText
            font.pixelSize: Theme.captionSize + 1
        }
    }
    Accessible.role: Accessible.ListItem
    Accessible.name: label
    Accessible.selectable: true
    Accessible.selected: selected
}
