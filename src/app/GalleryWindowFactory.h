#pragma once

#include <QWindow>

#include <memory>

namespace quellton {

// The gallery window, made once by the application delegate and kept for the life of the process.
// Its scene is made in the background: it shows only once it can be drawn.
std::unique_ptr<QWindow> makeGalleryWindow();
// Shows the window made above (at once, or as soon as its scene is made), raised and activated.
// The delegate learns of closing from QWindow's own visibility change.
void presentGalleryWindow(QWindow& window);

}  // namespace quellton
