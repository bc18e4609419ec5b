#pragma once

#include <QWindow>

#include <memory>

namespace quellton {

// The gallery window, made once by the application delegate and kept for the life of the process.
std::unique_ptr<QWindow> makeGalleryWindow();
// Shows the window made above, raised and activated. The delegate learns of closing from
// QWindow's own visibility change.
void presentGalleryWindow(QWindow& window);

}  // namespace quellton
