#pragma once

// Deleting for good. Everything works relative to an open folder's descriptor, so a name that is
// swapped for a symbolic link while the removal runs is removed as a link, and what it points to
// is never reached.

#include "platform/FileError.h"

#include <optional>
#include <string>

namespace dorvik::platform {

// Deletes the file, symbolic link or folder (with everything in it) at `path`. A link is removed
// itself, never followed, at any depth. The removal stays on the filesystem that holds `path`: a
// filesystem mounted below it is left alone, and so is the item if it is a mount point. The
// folders leading to `path` are opened as the system resolves them. Whatever can go goes; if
// anything stays, the item is not fully removed and the first error comes back. None on success.
std::optional<FileError> removeItem(const std::string& path);

} // namespace dorvik::platform
