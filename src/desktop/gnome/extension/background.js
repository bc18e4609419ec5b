// Quellton's live picture as the desktop background. The program draws its windows; this part
// only starts it, shows those windows as the background, and tells it about left presses on the
// desktop and about monitors nobody can see. Built into both extension formats: the lines before
// and after this file bring in Clutter, Gio, GLib, Meta, Shell, Main and WorkspaceAnimation.

const PROGRAM_ARGV = ['@QUELLTON_PROGRAM@', '--gnome-shell-wallpaper'];
// Started with the shell or again after a crash, the program starts as at login: no gallery.
const AT_LOGIN = '--autostart';
const PROGRAM_BUS_NAME = '@QUELLTON_APP_ID@';
const PROGRAM_PATH = '/io/github/quellton/Quellton/ShellWallpaper';
const PROGRAM_INTERFACE = 'io.github.quellton.Quellton.ShellWallpaper';
const EXTENSION_PATH = '/io/github/quellton/Quellton/ShellExtension';
const EXTENSION_XML = `<node>
  <interface name="io.github.quellton.Quellton.ShellExtension">
    <method name="Launch"/>
  </interface>
</node>`;
// Restarts after a crash wait 2, 4, 8 … s; this many crashes within a minute end the tries.
const CRASH_WINDOW_US = 60 * 1000 * 1000;
const CRASHES_TO_GIVE_UP = 4;

// Starts the program through mutter so that owns_window() tells its windows apart; the three
// generations of that API are told apart by what they offer, not by version numbers.
function spawnWaylandClient(argv) {
    const launcher = new Gio.SubprocessLauncher({flags: Gio.SubprocessFlags.NONE});
    if (Meta.WaylandClient.new_subprocess) {
        const client = Meta.WaylandClient.new_subprocess(global.context, launcher, argv);
        return [client, client.get_subprocess()];
    }
    let client;
    try {
        client = Meta.WaylandClient.new(launcher);
    } catch (e) {
        client = Meta.WaylandClient.new(global.context, launcher);
    }
    return [client, client.spawnv(global.display, argv)];
}

// The program names the monitor a window is for in its title, as "x,y,width,height".
function monitorOf(win) {
    const rect = (win.get_title() ?? '').split(',').map(Number);
    return Main.layoutManager.monitors.find(m =>
        m.x === rect[0] && m.y === rect[1] && m.width === rect[2] && m.height === rect[3]) ?? null;
}

// Windows that stand for the desktop itself: DING's (it marks them) and X11 desktop windows.
function isDesktopWindow(win) {
    return Boolean(win.customJS_ding) || win.get_window_type() === Meta.WindowType.DESKTOP;
}

