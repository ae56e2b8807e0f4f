#pragma once

// Deleting for good. Everything works relative to an open folder's descriptor, so a name that is
// swapped for a symbolic link while the removal runs is removed as a link, and what it points to
// is never reached. The removal never leaves the item's own mount: a bind mount of the very same
// filesystem is as foreign as another disk. It holds a bounded number of descriptors at any
// depth: folders far above the one being emptied are closed and opened again by name when the
// walk climbs back, and must then still be the folders they were.

#include "platform/FileError.h"
#include "platform/PinnedFolder.h"

#include <optional>
#include <string>

namespace dorvik::platform {

struct RemovalResult {
    std::optional<FileError> error; // none when the item is gone
    bool partlyRemoved = false;     // with an error: something inside it went all the same
};

// Deletes the entry `name` of the pinned folder: a file, a symbolic link (never followed, at any
// depth) or a folder with everything in it. A mount point met inside is left alone and reported
// (mountPoint); an item that is itself a mount point is refused. Whatever can go goes; if
// anything stays, the item is not fully removed and the first error comes back.
RemovalResult removeItemAt(const PinnedFolder& folder, const std::string& name);

// The same for an absolute path, whose folder is pinned first: a link in the folders above the
// item is refused. None on success.
std::optional<FileError> removeItem(const std::string& path);

} // namespace dorvik::platform
