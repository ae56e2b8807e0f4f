#include "system/DiskComposition.h"

#include <algorithm>

namespace dorvik {

DiskComposition diskComposition(const std::map<StorageBucket, int64_t>& bucketTotals,
                                const std::optional<VolumeInfo>& volume) {
    DiskComposition composition;
    for (StorageBucket bucket : allStorageBuckets) {
        const auto found = bucketTotals.find(bucket);
        if (found != bucketTotals.end() && found->second > 0) {
            composition.segments.push_back({bucket, found->second});
            composition.total += found->second;
        }
    }
    std::stable_sort(
        composition.segments.begin(), composition.segments.end(),
        [](const CompositionSegment& a, const CompositionSegment& b) { return a.size > b.size; });
    if (volume) {
        const int64_t unreached = volume->total - volume->available - composition.total;
        if (unreached > 0) {
            composition.segments.push_back({std::nullopt, unreached});
            composition.total += unreached;
        }
    }
    return composition;
}

} // namespace dorvik
