#pragma once

namespace quellton {

// A failed capture set-up: the sound server's error code (a PA_ERR_* value), or 0 when the
// call succeeded but delivered nothing usable. It carries no message on purpose: a failure
// leaves capture off silently.
struct CaptureError {
    int status = 0;
};

}  // namespace quellton
