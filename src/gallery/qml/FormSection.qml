import QtQuick

// A group of rows on a rounded panel, as grouped forms show them, with an optional footer under it.
Column {
    id: section
    default property alias rows: group.data
    property string footer

    spacing: 6

    Rectangle {
        width: section.width
        height: group.implicitHeight
        radius: 9
        color: Theme.formGroup
        border.width: 1
        border.color: Theme.separator

        Column {
            id: group
            width: parent.width
        }
    }
    TextLabel {
        visible: section.footer !== ""
        width: section.width
        leftPadding: 4
        rightPadding: 4
        text: section.footer
        wrapMode: Text.WordWrap
        color: Theme.secondaryText
        font.pixelSize: Theme.captionSize
    }
}
