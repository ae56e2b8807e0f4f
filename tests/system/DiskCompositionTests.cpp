// Where the space goes: the buckets largest first, then what the volume uses beyond the scan.

#include "system/DiskComposition.h"

#include <gtest/gtest.h>

namespace dorvik {
namespace {

TEST(DiskComposition, BucketsLargestFirstThenWhatTheScanDidNotReach) {
    using B = StorageBucket;
    const std::map<B, int64_t> totals = {
        {B::documents, 300}, {B::video, 500}, {B::junk, 0}, {B::audio, 300}, {B::other, 100}};
    const struct {
        const char* name;
        std::optional<VolumeInfo> volume;
        std::vector<CompositionSegment> segments;
        int64_t total;
    } cases[] = {
        {"no volume",
         std::nullopt,
         {{B::video, 500}, {B::documents, 300}, {B::audio, 300}, {B::other, 100}},
         1200},
        {"a volume using more",
         VolumeInfo{"disk", 10'000, 7'000, 7'000},
         {{B::video, 500},
          {B::documents, 300},
          {B::audio, 300},
          {B::other, 100},
          {std::nullopt, 1800}},
         3000},
        {"a volume using exactly what was scanned",
         VolumeInfo{"disk", 10'000, 8'800, 8'800},
         {{B::video, 500}, {B::documents, 300}, {B::audio, 300}, {B::other, 100}},
         1200},
    };
    for (const auto& [name, volume, segments, total] : cases) {
        SCOPED_TRACE(name);
        const DiskComposition composition = diskComposition(totals, volume);
        EXPECT_EQ(composition.segments, segments);
        EXPECT_EQ(composition.total, total);
    }
    EXPECT_TRUE(diskComposition({}, std::nullopt).segments.empty());
}

} // namespace
} // namespace dorvik
