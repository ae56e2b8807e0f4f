#pragma once

// Where a Linux system and a Linux home keep what a Mac keeps elsewhere: the rows that the
// directory bucket decision asks, on a disk laid out the Linux way, before the Mac's.

#include "scanning/StorageBucket.h"

#include <cstddef>
#include <optional>
#include <span>
#include <string_view>

namespace dorvik::LinuxPlaces {

// The bucket of the system place that holds the directory whose canonical path is `components`;
// none where no Linux row speaks and the Mac's rules decide. `scanRootDepth` is the number of
// components of the scan's root: the temporary folders decide only for a scan that reaches them
// from above (see the table).
std::optional<StorageBucket> systemPlaceBucket(std::span<const std::string_view> components,
                                               size_t scanRootDepth);

// How many leading components name a Linux home folder: `ownHome` (the user's, wherever it lies),
// "home" and an account's name, or "root"; none when the path lies in no home. The home folder
// itself counts as lying in it.
std::optional<size_t> homeDepth(std::span<const std::string_view> components,
                                std::span<const std::string_view> ownHome);

// The bucket of a directory in a Linux home, from its components below the home folder (empty
// for the home itself), treated as the Mac's rules treat a folder in /Users/<account>.
std::optional<StorageBucket> homeBucket(std::span<const std::string_view> belowHome,
                                        std::optional<StorageBucket> inherited);

} // namespace dorvik::LinuxPlaces
