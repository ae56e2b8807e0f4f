#pragma once

// One line of the deletion history: an item that went, and where the Trash put it if it went
// there.

#include "platform/ItemIdentity.h"

#include <cstdint>
#include <optional>
#include <string>

namespace dorvik {

struct HistoryEntry {
    std::string id;  // UUID
    double date = 0; // when the item went, seconds since 1970
    std::string originalPath;
    std::optional<std::string> trashPath; // none for a permanent deletion
    int64_t size = 0;                     // as in the request
    bool restored = false;                // set once it has been moved back, never cleared
    // The trashed item as it went (device, inode, size): a later item under the same Trash name
    // is not this one. None for a permanent deletion and in entries written before it was kept.
    std::optional<platform::ItemIdentity> trashedItem = std::nullopt;

    bool operator==(const HistoryEntry&) const = default;
};

} // namespace dorvik
