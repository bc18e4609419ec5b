#pragma once

namespace quellton {

// Whether a display server answers: an X server under DISPLAY or a Wayland socket under
// WAYLAND_DISPLAY. Checked before the toolkit starts, because it aborts without one.
bool graphicalSessionAvailable();

// The wallpaper's desktop layer exists on X11 only for now: where an X server answers, the
// toolkit is asked to use it (also under XWayland), unless the user chose a platform.
void preferX11Platform();

}  // namespace quellton
