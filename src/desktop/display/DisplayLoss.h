#pragma once

namespace quellton {

// Ends the process at once when a connection to the X server breaks (the user logged out, the
// server died), from whichever thread notices it first. Xlib's own handler calls exit(), which
// a second drawing thread then enters as well and waits in for good. Call after the toolkit
// connected: it replaces the toolkit's handler.
void endProcessOnDisplayLoss();

}  // namespace quellton
