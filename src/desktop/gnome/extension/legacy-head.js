// GNOME Shell 43 and 44: the legacy extension format.
'use strict';
const {Clutter, Gio, GLib, Meta, Shell} = imports.gi;
const Main = imports.ui.main;
const WorkspaceAnimation = imports.ui.workspaceAnimation;

