#pragma once

namespace quellton {

// Puts the calling thread behind the live drawing and the user interface for the CPU: for work
// nobody waits for (compiling the other pictures, stills, thumbnails).
void lowerThisThreadsPriority();

}  // namespace quellton
