#pragma once

// What the verdict protects beyond its ordered steps, asked only when none of them protected the
// path: the private places of a Linux home (keys, the Trash itself), other people's home folders,
// the folders where other disks and served data are mounted, and every folder that holds the
// home folder or a place the rules protect, since removing it would remove them too.

#include "removal/SafetyVerdict.h"

#include <optional>
#include <string>
#include <string_view>

namespace dorvik::ProtectedPlaces {

// The protection of the desktop Trash's own folders (the Trash, its "files" and "info"), whose
// contents may go; none for any other path. `dataHome` is the user's data folder.
std::optional<SafetyVerdict> trashFolderVerdict(std::string_view path, const std::string& dataHome);

// The protection of `path` (absolute, canonical) with `home` as the home folder and `dataHome` as
// the user's data folder; none when these places leave it alone.
std::optional<SafetyVerdict> verdict(std::string_view path, const std::string& home,
                                     const std::string& dataHome);

} // namespace dorvik::ProtectedPlaces
