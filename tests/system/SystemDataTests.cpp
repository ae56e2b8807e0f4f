#include "removal/SafetyRules.h"
#include "scanning/MeasureFolder.h"
#include "scanning/Scanner.h"
#include "support/TempDir.h"
#include "system/SystemData.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <set>

namespace dorvik {
namespace {

const SystemDataPart* partWithId(const std::vector<SystemDataPart>& parts, std::string_view id) {
    for (const SystemDataPart& part : parts) {
        if (part.id == id) {
            return &part;
        }
    }
    return nullptr;
}

TEST(SystemDataPlaces, LinuxPlacesAreRiskedAsTheSafetyRulesJudgeThem) {
    std::set<std::string_view> ids;
    for (const SystemDataPlace& place : systemDataPlaces()) {
        EXPECT_TRUE(ids.insert(place.id).second) << "two places are called " << place.id;
    }
    for (const SystemDataPlace& place : linuxSystemDataPlaces()) {
        EXPECT_EQ(place.risk, SafetyRules::verdict(place.path).risk) << place.path;
    }
}

// A computer's root laid out in a temporary folder, with the places a test fills.
struct FakeRoot {
    test::TempDir temp;

    SystemDataOptions options(int concurrency = 8) const {
        return {temp.path(), systemDataPlaces(), concurrency};
    }
    int64_t measured(const std::string& path) const { return measureFolder(temp / path).bytes; }
};

TEST(SystemData, MeasuresTheDataVolumesPathFirstAndLeavesOutEmptyParts) {
    FakeRoot root;
    test::writeFile(root.temp / "Library/Caches/a", 300000);
    test::writeFile(root.temp / "Library/Caches/b", 70000);
    // Only on the data volume.
    test::writeFile(root.temp / "System/Volumes/Data/Library/Updates/installer", 500000);
    test::writeFile(root.temp / "private/var/log/system.log", 10000);
    test::makeFolder(root.temp / "private/var/vm"); // present, but the scan says it holds nothing

    const std::vector<SystemDataPart> parts = measureSystemData({{"vm", 0}}, root.options());
    ASSERT_EQ(parts.size(), 3u);
    EXPECT_EQ(parts[0].id, "updates");
    EXPECT_EQ(parts[0].path, root.temp / "System/Volumes/Data/Library/Updates");
    EXPECT_EQ(parts[0].size, root.measured("System/Volumes/Data/Library/Updates"));
    EXPECT_EQ(parts[0].risk, Risk::review);
    EXPECT_EQ(parts[0].title, "macOS update downloads");
    EXPECT_EQ(parts[1].id, "caches");
    EXPECT_EQ(parts[1].path, root.temp / "Library/Caches");
    EXPECT_EQ(parts[1].size, root.measured("Library/Caches"));
    EXPECT_EQ(parts[2].id, "logs");
    EXPECT_EQ(parts[2].symbol, "doc.text");
    EXPECT_EQ(partWithId(parts, "vm"), nullptr);

    // The same, whatever the number of places measured at once.
    EXPECT_EQ(measureSystemData({{"vm", 0}}, root.options(1)), parts);
}

TEST(SystemData, TakesTheScansSizeWhereTheScanHoldsThePlace) {
    FakeRoot root;
    test::writeFile(root.temp / "Library/Caches/a", 600000);
    test::writeFile(root.temp / "private/var/log/system.log", 600000);
    std::optional<ScanResult> scan = Scanner().scan(root.temp / "Library", {}, {});
    ASSERT_TRUE(scan.has_value());

    // Grown since the scan: the scan's figure stands for the place it holds, the rest is walked.
    test::writeFile(root.temp / "Library/Caches/b", 2000000);
    test::writeFile(root.temp / "private/var/log/later.log", 2000000);
    const std::map<std::string, int64_t> known = sizesInScan(scan->root, root.options());
    EXPECT_EQ(known, (std::map<std::string, int64_t>{{"caches", known.at("caches")}}));

    const std::vector<SystemDataPart> fromScan = measureSystemData(known, root.options());
    ASSERT_NE(partWithId(fromScan, "caches"), nullptr);
    EXPECT_LT(partWithId(fromScan, "caches")->size, root.measured("Library/Caches"));
    EXPECT_GE(partWithId(fromScan, "caches")->size, 600000);
    EXPECT_EQ(partWithId(fromScan, "logs")->size, root.measured("private/var/log"));

    const std::vector<SystemDataPart> walked = measureSystemData({}, root.options());
    EXPECT_EQ(partWithId(walked, "caches")->size, root.measured("Library/Caches"));
}

TEST(SystemData, APlaceInsideAnotherIsCountedOnce) {
    FakeRoot root;
    test::writeFile(root.temp / "var/log/journal/machine/system.journal", 800000);
    test::writeFile(root.temp / "var/log/syslog", 120000);
    test::writeFile(root.temp / "var/cache/apt/archives/a.deb", 400000);
    test::writeFile(root.temp / "var/cache/fontconfig/cache", 50000);
    test::writeFile(root.temp / "var/cache/pacman/pkg/b.pkg.tar.zst", 90000);

    const std::vector<SystemDataPart> parts = measureSystemData({}, root.options());
    EXPECT_EQ(partWithId(parts, "journal")->size, root.measured("var/log/journal"));
    EXPECT_EQ(partWithId(parts, "logs.linux")->size,
              root.measured("var/log") - root.measured("var/log/journal"));
    EXPECT_EQ(partWithId(parts, "apt")->size, root.measured("var/cache/apt"));
    EXPECT_EQ(partWithId(parts, "pacman")->size, root.measured("var/cache/pacman/pkg"));
    EXPECT_EQ(partWithId(parts, "caches.linux")->size, root.measured("var/cache") -
                                                           root.measured("var/cache/apt") -
                                                           root.measured("var/cache/pacman/pkg"));
    const int64_t sum = std::accumulate(
        parts.begin(), parts.end(), int64_t{0},
        [](int64_t total, const SystemDataPart& part) { return total + part.size; });
    EXPECT_EQ(sum, root.measured("var/log") + root.measured("var/cache"));
    EXPECT_TRUE(std::ranges::is_sorted(parts, std::ranges::greater{}, &SystemDataPart::size));
}

} // namespace
} // namespace dorvik
