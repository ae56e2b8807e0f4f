#pragma once

// The desktop's Trash, laid out the freedesktop.org way that every Linux desktop shares, so that
// the file manager lists what Dorvik trashed and can put it back: an item on the home folder's
// filesystem goes to $XDG_DATA_HOME/Trash (by default ~/.local/share/Trash), one on another
// filesystem to $topdir/.Trash/$uid or $topdir/.Trash-$uid at the top of that filesystem. Each item
// lies in the trash's "files" folder, under a name unique there, beside an "info/<name>.trashinfo"
// that says where it came from and when it went.

#include "platform/FileError.h"
#include "platform/ItemIdentity.h"
#include "platform/PinnedFolder.h"

#include <functional>
#include <optional>
#include <string>

namespace dorvik::platform {

struct TrashOutcome {
    std::optional<std::string> trashedPath;          // where the item lies now; set on success
    std::optional<FileError> error;                  // set on failure, when nothing moved
    std::optional<ItemIdentity> item = std::nullopt; // the item that moved; set on success
};

// A name about to be taken in a trash for an item: neither its ".trashinfo" nor the item is
// there yet.
struct TrashClaim {
    std::string trashedPath; // where the item will lie
    std::string infoPath;
    std::string infoText; // exactly what the ".trashinfo" holds
    ItemIdentity item;
};

// Moves the entry `name` of the pinned folder (a file, a link or a whole folder; a link is moved,
// never followed) into the Trash of its mount: the home trash when the item lies on the home
// trash's mount, else the trash at the top of the item's own mount (a bind mount's top is its
// mount point). Nothing is copied. A mount point is refused, and so is a home trash that is a
// link: it is neither followed nor bypassed. `claimed` is called for each name tried, before its
// ".trashinfo" is written, so that a caller can note it somewhere a kill cannot erase.
TrashOutcome moveToTrashAt(const PinnedFolder& folder, const std::string& name,
                           const std::function<void(const TrashClaim&)>& claimed = {});

// The same for an absolute path, whose folder is pinned first: a link in the folders above the
// item is refused.
TrashOutcome moveToTrash(const std::string& path,
                         const std::function<void(const TrashClaim&)>& claimed = {});

// The "Path" value of a ".trashinfo": every byte but letters, digits, "-._~" and "/" written as
// "%XX".
std::string trashInfoEscaped(const std::string& path);

} // namespace dorvik::platform
