#include "TreeGenerator.h"
#include "platform/DirectoryWalk.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace dorvik::platform {
namespace {

// Every visit of a walk as text, skipping the folders whose names start with `skipPrefix`.
std::vector<std::string> visits(const std::string& root, WalkOptions options,
                                const std::string& skipPrefix) {
    std::vector<std::string> seen;
    DirectoryWalk walk(root, options);
    while (const WalkEntry* entry = walk.next()) {
        seen.push_back(std::to_string(static_cast<int>(entry->type)) + " " +
                       std::string(entry->path) + " " + std::to_string(entry->stat.blocks));
        if (entry->type == WalkEntryType::directoryPre && entry->name.starts_with(skipPrefix)) {
            walk.skipCurrent();
        }
    }
    return seen;
}

TEST(DirectoryWalk, ListingAheadChangesNothingTheWalkReports) {
    test::TempDir dir;
    bench::generateTree(dir.path(), 3000, 11);
    for (const std::string skip : {"\x01", "src", "d"}) { // nothing, some folders, deep chains
        const auto plain = visits(dir.path(), {}, skip);
        const auto ahead = visits(dir.path(), {.listAhead = true}, skip);
        EXPECT_GT(plain.size(), 100u);
        EXPECT_EQ(plain, ahead) << "skipping " << skip;
    }
}

TEST(DirectoryWalk, VisitsInTheOrderOfTheCLibrarysWalk) {
    test::TempDir dir;
    test::writeFile(dir / "a/f", 10);
    test::makeFolder(dir / "skipped/inner");
    test::makeSymlink(dir / "a", dir / "link");
    std::vector<std::pair<WalkEntryType, std::string>> seen;
    DirectoryWalk walk(dir.path(), {.listAhead = true});
    while (const WalkEntry* entry = walk.next()) {
        seen.emplace_back(entry->type, std::string(entry->name));
        if (entry->name == "skipped") {
            walk.setMark(7);
            walk.skipCurrent();
        }
        if (entry->type == WalkEntryType::directoryPost && entry->name == "skipped") {
            EXPECT_EQ(walk.mark(), 7); // the mark comes back with the post-order visit
        }
    }
    // Directory order is the file system's; compare as a set of visits plus the bracketing.
    ASSERT_EQ(seen.size(), 8u);
    EXPECT_EQ(seen.front(), std::make_pair(WalkEntryType::directoryPre, dir.path()));
    EXPECT_EQ(seen.back(), std::make_pair(WalkEntryType::directoryPost, dir.path()));
    const std::vector<std::pair<WalkEntryType, std::string>> middle(seen.begin() + 1,
                                                                    seen.end() - 1);
    for (const auto& expected : std::vector<std::pair<WalkEntryType, std::string>>{
             {WalkEntryType::directoryPre, "a"},
             {WalkEntryType::file, "f"},
             {WalkEntryType::directoryPost, "a"},
             {WalkEntryType::directoryPre, "skipped"},
             {WalkEntryType::directoryPost, "skipped"},
             {WalkEntryType::symlink, "link"}}) {
        EXPECT_NE(std::find(middle.begin(), middle.end(), expected), middle.end())
            << expected.second;
    }
}

} // namespace
} // namespace dorvik::platform
