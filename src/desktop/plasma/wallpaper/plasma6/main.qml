// Plasma 6: the live picture of this desktop's screen, from the program's PipeWire stream, over a
// still of it for the times no stream runs. Presses and the gallery entry go to the program over
// the session bus. The program writes the configuration; this only shows it and forwards.
import QtQuick
import QtQuick.Window
import org.kde.pipewire as PipeWire
import org.kde.plasma.core as PlasmaCore
import org.kde.plasma.plasmoid
import org.kde.taskmanager as TaskManager
import org.kde.plasma.workspace.dbus as DBus

WallpaperItem {
    id: root

    readonly property int nodeId: configuration.NodeId
    // True once frames have come for a moment: a new picture fades in from black, so the still
    // stays over it until then.
    property bool streaming: false
    readonly property int generation: configuration.Generation

    function callProgram(path, iface, member, args) {
        DBus.SessionBus.asyncCall({
            "service": "@QUELLTON_APP_ID@",
            "path": path,
            "iface": iface,
            "member": member,
            "arguments": args
        });
    }

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
        source: root.streaming ? "" : (root.configuration.Still || "")
        fillMode: Image.PreserveAspectCrop
        asynchronous: true
        cache: false
    }

    // Sees every press on the desktop, also on icons; only newly pressed buttons are sent. JavaScript
    // numbers travel as doubles, which is what the program's Press takes.
    HoverHandler {
        property int held: 0
        onPointChanged: {
            const buttons = point.pressedButtons;
            const pressed = buttons & ~held;
            held = buttons;
            if (pressed && root.nodeId > 0)
                root.callProgram("/io/github/quellton/Quellton/Wallpaper", "@QUELLTON_WALLPAPER_INTERFACE@", "Press",
                                 [root.nodeId, point.position.x, point.position.y, pressed]);
        }
    }

    contextualActions: [
        PlasmaCore.Action {
            text: "Galerie öffnen …"
            icon.name: "@QUELLTON_APP_ID@"
            // The program's own activation opens its gallery.
            onTriggered: root.callProgram("/io/github/quellton/Quellton", "org.freedesktop.Application", "Activate", [{}])
        }
    ]
}
