#include "scanning/WalkThreads.h"

#include "platform/Processors.h"

#include <algorithm>

namespace dorvik {

int machineThreads() {
    return std::clamp(platform::usableProcessors(), oneThread, mostWalkThreads);
}

} // namespace dorvik
