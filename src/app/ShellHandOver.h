#pragma once

#include <functional>
#include <optional>
#include <span>
#include <string>

namespace quellton::ShellHandOver {

// Started by our GNOME Shell extension: takes the connection the shell handed over
// (WAYLAND_SOCKET) for the wallpaper's windows, so that the toolkit's windows (tray, gallery) use
// an ordinary one. Before the toolkit starts. The exit status when the process cannot go on.
std::optional<int> takeShellConnection(std::span<const std::string> args);

// Started by the user on GNOME under Wayland, with the application object made and no instance
// running: the extension starts the wallpaper, this process ends (with that status). Without the
// extension, says once how to switch it on and returns nothing: the application runs without a
// wallpaper.
std::optional<int> handOverToShell();

// Whether this process runs on GNOME Shell without our extension switched on, so the tray menu
// offers to switch it on (after handOverToShell said so).
bool offersExtensionSwitch();

// Switches the extension on through the shell and ends this process, so that the program the
// extension starts becomes the instance; says why when the shell refuses.
void switchExtensionOn();

// Started by the extension while a user-started instance is ending for it: waits (briefly) until
// `claim` succeeds.
bool claimWhileHandedOver(const std::function<bool()>& claim);

}  // namespace quellton::ShellHandOver
