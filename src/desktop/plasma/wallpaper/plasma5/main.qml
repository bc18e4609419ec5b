// Plasma 5: the live picture of this desktop's screen, from the program's PipeWire stream, over a
// still of it for the times no stream runs. The program writes the configuration; this only shows it.
// Plasma 5 has no D-Bus for QML, so presses are not forwarded from here.
import QtQuick 2.15
import QtQuick.Window 2.15
import org.kde.pipewire 0.1 as PipeWire
import org.kde.plasma.core 2.0 as PlasmaCore
import org.kde.taskmanager 0.1 as TaskManager

Item {
    id: root

    readonly property int nodeId: wallpaper.configuration.NodeId
    // True once frames have come for a moment: a new picture fades in from black, so the still
    // stays over it until then.
    property bool streaming: false
    readonly property int generation: wallpaper.configuration.Generation

    // Never black: a dark tone until the still has loaded.
    Rectangle {
        anchors.fill: parent
        color: "#101820"
    }

    // A maximized or fullscreen window on this screen hides the picture: then the view goes away, the
    // stream has no one watching, and the program draws nothing for this screen.
    property bool covered: false

    TaskManager.VirtualDesktopInfo { id: virtualDesktops }
    TaskManager.ActivityInfo { id: activities }
    Instantiator {
        id: windows
        model: TaskManager.TasksModel {
            groupMode: TaskManager.TasksModel.GroupDisabled
            screenGeometry: Qt.rect(root.Screen.virtualX, root.Screen.virtualY, root.Screen.width, root.Screen.height)
            virtualDesktop: virtualDesktops.currentDesktop
            activity: activities.currentActivity
            filterByScreen: true
            filterByVirtualDesktop: true
            filterByActivity: true
            filterMinimized: true
        }
        delegate: QtObject {
            readonly property bool covers: model.IsFullScreen === true || model.IsMaximized === true
            onCoversChanged: windows.recount()
        }
        onObjectAdded: Qt.callLater(recount)
        onObjectRemoved: Qt.callLater(recount)
        function recount() {
            let any = false;
            for (let i = 0; i < count; ++i)
                any = any || (objectAt(i) !== null && objectAt(i).covers);
            root.covered = any;
        }
    }

    // One view per node and generation: a changed model makes it anew, connected to the new stream.
    // The view stays visible (kpipewire connects only then) under the still until frames come.
    Repeater {
        model: root.nodeId > 0 && !root.covered ? [root.nodeId + "/" + root.generation] : []
        delegate: PipeWire.PipeWireSourceItem {
            width: root.width
            height: root.height
            nodeId: root.nodeId
            onStateChanged: {
                root.streaming = false;
                if (state === PipeWire.PipeWireSourceItem.Streaming)
                    settle.restart();
                else
                    settle.stop();
            }
            Component.onDestruction: {
                settle.stop();
                root.streaming = false;
            }
        }
    }

    Timer {
        id: settle
        interval: 2000
        onTriggered: root.streaming = true
    }

    // Loaded afresh whenever the stream stops, so it is the newest still the program wrote.
    Image {
        anchors.fill: parent
        visible: !root.streaming
        source: root.streaming ? "" : (wallpaper.configuration.Still || "")
        fillMode: Image.PreserveAspectCrop
        asynchronous: true
        cache: false
    }

    // The gallery through the program itself: a second start asks the running one to show it.
    PlasmaCore.DataSource {
        id: launcher
        engine: "executable"
        onNewData: disconnectSource(sourceName)
    }

    function action_gallery() {
        launcher.connectSource("@QUELLTON_EXECUTABLE@");
    }

    Component.onCompleted: wallpaper.setAction("gallery", "Galerie öffnen …", "@QUELLTON_APP_ID@")
}
