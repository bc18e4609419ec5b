#include "AppIcons.h"

namespace quellton {

namespace {

const QString symbolName = QStringLiteral(QUELLTON_APP_ID "-symbolic");

// Kept out of Qt's own theme search path (:/icons), so a theme icon's name always means an installed
// file that a tray host in another process can load by that name.
QIcon builtInSymbol() { return QIcon(QStringLiteral(":/quellton/icons/tray-symbol-any-panel.svg")); }

}  // namespace

QIcon applicationIcon() { return QIcon::fromTheme(QStringLiteral(QUELLTON_APP_ID), builtInSymbol()); }

QIcon traySymbol() { return QIcon::fromTheme(symbolName, builtInSymbol()); }

}  // namespace quellton
