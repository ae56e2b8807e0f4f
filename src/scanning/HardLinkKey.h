#pragma once

#include "platform/WalkFolder.h"

#include <cstdint>

namespace dorvik {

// One key per file on disk, for counting hard-linked files once.
inline uint64_t hardLinkKey(const platform::WalkStat& stat) {
    return stat.inode ^ (stat.device << 48);
}

} // namespace dorvik