var QuelltonBackground = class {
    constructor() {
        this._signals = [];
        this._patches = [];
        this._pictures = new Map();  // our Meta.Window → {actor, box, clone, signals}
        this._crashes = [];
        this._client = null;
        this._process = null;
        this._restartId = 0;
        this._retryId = 0;
        this._sentHidden = null;
        this._pressWatchId = 0;
        this._buttonDown = false;
    }

    enable() {
        const self = this;
        this._patch(Shell.Global.prototype, 'get_window_actors', original => function (...args) {
            return original.apply(this, args).filter(a => !self._pictures.has(a.meta_window));
        });
        // Each workspace slides with the picture of its monitor over its static background.
        this._patch(WorkspaceAnimation.WorkspaceGroup.prototype, '_createWindows', original => function () {
            original.call(this);
            const picture = self._pictureOn(this._monitor.index);
            if (this._background && picture)
                this._background.add_child(new Clutter.Clone({source: picture.box, x: 0, y: 0}));
        });

        this._connect(global.display, 'window-created', (_display, win) => this._adopt(win));
        this._connect(global.display, 'notify::focus-window', () => this._passFocus());
        this._connect(Main.layoutManager, 'monitors-changed', () => this._placeAll());
        this._connectFirst(Main.layoutManager._backgroundGroup, ['child-added', 'actor-added'], () => this._raiseBoxes());
        // Mutter hands presses on a window (DING's covers the desktop) straight to its client;
        // no signal reports them, so the left button is looked at 25 times a second.
        this._pressWatchId = GLib.timeout_add(GLib.PRIORITY_DEFAULT, 40, () => {
            this._watchPresses();
            return GLib.SOURCE_CONTINUE;
        });

        const update = () => this._updateHidden();
        for (const name of ['restacked', 'in-fullscreen-changed'])
            this._connect(global.display, name, update);
        for (const name of ['size-changed', 'minimize', 'unminimize'])
            this._connect(global.window_manager, name, update);
        this._connect(global.workspace_manager, 'active-workspace-changed', update);
        this._connect(Main.overview, 'showing', update);
        this._connect(Main.overview, 'hidden', update);
        this._connect(Main.sessionMode, 'updated', update);
        if (Main.screenShield) {
            this._connect(Main.screenShield, 'active-changed', update);
            this._connect(Main.screenShield, 'locked-changed', update);
        }
        // A (re)started program learns the current state as soon as it is on the bus.
        this._watchId = Gio.bus_watch_name(Gio.BusType.SESSION, PROGRAM_BUS_NAME, Gio.BusNameWatcherFlags.NONE,
            () => {
                this._sentHidden = null;
                this._updateHidden();
            }, null);

        this._exported = Gio.DBusExportedObject.wrapJSObject(EXTENSION_XML, this);
        this._exported.export(Gio.DBus.session, EXTENSION_PATH);
        this._launch([AT_LOGIN]);
    }

    disable() {
        this._exported.unexport();
        Gio.bus_unwatch_name(this._watchId);
        for (const id of [this._restartId, this._retryId, this._pressWatchId]) {
            if (id)
                GLib.source_remove(id);
        }
        this._restartId = this._retryId = this._pressWatchId = 0;
        const process = this._process;
        this._process = null;
        this._client = null;
        process?.send_signal(15);
        for (const win of [...this._pictures.keys()])
            this._forget(win);
        for (const [object, id] of this._signals)
            object.disconnect(id);
        this._signals = [];
        for (const [object, name, original] of this._patches)
            object[name] = original;
        this._patches = [];
    }

    // The D-Bus method a start of the program by the user calls: the program runs from here.
    Launch() {
        if (this._process)
            return;
        if (this._restartId)
            GLib.source_remove(this._restartId);
        this._restartId = 0;
        this._crashes = [];
        this._launch([]);
    }

    _connect(object, name, callback) {
        this._signals.push([object, object.connect(name, callback)]);
    }

    // Newer Clutter renamed some signals; the first name that exists is used.
    _connectFirst(object, names, callback) {
        for (const name of names) {
            try {
                this._connect(object, name, callback);
                return;
            } catch (e) {}
        }
    }

    _patch(object, name, makeReplacement) {
        const original = object[name];
        this._patches.push([object, name, original]);
        object[name] = makeReplacement(original);
    }

    _launch(extraArguments) {
        this._restartId = 0;
        let process;
        try {
            [this._client, process] = spawnWaylandClient([...PROGRAM_ARGV, ...extraArguments]);
        } catch (e) {
            console.warn(`Quellton: Das Programm startet nicht: ${e.message}`);
            return;
        }
        this._process = process;
        process.wait_async(null, (p, result) => {
            try {
                p.wait_finish(result);
            } catch (e) {}
            if (p === this._process)
                this._exited(p);
        });
    }

    _exited(process) {
        this._process = null;
        this._client = null;
        for (const win of [...this._pictures.keys()])
            this._forget(win, false);
        // Quit by the user: it stays quit until started again.
        if (process.get_if_exited() && process.get_exit_status() === 0)
            return;
        const now = GLib.get_monotonic_time();
        this._crashes = this._crashes.filter(t => now - t < CRASH_WINDOW_US);
        this._crashes.push(now);
        if (this._crashes.length >= CRASHES_TO_GIVE_UP) {
            console.warn('Quellton: Das Programm ist in einer Minute mehrmals abgestürzt; es wird nicht neu gestartet.');
            return;
        }
        this._restartId = GLib.timeout_add(GLib.PRIORITY_DEFAULT, 1000 * 2 ** this._crashes.length, () => {
            this._launch([AT_LOGIN]);
            return GLib.SOURCE_REMOVE;
        });
    }

    _adopt(win) {
        if (!this._client?.owns_window(win) || this._pictures.has(win))
            return;
        this._client.hide_from_window_list(win);
        win.stick();
        const picture = {actor: null, box: null, clone: null, signals: []};
        this._pictures.set(win, picture);
        picture.signals.push([win, win.connect('unmanaged', () => this._forget(win, false))]);
        picture.signals.push([win, win.connect('notify::title', () => this._place(win))]);
        this._attach(win, picture);
    }

    _attach(win, picture) {
        const actor = win.get_compositor_private();
        if (!actor) {
            // The actor comes a moment after the window on some versions.
            GLib.idle_add(GLib.PRIORITY_DEFAULT, () => {
                if (this._pictures.get(win) === picture)
                    this._attach(win, picture);
                return GLib.SOURCE_REMOVE;
            });
            return;
        }
        picture.actor = actor;
        // Its signals go with it; nothing is left to disconnect then.
        actor.connect('destroy', () => {
            picture.signals = picture.signals.filter(([object]) => object !== actor);
        });
        // Hidden, not transparent: mutter would skip drawing what lies below an opaque window.
        actor.hide();
        picture.signals.push([actor, actor.connect('notify::visible', () => {
            if (actor.visible)
                actor.hide();
        })]);
        // Mutter makes the window of a Wayland client once it has a buffer: there is a picture now.
        picture.box = new Clutter.Actor({clip_to_allocation: true, reactive: false});
        picture.clone = new Clutter.Clone({source: actor, reactive: false});
        picture.box.add_child(picture.clone);
        Main.layoutManager._backgroundGroup.add_child(picture.box);
        this._place(win);
    }

    _forget(win, stays = true) {
        const picture = this._pictures.get(win);
        if (!picture)
            return;
        this._pictures.delete(win);
        for (const [object, id] of picture.signals)
            object.disconnect(id);
        picture.box?.destroy();
        // A window that outlives us (a program slow to end) stays out of sight.
        if (stays && picture.actor && !win.minimized)
            win.minimize();
    }

    // Over the whole monitor, the top bar's strip included, whatever room mutter gave the window.
    _place(win) {
        const picture = this._pictures.get(win);
        if (!picture?.box)
            return;
        const monitor = monitorOf(win);
        picture.box.visible = monitor !== null;
        if (!monitor)
            return;
        picture.box.set_position(monitor.x, monitor.y);
        picture.box.set_size(monitor.width, monitor.height);
        picture.clone.set_position(0, 0);
        picture.clone.set_size(monitor.width, monitor.height);
    }

    _placeAll() {
        for (const win of this._pictures.keys())
            this._place(win);
        this._updateHidden();
    }

    _pictureOn(monitorIndex) {
        for (const [win, picture] of this._pictures) {
            if (picture.box && monitorOf(win)?.index === monitorIndex)
                return picture;
        }
        return null;
    }

    // Above the static backgrounds, which the shell replaces when the picture setting changes.
    _raiseBoxes() {
        const group = Main.layoutManager._backgroundGroup;
        for (const picture of this._pictures.values()) {
            if (picture.box)
                group.set_child_above_sibling(picture.box, null);
        }
    }

    _passFocus() {
        const focused = global.display.focus_window;
        if (!focused || !this._pictures.has(focused))
            return;
        const workspace = global.workspace_manager.get_active_workspace();
        const others = global.display.sort_windows_by_stacking(workspace.list_windows())
            .filter(w => !this._pictures.has(w) && !w.minimized);
        const top = others[others.length - 1];
        if (top)
            top.activate(global.get_current_time());
        else
            global.display.unset_input_focus(global.get_current_time());
    }

    _watchPresses() {
        const [x, y, mods] = global.get_pointer();
        const down = (mods & Clutter.ModifierType.BUTTON1_MASK) !== 0;
        const pressed = down && !this._buttonDown;
        this._buttonDown = down;
        if (pressed && this._pictures.size > 0 && this._desktopAt(x, y)) {
            Gio.DBus.session.call(PROGRAM_BUS_NAME, PROGRAM_PATH, PROGRAM_INTERFACE, 'Click',
                new GLib.Variant('(dd)', [x, y]), null, Gio.DBusCallFlags.NO_AUTO_START, -1, null, null);
        }
    }

    // Whether a press there reaches the desktop: the background or a desktop-icons window.
    _desktopAt(x, y) {
        if (Main.overview.visible || Main.sessionMode.isLocked)
            return false;
        const picked = global.stage.get_actor_at_pos(Clutter.PickMode.REACTIVE, x, y);
        if (!picked || picked === global.stage)
            return true;
        for (let actor = picked; actor; actor = actor.get_parent()) {
            if (actor instanceof Meta.WindowActor)
                return isDesktopWindow(actor.meta_window);
            if (actor === Main.layoutManager._backgroundGroup)
                return true;
        }
        return false;
    }

    // Monitors nobody sees: all while locked, blanked or in the overview; one under a fullscreen
    // or maximized window of the current workspace.
    _updateHidden() {
        const all = Main.sessionMode.isLocked || Main.screenShield?.active || Main.overview.visible;
        const workspace = global.workspace_manager.get_active_workspace();
        const windows = workspace.list_windows().filter(w => !this._pictures.has(w) && !isDesktopWindow(w) &&
            !w.minimized && w.showing_on_its_workspace());
        const hidden = Main.layoutManager.monitors.filter(m => all || m.inFullscreen ||
            windows.some(w => w.get_monitor() === m.index &&
                (w.is_fullscreen() || w.get_maximized() === Meta.MaximizeFlags.BOTH)));
        const rects = hidden.map(m => [m.x, m.y, m.width, m.height]);
        const key = JSON.stringify(rects);
        if (key === this._sentHidden)
            return;
        this._sentHidden = key;
        Gio.DBus.session.call(PROGRAM_BUS_NAME, PROGRAM_PATH, PROGRAM_INTERFACE, 'SetHidden',
            new GLib.Variant('(a(iiii))', [rects]), null, Gio.DBusCallFlags.NO_AUTO_START, -1, null,
            (bus, result) => {
                try {
                    bus.call_finish(result);
                } catch (e) {
                    // Not listening yet (a program just started): told again once it is.
                    this._sentHidden = null;
                    this._retryHidden();
                }
            });
    }

    _retryHidden() {
        if (this._retryId || !this._process)
            return;
        this._retryId = GLib.timeout_add(GLib.PRIORITY_DEFAULT, 500, () => {
            this._retryId = 0;
            this._updateHidden();
            return GLib.SOURCE_REMOVE;
        });
    }
};
