import QtQuick
import QtQuick.Controls.Basic

// A form row with a switch; `tip` shows while the pointer is over the row.
FormRow {
    id: row
    property bool checked
    property string tip
    readonly property alias toggle: toggle
    signal toggled(bool checked)

    FormSwitch {
        id: toggle
        name: row.label
        checked: row.checked
        onToggled: row.toggled(checked)
        Accessible.description: row.tip
    }

    HoverHandler { id: hover }
    ToolTip.visible: tip !== "" && hover.hovered
    ToolTip.delay: 600
    ToolTip.text: tip
}
