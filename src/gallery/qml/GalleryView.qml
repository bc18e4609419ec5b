import QtQuick
import QtQuick.Controls.Basic

// The window's root: the sidebar and the detail column side by side.
Rectangle {
    color: Theme.window

    SplitView {
        anchors.fill: parent
        orientation: Qt.Horizontal

        handle: Rectangle {
            implicitWidth: 1
            color: Theme.separator
            // A wider grip than the line it draws.
            containmentMask: Item { x: -4; width: 9; height: parent ? parent.height : 0 }
        }

        Sidebar {
            SplitView.minimumWidth: 190
            SplitView.preferredWidth: 214
            SplitView.maximumWidth: 260
        }
        DetailView {
            SplitView.fillWidth: true
        }
    }
}
