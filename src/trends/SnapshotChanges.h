#pragma once

// What changed between two snapshots of one root: the deepest folders that explain each change
// of size, and the change of each storage bucket.

#include "scanning/StorageBucket.h"
#include "trends/ScanSnapshot.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace dorvik {

namespace ChangeLimits {
inline constexpr int64_t folderThreshold = 100'000'000; // smallest change that makes a row
inline constexpr size_t folderRowLimit = 14;
inline constexpr int64_t bucketThreshold = 50'000'000;
} // namespace ChangeLimits

// `after` minus `before`, held within ±Int64's largest value so that its magnitude always fits.
int64_t sizeChange(int64_t before, int64_t after);

struct FolderChange {
    std::string path;   // canonical, as in the snapshots' folders
    int64_t before = 0; // 0 when the folder was not there; always 0 in a remainder row
    int64_t after = 0;  // 0 when the folder is gone; the signed remainder in a remainder row
    // The row speaks of what changed directly in `path`, outside the subfolders listed.
    bool isRemainder = false;

    // Unique among the rows: a folder can have a remainder row beside a row of its own.
    std::string id() const { return isRemainder ? path + "#rest" : path; }
    int64_t change() const { return sizeChange(before, after); }

    bool operator==(const FolderChange&) const = default;
};

struct BucketChange {
    StorageBucket bucket;
    int64_t delta; // newer minus older

    bool operator==(const BucketChange&) const = default;
};

// The folders whose change of at least `threshold` bytes nothing deeper explains, with a
// remainder row where a folder changed by at least `threshold` more than its listed subfolders
// did; largest change first, at most `limit` rows. Empty for snapshots of different roots.
std::vector<FolderChange> folderChanges(const ScanSnapshot& older, const ScanSnapshot& newer,
                                        int64_t threshold, size_t limit);

// The buckets that changed by at least `threshold` bytes, largest change first.
std::vector<BucketChange> bucketChanges(const ScanSnapshot& older, const ScanSnapshot& newer,
                                        int64_t threshold);

struct ComparedSnapshots {
    ScanSnapshot older;
    ScanSnapshot newer;
};

// What "What changed" compares in a root's `history` (newest first): the newest snapshot with the
// one whose id is `baselineId`, else with the second. None with fewer than two snapshots.
std::optional<ComparedSnapshots> comparedSnapshots(const std::vector<ScanSnapshot>& history,
                                                   const std::optional<std::string>& baselineId);

} // namespace dorvik
