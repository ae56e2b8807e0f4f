#pragma once

#include <cstdint>

namespace dorvik::platform {

// What tells one file-system entry from another that took its name: its device and inode, and
// its size as lstat reports it (a link is not followed). A rename keeps all three.
struct ItemIdentity {
    uint64_t device = 0;
    uint64_t inode = 0;
    int64_t size = 0;

    bool operator==(const ItemIdentity&) const = default;
};

} // namespace dorvik::platform
