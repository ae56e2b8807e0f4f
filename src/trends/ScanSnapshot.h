#pragma once

// A flat summary of one finished scan, kept so that later scans can be compared with it. It
// never holds a FileNode, so it outlives the tree it was made from, and it stays small: only
// folders down to a fixed depth and above a size floor are kept.

#include "scanning/ScanResult.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>

namespace dorvik {

// Folders below this depth (the root is depth 0) are not recorded.
inline constexpr int snapshotFolderDepth = 7;
// A child folder smaller than this is neither recorded nor entered; the root always is.
inline constexpr int64_t snapshotFolderFloor = 16'000'000;
// At most this many folders, the largest, so that the trend file stays small whatever the disk.
inline constexpr size_t snapshotFolderLimit = 2000;

struct ScanSnapshot {
    std::string id;   // a UUID in upper-case text form
    double date = 0;  // seconds since 1970
    std::string root; // canonical path of the scanned root
    int64_t total = 0;
    std::map<std::string, int64_t> buckets; // StorageBucket raw value in decimal -> bytes
    std::map<std::string, int64_t> folders; // canonical folder path -> allocated bytes

    bool operator==(const ScanSnapshot&) const = default;
};

// The key of a bucket in `ScanSnapshot::buckets`: its raw value as a decimal string.
std::string bucketKey(StorageBucket bucket);

// A snapshot of `result` taken at `date`, with a fresh id. Reads the tree, touches no store.
ScanSnapshot makeScanSnapshot(const ScanResult& result, double date);

} // namespace dorvik
