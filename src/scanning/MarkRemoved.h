#pragma once

#include "scanning/ScanResult.h"

#include <set>
#include <string>

namespace dorvik {

// Marks the nodes whose real paths are in `removedPaths` as deleted and takes their numbers off
// every ancestor and off their own bucket's total. Descendants of a marked node stay as they
// were; listings stop at the deleted node. Paths are compared exactly with FileNode::path(), so
// they must be in the same (real, not canonical) form the tree was built from.
void markRemoved(ScanResult& scan, const std::set<std::string>& removedPaths);

} // namespace dorvik
