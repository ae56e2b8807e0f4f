#pragma once

// Bringing an item back out of the Trash, trusting nothing the caller's record says on its own:
// the record may come from a file another process (or person) wrote. The item must lie in the
// "files" folder of a trash Dorvik uses (the home trash, or the trash at the top of a mounted
// filesystem), its ".trashinfo" must name the original place, it must still be the item that
// went (when its identity was recorded), and it goes back through folders opened one by one
// without following any link.

#include "platform/FileError.h"
#include "platform/ItemIdentity.h"
#include "platform/Trash.h"

#include <optional>
#include <string>

namespace dorvik::platform {

// Moves the trashed item back to `originalPath`, making the missing folders above it, never over
// anything that stands there, and removes its ".trashinfo". None on success; a refusal for any
// check above is an error of kind `other` whose description says why.
std::optional<FileError> restoreFromTrash(const std::string& trashedPath,
                                          const std::string& originalPath,
                                          const std::optional<ItemIdentity>& expected = {});

// Finishes a claim that a killed process left: when the item reached the trash (the same device
// and inode at the claimed place), its identity; otherwise none, and the claim's ".trashinfo" is
// removed if it holds exactly what was written, or the start of it when no item took the name (a
// write cut short); a file changed since is not ours to take.
std::optional<ItemIdentity> settleTrashClaim(const TrashClaim& claim);

// After the entry `name` of the pinned `folder` (reached at `folderPath`) went away: when that
// folder is the "files" folder of a trash Dorvik uses, the entry's ".trashinfo" goes too, so that
// no file manager lists an item that is gone. Anything else is left alone.
void forgetTrashInfo(const PinnedFolder& folder, const std::string& folderPath,
                     const std::string& name);

// The path a ".trashinfo" "Path" value stands for: "%XX" decoded.
std::string trashInfoUnescaped(const std::string& value);

} // namespace dorvik::platform
