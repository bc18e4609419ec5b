#pragma once

#include <QString>

namespace quellton::gnome {

// Our GNOME Shell extension as the shell knows it (org.gnome.Shell.Extensions on the session bus).
enum class ExtensionState {
    unknown,   // the shell does not answer
    missing,   // the shell does not know it: not installed, or installed after the shell started
    disabled,  // installed, switched off
    enabled,
    failed,    // the shell could not load it
};

QString extensionUuid();
ExtensionState extensionState();
// Asks the shell to switch it on; false when the shell refused.
bool enableExtension();
// Asks the enabled extension to start the program's wallpaper; false when it did not answer.
bool launchThroughExtension();

// The argument with which the extension starts the program.
inline constexpr char shellWallpaperArgument[] = "--gnome-shell-wallpaper";

}  // namespace quellton::gnome
