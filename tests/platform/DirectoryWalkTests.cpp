#include "platform/DirectoryWalk.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace dorvik::platform {
namespace {

TEST(DirectoryWalk, VisitsInTheOrderOfTheCLibrarysWalk) {
    test::TempDir dir;
    test::writeFile(dir / "a/f", 10);
    test::makeFolder(dir / "skipped/inner");
    test::makeSymlink(dir / "a", dir / "link");
    std::vector<std::pair<WalkEntryType, std::string>> seen;
    DirectoryWalk walk(dir.path());
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
