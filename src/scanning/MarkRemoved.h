#pragma once

#include "scanning/ScanResult.h"

#include <set>
#include <string>

namespace dorvik {

// Marks the nodes whose real paths are in `removedPaths` as deleted and takes their numbers off
// every ancestor, off their own bucket's total and off the totals and counts of the kinds of
// the file nodes they are or hold (the small files in a folder have no kind to take them from).
// Descendants of a marked node stay as they were; listings stop at the deleted node. Paths are
// compared exactly with FileNode::path(), so they must be in the same (real, not canonical) form
// the tree was built from.
void markRemoved(ScanResult& scan, const std::set<std::string>& removedPaths);

// The way back after an undo: the deleted nodes whose real paths are in `restoredPaths` are
// live again, with their numbers given back to their ancestors, their bucket and their kinds.
// A live node of such a path (removed by another process, so never marked here) stays as it is.
// Returns the paths that name no node of the tree (an item removed before this scan was made,
// say); those come back only with the next scan.
std::set<std::string> markRestored(ScanResult& scan, const std::set<std::string>& restoredPaths);

} // namespace dorvik
