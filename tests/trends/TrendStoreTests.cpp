#include "base/Uuid.h"
#include "platform/FileIO.h"
#include "support/Environment.h"
#include "support/TempDir.h"
#include "trends/TrendFiles.h"
#include "trends/TrendStore.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <vector>

namespace dorvik {
namespace {

constexpr double minute = 60;
constexpr double hour = 3600;
constexpr double day = 86400;
constexpr double start = 1742040000; // 2025-03-15 12:00 UTC

ScanSnapshot snapshotOf(const std::string& root, double date, int64_t total = 1) {
    return {Uuid::make(), date, root, total, {{"1", total}}, {{root, total}}};
}

std::vector<double> dates(const std::vector<ScanSnapshot>& snapshots) {
    std::vector<double> result;
    for (const ScanSnapshot& snapshot : snapshots) {
        result.push_back(snapshot.date);
    }
    return result;
}

std::string fileText(const std::string& path) {
    std::ifstream in(path);
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

const VolumeInfo volume{"Disk", 500'000'000'000, 120'000'000'000, 120'000'000'000};

TEST(TrendStore, ARescanWithinTheHourReplacesTheNewest) {
    const struct {
        std::vector<double> recorded; // minutes after the start
        std::vector<double> kept;     // newest first
    } cases[] = {
        {{0, 59}, {59}},
        {{0, 60}, {60, 0}},
        {{0, 50, 100}, {100}}, // each is measured against the one it follows
        {{0, 60, 90}, {90, 0}},
        {{100, 20}, {20}}, // a clock set back: the difference is below the hour too
    };
    for (const auto& [recorded, kept] : cases) {
        test::TempDir temp;
        TrendStore store(temp.path());
        for (double at : recorded) {
            store.record(snapshotOf("/Users/me", start + at * minute));
        }
        std::vector<double> expected;
        for (double at : kept) {
            expected.push_back(start + at * minute);
        }
        EXPECT_EQ(dates(store.history("/Users/me")), expected) << recorded.size();
    }
}

TEST(TrendStore, EachRootKeepsItsNewestThirty) {
    test::TempDir temp;
    TrendStore store(temp.path());
    store.record(snapshotOf("/Other", start - 1000 * day));
    for (int i = 0; i < 31; ++i) {
        store.record(snapshotOf("/", start + i * 2 * hour));
    }
    const auto history = store.history("/");
    ASSERT_EQ(history.size(), 30u);
    EXPECT_EQ(history.front().date, start + 30 * 2 * hour);
    EXPECT_EQ(history.back().date, start + 2 * hour); // only the oldest went
    EXPECT_EQ(store.history("/Other").size(), 1u);
    EXPECT_EQ(store.snapshots().size(), 31u);
    EXPECT_EQ(store.latestRoot(), "/");
}

TEST(TrendStore, SnapshotsOfTheDataVolumeAndOfSlashShareAHistory) {
    test::TempDir temp;
    TrendStore store(temp.path());
    for (const std::string rootName : {"/System/Volumes/Data", "/"}) {
        ScanResult result;
        result.root = std::make_shared<FileNode>(rootName, true, false, FileKind::other,
                                                 StorageBucket::other);
        store.record(makeScanSnapshot(result, start + store.snapshots().size() * day));
    }
    EXPECT_EQ(store.history("/").size(), 2u);
}

TEST(TrendStore, SnapshotsSurviveAReloadWithDatesCountedFrom2001) {
    test::TempDir temp;
    ScanSnapshot snapshot = snapshotOf("/Users/me", start + 0.25, 5'000'000'000);
    snapshot.folders["/Users/me/caf\u00e9"] = 4'000'000'000;
    {
        TrendStore store(temp.path());
        store.record(snapshot);
    }
    const TrendStore reloaded(temp.path());
    ASSERT_EQ(reloaded.snapshots().size(), 1u);
    EXPECT_EQ(reloaded.snapshots().front(), snapshot);

    const auto document = nlohmann::json::parse(fileText(temp / "scans.json"));
    EXPECT_DOUBLE_EQ(document.at(0).at("date").get<double>(), start + 0.25 - 978307200);
    EXPECT_EQ(document.at(0).at("buckets").at("1").get<int64_t>(), 5'000'000'000);
    EXPECT_EQ(fileText(temp / "scans.json").find('\n'), std::string::npos); // not pretty
}

TEST(TrendStore, SamplesAreHourlyAndAtMost120DaysOld) {
    const struct {
        std::vector<double> offered; // seconds after the start
        std::vector<double> kept;
    } cases[] = {
        {{0, 3599}, {0}},
        {{0, 3600}, {0, 3600}},
        {{0, 3600, 7199}, {0, 3600}},
        {{0, 10'368'000}, {0, 10'368'000}}, // exactly 120 days old stays
        {{0, 10'368'001}, {10'368'001}},    // a second more goes
        {{0, 3600, 10'371'600}, {3600, 10'371'600}},
    };
    for (const auto& [offered, kept] : cases) {
        test::TempDir temp;
        TrendStore store(temp.path());
        for (double at : offered) {
            store.recordSample(volume, start + at);
        }
        std::vector<SpaceSample> expected;
        for (double at : kept) {
            expected.push_back({start + at, 380'000'000'000, 500'000'000'000});
        }
        EXPECT_EQ(store.samples(), expected) << offered.back();
        EXPECT_EQ(TrendStore(temp.path()).samples(), expected) << offered.back();
    }
}

TEST(TrendStore, NoVolumeNoSampleAndNoFile) {
    test::TempDir temp;
    TrendStore store(temp.path());
    store.recordSample(std::nullopt, start);
    EXPECT_TRUE(store.samples().empty());
    EXPECT_FALSE(std::filesystem::exists(temp / "space.json"));
    store.recordSample(volume, start);
    const std::string written = fileText(temp / "space.json");
    store.recordSample(volume, start + 3599); // too soon: the file stays as it was
    EXPECT_EQ(fileText(temp / "space.json"), written);
}

TEST(TrendStore, AMalformedFileStartsOverAtTheNextWrite) {
    test::TempDir temp;
    const std::string good =
        R"([{"id":"E621E1F8-C36C-495A-93FC-0C247A3E6E5F","date":763000000.5,"root":"/",)"
        R"("total":10,"buckets":{"11":10},"folders":{"/":10}}])";
    ASSERT_TRUE(platform::writeFileAtomically(temp / "scans.json", good));
    ASSERT_TRUE(platform::writeFileAtomically(temp / "space.json",
                                              R"([{"date":763000000,"used":5,"total":9}])"));
    EXPECT_EQ(TrendStore(temp.path()).snapshots().size(), 1u);

    // One good entry and one without "folders": the whole file fails.
    const std::string bad = good.substr(0, good.size() - 1) +
                            R"(,{"id":"E621E1F8-C36C-495A-93FC-0C247A3E6E50","date":1,)"
                            R"("root":"/","total":1,"buckets":{}}])";
    ASSERT_TRUE(platform::writeFileAtomically(temp / "scans.json", bad));
    TrendStore store(temp.path());
    EXPECT_TRUE(store.snapshots().empty());
    EXPECT_EQ(store.samples().size(), 1u); // the other file loads on its own
    store.record(snapshotOf("/Users/me", start));
    const auto reloaded = TrendStore(temp.path()).snapshots();
    ASSERT_EQ(reloaded.size(), 1u);
    EXPECT_EQ(reloaded.front().root, "/Users/me");
}

TEST(TrendStore, DecodingRejectsEveryMalformedShape) {
    const std::string id = R"("id":"E621E1F8-C36C-495A-93FC-0C247A3E6E5F")";
    const std::string rest = R"("root":"/","buckets":{"1":2},"folders":{"/":3})";
    const struct {
        std::string text;
        bool decodes;
    } cases[] = {
        {"[{" + id + R"(,"date":1.5,"total":3,)" + rest + "}]", true},
        {"[{" + id + R"(,"date":1,"total":3,"extra":true,)" + rest + "}]", true},
        {"[]", true},
        {"", false},
        {"not json", false},
        {"{}", false},
        {"[1]", false},
        {"[{" + id + R"(,"total":3,)" + rest + "}]", false},                // no date
        {"[{" + id + R"(,"date":"today","total":3,)" + rest + "}]", false}, // a date as text
        {"[{" + id + R"(,"date":1,"total":1.5,)" + rest + "}]", false},     // a fraction of a byte
        {"[{" + id + R"(,"date":1,"total":"3",)" + rest + "}]", false},
        {"[{" + id + R"(,"date":1,"total":9223372036854775808,)" + rest + "}]", false},
        {"[{" + id + R"(,"date":1e999,"total":3,)" + rest + "}]", false},
        {R"([{"id":"not-a-uuid","date":1,"total":3,)" + rest + "}]", false},
        {"[{" + id + R"(,"date":1,"total":3,"root":"/","buckets":{"1":"2"},"folders":{}}])", false},
        {"[{" + id + R"(,"date":1,"total":3,"root":"/","buckets":[],"folders":{}}])", false},
        {"[{" + id + R"(,"date":1,"total":3,"root":7,"buckets":{},"folders":{}}])", false},
    };
    for (const auto& [text, decodes] : cases) {
        EXPECT_EQ(TrendFiles::decodeSnapshots(text).has_value(), decodes) << text;
    }
    EXPECT_TRUE(TrendFiles::decodeSamples(R"([{"date":1,"used":-5,"total":9}])").has_value());
    EXPECT_FALSE(TrendFiles::decodeSamples(R"([{"date":1,"used":5}])").has_value());
    EXPECT_FALSE(TrendFiles::decodeSamples(R"([{"date":1,"used":5,"total":9},7])").has_value());
}

TEST(TrendStore, AFolderThatCannotBeMadeLosesOnlyTheFiles) {
    test::TempDir temp;
    test::writeFile(temp / "blocker", 1);
    TrendStore store(temp / "blocker/Dorvik");
    store.record(snapshotOf("/", start));
    store.recordSample(volume, start);
    EXPECT_EQ(store.snapshots().size(), 1u);
    EXPECT_EQ(store.samples().size(), 1u);
}

TEST(TrendStore, TheDefaultFolderIsTheApplicationSupportFolder) {
    test::TempDir temp;
    test::ScopedEnvironment dataHome("XDG_DATA_HOME", temp / "data");
    TrendStore store;
    EXPECT_EQ(store.directory(), temp / "data/Dorvik");
    EXPECT_TRUE(std::filesystem::is_directory(temp / "data/Dorvik"));
    store.record(snapshotOf("/", start));
    EXPECT_TRUE(std::filesystem::exists(temp / "data/Dorvik/scans.json"));
}

} // namespace
} // namespace dorvik
