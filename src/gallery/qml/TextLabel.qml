import QtQuick

// A text that screen readers (and GUI tests) can read.
Text {
    Accessible.role: Accessible.StaticText
    Accessible.name: text
}
