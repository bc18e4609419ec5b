#pragma once

#include <QWindow>

#include <memory>

namespace quellton {

// The gallery window, made once by the application delegate and kept for the life of the process.
// The delegate uses only QWindow's own interface on it: show, raise, activate, and the visibility
// change that tells it the window was closed.
std::unique_ptr<QWindow> makeGalleryWindow();

}  // namespace quellton
