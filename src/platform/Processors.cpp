#include "platform/Processors.h"

#include <sched.h>

namespace dorvik::platform {

int usableProcessors() {
    cpu_set_t set;
    CPU_ZERO(&set);
    if (sched_getaffinity(0, sizeof set, &set) != 0) {
        return 1;
    }
    const int count = CPU_COUNT(&set);
    return count > 0 ? count : 1;
}

} // namespace dorvik::platform
