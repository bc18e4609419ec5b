import QtQuick

// What the detail column shows when the Mix holds nothing.
Column {
    spacing: 10

    Symbol {
        anchors.horizontalCenter: parent.horizontalCenter
        name: "shuffle"
        color: Theme.secondaryText
        size: 44
    }
    TextLabel {
        anchors.horizontalCenter: parent.horizontalCenter
        text: "Dein Mix ist leer"
        color: Theme.text
        font.pixelSize: 20
        font.weight: Font.Bold
    }
    TextLabel {
        width: Math.min(implicitWidth, 360)
        anchors.horizontalCenter: parent.horizontalCenter
        horizontalAlignment: Text.AlignHCenter
        wrapMode: Text.WordWrap
        text: "Tippe auf das Plus einer Karte, um sie in deinen Mix zu legen."
        color: Theme.secondaryText
        font.pixelSize: Theme.bodySize
    }
}
