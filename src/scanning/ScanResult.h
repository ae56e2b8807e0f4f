#pragma once

#include "scanning/FileKind.h"
#include "scanning/FileNode.h"
#include "scanning/StorageBucket.h"

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace dorvik {

// What one scan leaves behind. A plain value that shares the tree by reference.
struct ScanResult {
    FileNodePtr root;
    std::string rootPath; // the path given to the walk
    // Every file node in the order met. Nodes stay here after removal; read `deleted`.
    std::vector<FileNodePtr> files;
    // Allocated bytes per bucket, small files and directories' own blocks included. A bucket
    // that met nothing has no key.
    std::map<StorageBucket, int64_t> bucketTotals;
    std::map<FileKind, int64_t> kindTotals; // files only
    std::map<FileKind, int64_t> kindCounts;
    int64_t totalFiles = 0;       // at any size; skipped hard links not included
    int64_t totalDirectories = 0; // the root included, excluded folders not
    int64_t unreadableDirectories = 0;
    int64_t hardLinksSkipped = 0;
    double duration = 0;   // seconds the walk took
    double finishedAt = 0; // seconds since 1970
};

// A running scan's report. Before anything is known: 0, 0 and "".
struct ScanProgressSnapshot {
    int64_t files = 0;
    int64_t bytes = 0;
    std::string currentPath; // canonical form
};

} // namespace dorvik
