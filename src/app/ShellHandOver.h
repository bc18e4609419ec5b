#pragma once

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

}  // namespace quellton::ShellHandOver
