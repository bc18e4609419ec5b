#pragma once

#include <string>

namespace quellton {

// Lets the shader library make its contexts on the application's display, so windows and offscreen
// work share one group. Call after the QGuiApplication exists and before the library's first use.
// False (with a reason) when this window system offers no OpenGL 3.3 through EGL.
bool useWindowSystemGl(std::string* error = nullptr);

}  // namespace quellton
