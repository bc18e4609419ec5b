#include "ThreadPriority.h"

#include <sys/resource.h>
#include <unistd.h>

namespace quellton {

void lowerThisThreadsPriority() {
    // On Linux a nice value belongs to the thread when given its id.
    constexpr int background = 10;
    setpriority(PRIO_PROCESS, id_t(gettid()), background);
}

}  // namespace quellton
