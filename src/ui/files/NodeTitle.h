#pragma once

// The name a node goes by on screen. A scanned root is named by the whole path it was walked
// from; it reads best as the user writes it, with the home folder as "~".

#include "scanning/FileNode.h"
#include "scanning/ScanPaths.h"
#include "ui/QtText.h"

namespace dorvik {

inline QString nodeTitle(const FileNode& node) {
    return node.parent.expired() ? nameText(displayPath(node.name)) : nameText(node.name);
}

} // namespace dorvik
