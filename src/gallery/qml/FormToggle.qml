import QtQuick

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

    Tip {
        parent: row
        visible: row.tip !== "" && row.hovered
        text: row.tip
    }
}
