#include "reclaim/DuplicateGroup.h"

#include <algorithm>

namespace dorvik {

int64_t DuplicateGroup::recoverableBytes() const {
    const auto unshared = static_cast<int64_t>(
        std::count_if(files.begin(), files.end(),
                      [&](const FileNodePtr& file) { return !shared.contains(file.get()); }));
    const int64_t stored = shared.empty() ? unshared : unshared + 1;
    return size * std::max<int64_t>(stored - 1, 0);
}

bool isPracticallyShared(int64_t privateBytes, int64_t allocatedBytes) {
    constexpr int64_t tenthFrom = 40960;
    constexpr int64_t oneBlock = 4096;
    if (allocatedBytes >= tenthFrom) {
        return privateBytes < allocatedBytes / 10;
    }
    return privateBytes < oneBlock;
}

} // namespace dorvik
