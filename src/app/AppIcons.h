#pragma once

#include <QIcon>

namespace quellton {

// The application's icon (windows, taskbar) from the icon theme, where the package installed it.
QIcon applicationIcon();

// The monochrome tray symbol: the icon theme's copy when installed (a theme may restyle it),
// otherwise the one built into the program.
QIcon traySymbol();

}  // namespace quellton
