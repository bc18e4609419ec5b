#pragma once

#include <memory>

#include "DesktopHost.h"

namespace quellton {

// The host of this session, chosen here and only here: the wlroots background layer where our own
// Wayland connection has it, else the X11 desktop Qt runs on; none where no desktop layer exists.
std::unique_ptr<DesktopHost> makeDesktopHost();

}  // namespace quellton
