#pragma once

#include <QKeyCombination>

class QWindow;

namespace quellton {

// Ctrl+Q ends the application, from the tray menu and from the gallery alike.
inline constexpr QKeyCombination quitKey(Qt::ControlModifier, Qt::Key_Q);

// Makes Ctrl+Q quit while `window` has the keyboard. Qt's shortcut map in a widget application
// matches shortcuts in widget windows only, and the gallery is a plain window.
void quitOnKey(QWindow& window);

}  // namespace quellton
