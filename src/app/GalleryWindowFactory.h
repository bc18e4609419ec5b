#pragma once

#include <QWindow>

#include <memory>

namespace quellton {

// The gallery window, built once and kept: closing it only hides it.
std::unique_ptr<QWindow> makeGalleryWindow();

}  // namespace quellton
