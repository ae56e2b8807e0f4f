#pragma once

// Where the space of the disk goes: the scan's storage buckets, largest first, and after them
// what the volume uses that the scan did not reach.

#include "scanning/StorageBucket.h"
#include "system/VolumeInfo.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string_view>
#include <vector>

namespace dorvik {

inline constexpr std::string_view unreachedTitle = "macOS and other";
inline constexpr std::string_view unreachedDetail =
    "Sealed system volume, local snapshots and folders without access.";

struct CompositionSegment {
    std::optional<StorageBucket> bucket; // none for the space the scan did not reach
    int64_t size = 0;

    bool operator==(const CompositionSegment&) const = default;
};

struct DiskComposition {
    std::vector<CompositionSegment> segments;
    int64_t total = 0; // of all the segments; the whole the shares are taken of
};

// The buckets above zero, largest first (equal sizes in the buckets' order), then the volume's
// used space beyond their sum when there is any. Without a volume, the buckets alone.
DiskComposition diskComposition(const std::map<StorageBucket, int64_t>& bucketTotals,
                                const std::optional<VolumeInfo>& volume);

} // namespace dorvik
