// The Overview's recommendations at the edges of their thresholds, in their order, and the old
// large files they point at. Findings are made from the catalogue's own rules; the scan is a tree
// built in memory, since the sizes at stake (gigabytes) need no disk to be tested.

#include "catalogue/JunkCatalogue.h"
#include "cleaning/Recommendations.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace dorvik {
namespace {

constexpr double now = 1'750'000'000;
constexpr double day = 86400;
const std::string home = "/home/ann";

JunkFinding finding(std::string_view ruleId, std::vector<int64_t> sizes) {
    const auto& rules = JunkCatalogue::rules();
    const auto rule = std::ranges::find(rules, ruleId, &JunkRule::id);
    EXPECT_NE(rule, rules.end()) << ruleId;
    JunkFinding result{*rule, {}};
    for (size_t i = 0; i < sizes.size(); ++i) {
        const std::string path = "/somewhere/" + std::string(ruleId) + std::to_string(i);
        result.items.push_back({path, path, rule->id, sizes[i], 1, std::nullopt});
    }
    return result;
}

FileNodePtr node(const FileNodePtr& parent, const std::string& name, bool directory, int64_t size,
                 double modified = now) {
    auto made =
        std::make_shared<FileNode>(name, directory, false, FileKind::other, StorageBucket::other);
    made->size = size;
    made->modified = modified;
    if (parent != nullptr) {
        FileNode::adopt(parent, made);
    }
    return made;
}

// A scan of "/" with the home folder's Downloads and Library, and `files` (path under the home
// folder or absolute, size, age in days) in their folders.
struct TreeFile {
    std::string path;
    int64_t size;
    double ageDays;
};

ScanResult scanWith(int64_t downloads, const std::vector<TreeFile>& files = {}) {
    ScanResult scan;
    scan.root = node(nullptr, "/", true, 0);
    scan.rootPath = "/";
    const FileNodePtr homes = node(scan.root, "home", true, 0);
    const FileNodePtr ann = node(homes, "ann", true, 0);
    node(ann, "Downloads", true, downloads);
    for (const TreeFile& file : files) {
        FileNodePtr folder = scan.root;
        const std::string path = file.path.starts_with('/') ? file.path : home + "/" + file.path;
        size_t start = 1;
        for (size_t slash = path.find('/', start); slash != std::string::npos;
             start = slash + 1, slash = path.find('/', start)) {
            const std::string name = path.substr(start, slash - start);
            const auto found = std::ranges::find(folder->children, name, &FileNode::name);
            folder = found != folder->children.end() ? *found : node(folder, name, true, 0);
        }
        scan.files.push_back(
            node(folder, path.substr(start), false, file.size, now - file.ageDays * day));
    }
    return scan;
}

std::vector<std::string> idsOf(const std::vector<Recommendation>& rows) {
    std::vector<std::string> ids;
    for (const Recommendation& row : rows) {
        ids.push_back(row.id);
    }
    return ids;
}

TEST(Recommendations, EachRuleAtItsThreshold) {
    const int64_t GB = 1'000'000'000;
    const struct {
        const char* name;
        std::vector<JunkFinding> junk;
        int64_t developer;
        int64_t downloads;
        std::vector<TreeFile> files;
        std::vector<std::string> ids;
    } cases[] = {
        {"safe junk at 50 MB", {finding("user-caches", {30'000'000, 20'000'000})}, 0, 0, {}, {}},
        {"safe junk a byte over",
         {finding("user-caches", {30'000'000}), finding("user-logs", {20'000'001})},
         0,
         0,
         {},
         {"junk"}},
        {"review junk is not safe junk", {finding("dot-cache", {60'000'000})}, 0, 0, {}, {}},
        {"the Trash is not safe junk", {finding("trash", {50'000'000})}, 0, 0, {}, {}},
        {"the Trash a byte over", {finding("trash", {50'000'001})}, 0, 0, {}, {"trash"}},
        {"the desktop's Trash with the Mac's",
         {finding("trash", {25'000'000}), finding("desktop-trash", {25'000'001})},
         0,
         0,
         {},
         {"trash"}},
        {"any installer", {finding("old-installers", {1})}, 0, 0, {}, {"installers"}},
        {"a Linux package", {finding("linux-installers", {1})}, 0, 0, {}, {"installers"}},
        {"backups at 1 GB", {finding("ios-backups", {GB})}, 0, 0, {}, {}},
        {"backups a byte over", {finding("ios-backups", {GB, 1})}, 0, 0, {}, {"backups"}},
        {"developer artifacts at 1 GB", {}, GB, 0, {}, {}},
        {"developer artifacts a byte over", {}, GB + 1, 0, {}, {"dev"}},
        {"Downloads at 2 GB", {}, 0, 2 * GB, {}, {}},
        {"Downloads a byte over", {}, 0, 2 * GB + 1, {}, {"downloads"}},
        {"500 MB untouched exactly 180 days",
         {},
         0,
         0,
         {{"Movies/a.mov", 500'000'000, 180}},
         {"oldbig"}},
        {"a byte smaller", {}, 0, 0, {{"Movies/a.mov", 499'999'999, 200}}, {}},
        {"a second younger", {}, 0, 0, {{"Movies/a.mov", 500'000'000, 180 - 1 / day}}, {}},
        {"under the home Library", {}, 0, 0, {{"Library/b.bin", GB, 400}}, {}},
        {"outside the home folder", {}, 0, 0, {{"/srv/c.iso", GB, 400}}, {}},
        {"in a folder beside home named like it", {}, 0, 0, {{"/home/anna/d.iso", GB, 400}}, {}},
    };
    for (const auto& [name, junk, developer, downloads, files, ids] : cases) {
        SCOPED_TRACE(name);
        const ScanResult scan = scanWith(downloads, files);
        const RecommendationSources sources{&scan, junk, developer, home, now};
        EXPECT_EQ(idsOf(recommendations(sources)), ids);
    }
}

TEST(Recommendations, LargestFirstWithTheirWordsAndWhatTheirActionsNeed) {
    const ScanResult scan = scanWith(2'500'000'000, {{"Movies/a.mov", 700'000'000, 365},
                                                     {"Movies/b.mov", 600'000'000, 190},
                                                     {"Library/c.bin", 900'000'000, 365}});
    RecommendationSources sources;
    sources.scan = &scan;
    sources.junk = {finding("trash", {70'000'000}), finding("old-installers", {3'000, 2'000}),
                    finding("user-caches", {70'000'000}), finding("ios-backups", {1'500'000'000})};
    sources.developerArtifacts = 1'350'000'000;
    sources.home = home;
    sources.now = now;
    const std::vector<Recommendation> rows = recommendations(sources);
    // Equal sizes (the junk and the Trash) keep the rules' order.
    ASSERT_EQ(idsOf(rows), (std::vector<std::string>{"downloads", "backups", "dev", "oldbig",
                                                     "junk", "trash", "installers"}));

    EXPECT_EQ(rows[0].title, "Downloads folder");
    EXPECT_EQ(rows[0].folder, home + "/Downloads");
    EXPECT_EQ(rows[0].colour, "#2FD5C9");
    EXPECT_EQ(rows[1].detail,
              "1 local backup(s). If you back up to iCloud, you may not need them.");
    EXPECT_EQ(rows[3].detail, "2 file(s) over 500 MB unchanged for 6 months.");
    EXPECT_EQ(rows[3].size, 1'300'000'000);
    EXPECT_EQ(rows[3].colour, std::nullopt); // the theme's amber
    EXPECT_EQ(rows[3].symbol, "clock.badge.exclamationmark.fill");
    EXPECT_EQ(rows[5].items, sources.junk[0].items);
    EXPECT_EQ(rows[6].detail, "2 .dmg/.pkg files in Downloads older than a week.");
    EXPECT_EQ(rows[6].size, 5'000);
    EXPECT_EQ(rows[6].items.size(), 2u);

    sources.junk.push_back(finding("linux-installers", {1'000}));
    EXPECT_EQ(recommendations(sources).back().detail,
              "3 installers and packages in Downloads older than a week.");
}

TEST(Recommendations, NothingWithoutAScanOrFindings) {
    EXPECT_TRUE(recommendations({nullptr, {}, 0, home, now}).empty());
    const ScanResult scan = scanWith(0);
    EXPECT_TRUE(recommendations({&scan, {}, 0, home, now}).empty());
}

TEST(Recommendations, OldLargeFilesLeaveRemovedOnesOutAndTheFilterFindsThem) {
    ScanResult scan = scanWith(0, {{"a.iso", 800'000'000, 300}, {"b.iso", 800'000'000, 300}});
    scan.files[1]->deleted = true;
    const std::vector<FileNodePtr> old = oldLargeFiles(scan, home, now);
    ASSERT_EQ(old.size(), 1u);
    EXPECT_EQ(old[0]->name, "a.iso");

    const FileFilter filter = oldLargeFilesFilter(home);
    EXPECT_EQ(filter.minSize, 500'000'000);
    EXPECT_EQ(filter.modifiedOlderThanDays, 180);
    EXPECT_EQ(filter.pathPrefix, home + "/");
    EXPECT_TRUE(filter.query.empty());
    EXPECT_TRUE(filter.kinds.empty());
    EXPECT_FALSE(filter.bucket);
    EXPECT_FALSE(filter.hideProtected);
    EXPECT_TRUE(filter.matches(*scan.files[0], now));
}

} // namespace
} // namespace dorvik
