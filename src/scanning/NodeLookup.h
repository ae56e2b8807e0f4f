#pragma once

// Finding the node of a path in a scanned tree.

#include "scanning/FileNode.h"

#include <string_view>

namespace dorvik {

// The node at `path` in the tree under `root`, or null when the tree holds none (outside the
// scanned folder, a file too small for a node, removed since). The path may be given plain or
// under the data volume's prefix, and so may the root's.
FileNodePtr findNode(const FileNodePtr& root, std::string_view path);

} // namespace dorvik
