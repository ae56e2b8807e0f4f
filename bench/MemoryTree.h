#pragma once

// A scanned tree made in memory for the benchmarks of the file lists: names, sizes, dates, kinds
// and categories spread as on a real disk, every file over the lists' threshold. A real disk with
// hundreds of thousands of such files is rare on a test machine.

#include "scanning/FileNode.h"

#include <string>
#include <vector>

namespace dorvik::bench {

struct MemoryTree {
    FileNodePtr root;
    std::vector<FileNodePtr> folders; // the root first, each folder after its parent
    std::vector<FileNodePtr> files;
};

// `fileCount` files, a new folder every 20 or so under any folder made so far; the same tree for
// the same arguments.
MemoryTree makeMemoryTree(size_t fileCount, const std::string& rootPath);

} // namespace dorvik::bench
