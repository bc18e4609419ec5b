#pragma once

#include <memory>

#include "DesktopHost.h"

namespace quellton {

class SettingsStore;

// The host of this session, chosen here and only here: KDE Plasma's wallpaper plugin on Plasma
// (either session), the wlroots background layer where our own Wayland connection has it, else the
// X11 desktop Qt runs on; none where no desktop layer exists. `settings` keeps what a host must give back.
std::unique_ptr<DesktopHost> makeDesktopHost(std::shared_ptr<SettingsStore> settings);

}  // namespace quellton
