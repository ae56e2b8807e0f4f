#pragma once

// Finds byte-for-byte identical files among a scan's files, in stages that each read only what
// survived the one before: equal lengths, then equal first 64 KiB, then equal content. Most files
// are never opened; files below the least size never are.

#include "reclaim/DuplicateGroup.h"
#include "scanning/FileNode.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace dorvik {

// The least content length the application searches: smaller files are not worth the user's
// attention.
inline constexpr int64_t duplicateMinSize = 1048576;

// A file a search may compare, with what the search needs of it read beforehand.
struct DuplicateCandidate {
    FileNodePtr node;
    std::string path;
    int64_t length = 0; // content bytes
};

// The files of at least `minSize` content bytes that are not removed, leaving out everything
// inside an application bundle or a photo library. Reads the nodes' removal marks, so it runs on
// the thread that makes them; the search itself reads nothing that changes.
std::vector<DuplicateCandidate> duplicateCandidates(const std::vector<FileNodePtr>& files,
                                                    int64_t minSize);

// The groups of identical files among the candidates, largest `recoverableBytes` first (ties in
// the order found). A file that cannot be opened drops out. `progress` is called with values from
// 0 to 1, in rising order, from the threads doing the work, one call at a time. `threads` is how
// many size groups are compared at once (0: one for each processor); the result is the same
// whatever the number.
std::vector<DuplicateGroup> findDuplicates(const std::vector<DuplicateCandidate>& candidates,
                                           const std::function<void(double)>& progress,
                                           int threads = 0);

// Both in one, for callers whose nodes nothing marks as removed meanwhile.
std::vector<DuplicateGroup> findDuplicates(const std::vector<FileNodePtr>& files, int64_t minSize,
                                           const std::function<void(double)>& progress,
                                           int threads = 0);

} // namespace dorvik
