#pragma once

// The folders worth naming as the largest of a scan: not the top levels, and never a folder
// together with its own subfolder. A deep folder that holds most of its parent says more than the
// parent, so it takes the parent's place.

#include "scanning/FileNode.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace dorvik {

namespace LargestFolderLimits {
// A folder must be larger than this (200 MiB) to be named or entered.
inline constexpr int64_t floor = 209'715'200;
// Folders this deep (the root is 0) and deeper may be named.
inline constexpr int firstDepth = 2;
// Folders deeper than this are named but not entered.
inline constexpr int deepestEntered = 5;
inline constexpr size_t count = 9;
// A folder above this share of a kept relative replaces it; at or below it, it is dropped.
inline constexpr double replacingShare = 0.7;
} // namespace LargestFolderLimits

// At most nine folders under `root`, largest first as chosen, none an ancestor of another.
std::vector<FileNodePtr> largestFolders(const FileNodePtr& root);

} // namespace dorvik
