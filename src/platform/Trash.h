#pragma once

// The desktop's Trash, laid out the freedesktop.org way that every Linux desktop shares, so that
// the file manager lists what Dorvik trashed and can put it back: an item on the home folder's
// filesystem goes to $XDG_DATA_HOME/Trash (by default ~/.local/share/Trash), one on another
// filesystem to $topdir/.Trash/$uid or $topdir/.Trash-$uid at the top of that filesystem. Each item
// lies in the trash's "files" folder, under a name unique there, beside an "info/<name>.trashinfo"
// that says where it came from and when it went.

#include "platform/FileError.h"

#include <optional>
#include <string>

namespace dorvik::platform {

struct TrashOutcome {
    std::optional<std::string> trashedPath; // where the item lies now; set on success
    std::optional<FileError> error;         // set on failure, when nothing moved
};

// Moves the item at `path` (a file, a link or a whole folder; a link is moved, never followed)
// into the Trash of its filesystem. Nothing is copied: an item whose filesystem has no usable
// trash is a failure.
TrashOutcome moveToTrash(const std::string& path);

// Moves a trashed item back to `originalPath`, never over anything that stands there, and removes
// its ".trashinfo". None on success.
std::optional<FileError> restoreFromTrash(const std::string& trashedPath,
                                          const std::string& originalPath);

// The "Path" value of a ".trashinfo": every byte but letters, digits, "-._~" and "/" written as
// "%XX".
std::string trashInfoEscaped(const std::string& path);

} // namespace dorvik::platform
