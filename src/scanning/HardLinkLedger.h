#pragma once

// Hard-linked files count once, at the first path a single walk meets. Threads meet the paths in
// any order, so each path of a file with more than one link is recorded with its place in the
// single walk's order, and counted only when the walk is over: the first place counts in full,
// every other one is a skipped link.

#include "scanning/FileNode.h"
#include "scanning/ScanTally.h"

#include <cstdint>
#include <vector>

namespace dorvik {

// Where a single walk meets an entry: the index of each folder in its parent's listing, from the
// root down, then the entry's own. Compared as sequences, the first in the walk is the smaller.
using WalkOrder = std::vector<uint32_t>;

// One path of a hard-linked file, not counted yet.
struct LinkedPath {
    uint64_t key = 0; // the file's, from hardLinkKey
    WalkOrder order;
    FileNodePtr folder;
    // The file's node, already among the folder's children, when it is large enough for one.
    FileNodePtr node;
    int64_t allocated = 0;
    int64_t logicalSize = 0;
    FileKind kind = FileKind::other;
    StorageBucket bucket = StorageBucket::other;
};

class HardLinkLedger {
public:
    void record(LinkedPath path) { paths_.push_back(std::move(path)); }
    void take(HardLinkLedger&& other);

    // Counts each file at its first path into that path's folder and `tally`; its other paths
    // add to the skipped links and their nodes leave the tree. Folders' sums above are not
    // touched: they are added up afterwards.
    void settle(ScanTally& tally);

private:
    std::vector<LinkedPath> paths_;
};

} // namespace dorvik
