#include "trends/SnapshotChanges.h"
#include "trends/TrendTexts.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

namespace dorvik {
namespace {

constexpr int64_t MB = 1'000'000;
constexpr int64_t GB = 1'000'000'000;
constexpr int64_t threshold = ChangeLimits::folderThreshold;

ScanSnapshot snapshot(const std::string& id, std::map<std::string, int64_t> folders,
                      std::map<std::string, int64_t> buckets = {}, std::string root = "/r") {
    const int64_t total = folders.count(root) ? folders.at(root) : 0;
    return {id, 0, std::move(root), total, std::move(buckets), std::move(folders)};
}

TEST(SnapshotChanges, RowsNameTheDeepestFoldersThatExplainAChange) {
    const struct {
        std::string name;
        ScanSnapshot older;
        ScanSnapshot newer;
        std::vector<FolderChange> rows;
    } cases[] = {
        {"a child explains most, the rest is a remainder",
         snapshot("o", {{"/r", 10 * GB}, {"/r/a", 6 * GB}, {"/r/a/b", 3 * GB}}),
         snapshot("n", {{"/r", 15 * GB}, {"/r/a", 11 * GB}, {"/r/a/b", 3 * GB + 4'900 * MB}}),
         {{"/r/a/b", 3 * GB, 3 * GB + 4'900 * MB, false}, {"/r/a", 0, 100 * MB, true}}},
        {"a rest of 99,999,999 bytes makes no remainder",
         snapshot("o", {{"/r", 10 * GB}, {"/r/a", 6 * GB}, {"/r/a/b", 3 * GB}}),
         snapshot("n", {{"/r", 15 * GB}, {"/r/a", 11 * GB}, {"/r/a/b", 3 * GB + 4'900'000'001}}),
         {{"/r/a/b", 3 * GB, 3 * GB + 4'900'000'001, false}}},
        {"new and removed folders",
         snapshot("o", {{"/r", 10 * GB}, {"/r/old", 2 * GB}}),
         snapshot("n", {{"/r", 11 * GB}, {"/r/new", 3 * GB}}),
         {{"/r/new", 0, 3 * GB, false}, {"/r/old", 2 * GB, 0, false}}},
        {"a change below the floor shows at the parent",
         snapshot("o", {{"/r", 10 * GB}, {"/r/a", 1 * GB}}),
         snapshot("n", {{"/r", 10 * GB + 500 * MB}, {"/r/a", 1 * GB + 500 * MB}}),
         {{"/r/a", 1 * GB, 1 * GB + 500 * MB, false}}},
        {"quiet scans give no row, not even the root",
         snapshot("o", {{"/r", 10 * GB}, {"/r/a", 1 * GB}}),
         snapshot("n", {{"/r", 10 * GB + 99 * MB}, {"/r/a", 1 * GB + 99 * MB}}),
         {}},
        {"exactly the threshold counts",
         snapshot("o", {{"/r", 10 * GB}}),
         snapshot("n", {{"/r", 10 * GB - threshold}}),
         {{"/r", 10 * GB, 10 * GB - threshold, false}}},
        {"growth and shrinking that cancel above leave both children",
         snapshot("o", {{"/r", 10 * GB}, {"/r/x", 2 * GB}, {"/r/y", 2 * GB}}),
         snapshot("n", {{"/r", 10 * GB}, {"/r/x", 3 * GB}, {"/r/y", 1 * GB}}),
         {{"/r/x", 2 * GB, 3 * GB, false}, {"/r/y", 2 * GB, 1 * GB, false}}},
        {"different roots give nothing",
         snapshot("o", {{"/r", 10 * GB}}),
         snapshot("n", {{"/s", 20 * GB}}, {}, "/s"),
         {}},
    };
    for (const auto& [name, older, newer, rows] : cases) {
        EXPECT_EQ(folderChanges(older, newer, threshold, ChangeLimits::folderRowLimit), rows)
            << name;
    }
}

TEST(SnapshotChanges, RowsAreCappedLargestFirstRemaindersIncluded) {
    std::map<std::string, int64_t> before = {{"/r", 100 * GB}};
    std::map<std::string, int64_t> after = {{"/r", 100 * GB + 5 * GB}};
    for (int i = 0; i < 14; ++i) {
        const std::string child = "/r/c" + std::to_string(i);
        const int64_t growth = 2 * GB - i * 100 * MB; // 2 GB down to 700 MB
        before[child] = GB;
        after[child] = GB + growth;
        after["/r"] += growth;
    }
    const auto rows = folderChanges(snapshot("o", before), snapshot("n", after), threshold,
                                    ChangeLimits::folderRowLimit);
    ASSERT_EQ(rows.size(), 14u);
    EXPECT_EQ(rows.front(), (FolderChange{"/r", 0, 5 * GB, true}));
    EXPECT_EQ(rows.front().id(), "/r#rest");
    EXPECT_EQ(rows[1].path, "/r/c0");
    EXPECT_EQ(rows.back().path, "/r/c12"); // c13, the smallest, is the 15th
    for (size_t i = 1; i < rows.size(); ++i) {
        EXPECT_GE(std::abs(rows[i - 1].change()), std::abs(rows[i].change()));
    }
}

TEST(SnapshotChanges, SizesFromAHostileFileNeverOverflow) {
    constexpr int64_t lowest = std::numeric_limits<int64_t>::min();
    constexpr int64_t highest = std::numeric_limits<int64_t>::max();
    EXPECT_EQ(sizeChange(lowest, highest), highest);
    EXPECT_EQ(sizeChange(highest, lowest), -highest);
    EXPECT_EQ(sizeChange(5, 3), -2);
    const auto rows = folderChanges(
        snapshot("o", {{"/r", lowest}, {"/r/a", lowest}, {"/r/b", lowest}}),
        snapshot("n", {{"/r", highest}, {"/r/a", highest}, {"/r/b", highest}}), threshold, 14);
    ASSERT_EQ(rows.size(), 3u);
    EXPECT_EQ(rows.back(), (FolderChange{"/r", 0, -highest, true}));
}

TEST(SnapshotChanges, BucketChanges) {
    const ScanSnapshot older =
        snapshot("o", {}, {{"1", 100 * MB}, {"6", 1 * GB}, {"11", 10 * MB}, {"99", 5 * GB}});
    const ScanSnapshot newer =
        snapshot("n", {}, {{"1", 150 * MB}, {"6", 400 * MB}, {"8", 49'999'999}, {"11", 10 * MB}});
    EXPECT_EQ(bucketChanges(older, newer, ChangeLimits::bucketThreshold),
              (std::vector<BucketChange>{{StorageBucket::developer, -600 * MB},
                                         {StorageBucket::documents, 50 * MB}}));
    EXPECT_TRUE(bucketChanges(older, older, 1).empty());
}

TEST(SnapshotChanges, ComparedSnapshotsFallBackToTheSecond) {
    const std::vector<ScanSnapshot> history = {snapshot("C", {}), snapshot("B", {}),
                                               snapshot("A", {})};
    const struct {
        std::optional<std::string> baseline;
        std::string older;
    } cases[] = {
        {std::nullopt, "B"},
        {"A", "A"},
        {"pruned", "B"},
        {"C", "B"}, // the newest is no baseline for itself
    };
    for (const auto& [baseline, older] : cases) {
        const auto compared = comparedSnapshots(history, baseline);
        ASSERT_TRUE(compared.has_value());
        EXPECT_EQ(compared->newer.id, "C");
        EXPECT_EQ(compared->older.id, older) << baseline.value_or("none");
    }
    EXPECT_FALSE(comparedSnapshots({history.front()}, std::nullopt).has_value());
}

TEST(SnapshotChanges, RowTitlesAndBadges) {
    const struct {
        FolderChange change;
        std::string title;
        std::optional<std::string> badge;
    } cases[] = {
        {{"/r/new", 0, 3 * GB, false}, "new", "New"},
        {{"/r/old", 2 * GB, 0, false}, "old", "Removed"},
        {{"/r/grew", 1 * GB, 2 * GB, false}, "grew", std::nullopt},
        {{"/r", 0, 5 * GB, true}, "Other items in r", std::nullopt},
        {{"/", 0, -5 * GB, true}, "Other items in /", std::nullopt},
        {{"/", 1 * GB, 5 * GB, false}, "/", std::nullopt},
    };
    for (const auto& [change, title, badge] : cases) {
        EXPECT_EQ(TrendTexts::folderRowTitle(change), title) << change.path;
        EXPECT_EQ(TrendTexts::folderRowBadge(change), badge) << change.path;
    }
}

} // namespace
} // namespace dorvik
