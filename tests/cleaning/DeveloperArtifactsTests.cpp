// The developer artifacts of real scanned trees, and beside them the items of the developer rules.

#include "catalogue/JunkCatalogue.h"
#include "cleaning/DeveloperArtifacts.h"
#include "cleaning/JunkFinder.h"
#include "scanning/MarkRemoved.h"
#include "scanning/Scanner.h"
#include "support/Environment.h"
#include "support/ScratchMount.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fcntl.h>
#include <map>
#include <sys/stat.h>
#include <unistd.h>

namespace dorvik {
namespace {

// Above the floor, in reserved blocks: quick to make at any size.
constexpr int64_t bigEnough = 21'000'000;

ScanResult scanOf(const std::string& root) {
    Scanner scanner({.threads = oneThread});
    auto scan = scanner.scan(root, {}, nullptr);
    EXPECT_TRUE(scan) << root;
    return scan ? std::move(*scan) : ScanResult{};
}

// The folder's allocated bytes as du counts them.
int64_t duBytes(const std::string& path) {
    return std::stoll(test::commandOutput("du -sxB1 '" + path + "' | cut -f1"));
}

std::map<std::string, DevItem> byPath(const std::vector<DevItem>& items) {
    std::map<std::string, DevItem> map;
    for (const DevItem& item : items) {
        EXPECT_TRUE(map.emplace(item.path, item).second) << "twice: " << item.path;
    }
    return map;
}

const JunkRule& rule(std::string_view id) {
    const auto& rules = JunkCatalogue::rules();
    return *std::ranges::find(rules, id, &JunkRule::id);
}

class DeveloperArtifactsTest : public ::testing::Test {
protected:
    test::TempDir dir;
    std::string home = dir / "home/me";
    test::ScopedEnvironment scopedHome{"HOME", home};
    test::ScopedEnvironment scopedDataHome{"XDG_DATA_HOME", dir / "data"};

    std::string at(const std::string& relative) const { return home + "/" + relative; }
};

TEST_F(DeveloperArtifactsTest, EachNameOfTheTableExactlyAsWrittenWithItsProject) {
    double touched = 1'600'000'000;
    std::map<std::string, DevItem> expected;
    for (const ArtifactName& artifact : artifactNames()) {
        const std::string projectName = "app" + std::to_string(expected.size());
        const std::string project = at("Projects/" + projectName);
        const std::string folder = project + "/" + std::string(artifact.name);
        test::writeAllocatedFile(folder + "/blob", bigEnough);
        test::setModificationTime(project, touched);
        expected[folder] = DevItem{
            .path = folder,
            .title = projectName + " / " + std::string(artifact.name),
            .detail = std::string(artifact.detail),
            .size = duBytes(folder),
            .lastTouched = touched,
            .removal = Removal::permanent,
        };
        touched += 1000;
    }
    // Names differ from the table's by case alone, or by a letter: ordinary folders.
    for (const char* name : {"Node_Modules", "VENV", "pods", "derivedData", "node_module", "venv2",
                             "_pycache__", ".Venv"}) {
        test::writeAllocatedFile(at(std::string("Projects/other/") + name + "/blob"), bigEnough);
    }

    const ScanResult scan = scanOf(home);
    EXPECT_EQ(byPath(artifactsInTree(scan.root, home)), expected);
    EXPECT_EQ(artifactNames().size(), 8u);
}

TEST_F(DeveloperArtifactsTest, WhereTheSearchStopsAndWhereItGoesOn) {
    const struct {
        std::string folder;                  // holds a file of bigEnough bytes
        std::optional<std::string> listedAs; // the title, if listed
        std::string why;
    } cases[] = {
        {"Projects/web/node_modules", "web / node_modules", "an artifact"},
        {"Projects/web/node_modules/left-pad/node_modules", {}, "nothing below an artifact"},
        {"Projects/Tool.app/Contents/node_modules", {}, "nothing inside a package"},
        {"Library/Application Support/Tool/venv", {}, "the system's Library is no project"},
        {"Library/Application Support/Tool/venv/lib/node_modules", {}, "nor anything else in it"},
        {"Library/Developer/Xcode/DerivedData/App-abc", {}, "a rule's, see below"},
        {"Projects/ios/DerivedData", "ios / DerivedData", "a project's own"},
        {"Projects/old/node_modules", {}, "removed"},
        {"Projects/old/.venv", "old / .venv", "its sibling stays"},
        {"Library2/venv", "Library2 / venv", "only the Library itself is the system's"},
    };
    for (const auto& c : cases) {
        test::writeAllocatedFile(at(c.folder) + "/blob", bigEnough);
    }
    ScanResult scan = scanOf(home);
    markRemoved(scan, {at("Projects/old/node_modules")});

    const std::map<std::string, DevItem> found = byPath(artifactsInTree(scan.root, home));
    for (const auto& c : cases) {
        const auto item = found.find(at(c.folder));
        EXPECT_EQ(item != found.end(), c.listedAs.has_value()) << c.folder << ": " << c.why;
        if (item != found.end() && c.listedAs) {
            EXPECT_EQ(item->second.title, *c.listedAs) << c.folder;
        }
    }
    EXPECT_EQ(found.size(), 4u);
}

// Allocation comes in whole blocks, so no real folder takes exactly 20,000,000 bytes: the limit
// is tried on nodes made by hand.
TEST(DeveloperArtifacts, OnlyFoldersAboveTwentyMillionBytesCount) {
    const auto folder = [](const FileNodePtr& parent, const std::string& name, int64_t size) {
        auto node = std::make_shared<FileNode>(name, true, false, FileKind::other,
                                               StorageBucket::developer);
        node->size = size;
        FileNode::adopt(parent, node);
        return node;
    };
    const auto root =
        std::make_shared<FileNode>("/work", true, false, FileKind::other, StorageBucket::other);
    const struct {
        int64_t size;
        bool listed;
    } cases[] = {{19'999'999, false}, {20'000'000, false}, {20'000'001, true}, {0, false}};
    for (size_t i = 0; i < std::size(cases); ++i) {
        const auto project = folder(root, "p" + std::to_string(i), cases[i].size + 4096);
        folder(project, "node_modules", cases[i].size);
    }
    std::set<std::string> listed;
    for (const DevItem& item : artifactsInTree(root, "/home/me")) {
        listed.insert(item.path);
    }
    for (size_t i = 0; i < std::size(cases); ++i) {
        EXPECT_EQ(listed.contains("/work/p" + std::to_string(i) + "/node_modules"), cases[i].listed)
            << cases[i].size;
    }
}

// A chain of `levels` folders named "d" below `root`, far deeper than a path can name, made
// relative to each folder's descriptor, with `name` at the bottom holding a reserved file.
void makeChainEndingIn(const std::string& root, int levels, const char* name) {
    int folder = open(root.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    ASSERT_GE(folder, 0);
    for (int level = 0; level <= levels; ++level) {
        const char* next = level < levels ? "d" : name;
        ASSERT_EQ(mkdirat(folder, next, 0755), 0);
        const int opened = openat(folder, next, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        ASSERT_GE(opened, 0);
        close(folder);
        folder = opened;
    }
    const int file = openat(folder, "blob", O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
    ASSERT_GE(file, 0);
    ASSERT_EQ(posix_fallocate(file, 0, bigEnough), 0);
    close(file);
    close(folder);
}

// Takes the chain down from its bottom, one folder's descriptor at a time: the standard
// library's removal names each entry by its whole path, which no call takes at this depth.
void removeChainEndingIn(const std::string& root, int levels, const char* name) {
    int folder = open(root.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    for (int level = 0; level <= levels && folder >= 0; ++level) {
        const int next = openat(folder, level < levels ? "d" : name, O_RDONLY | O_DIRECTORY);
        close(folder);
        folder = next;
    }
    ASSERT_GE(folder, 0);
    ASSERT_EQ(unlinkat(folder, "blob", 0), 0);
    for (int level = levels; level >= 0; --level) {
        const int parent = openat(folder, "..", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        close(folder);
        ASSERT_GE(parent, 0);
        ASSERT_EQ(unlinkat(parent, level < levels ? "d" : name, AT_REMOVEDIR), 0);
        folder = parent;
    }
    close(folder);
}

TEST(DeveloperArtifacts, ATreeTenThousandFoldersDeepIsSearchedToItsBottom) {
    test::TempDir scratch;
    // Where discarding freed blocks makes each removal of a folder slow, a memory filesystem
    // takes the tree away at once; without root the tree lies on disk and goes folder by folder.
    const test::ScratchMount memory(scratch.path(), "64m");
    constexpr int levels = 10'000;
    makeChainEndingIn(scratch.path(), levels, "node_modules");
    const ScanResult scan = scanOf(scratch.path());
    ASSERT_EQ(scan.totalDirectories, levels + 2);

    const std::vector<DevItem> items = artifactsInTree(scan.root, "/nobody");
    ASSERT_EQ(items.size(), 1u);
    std::string expected = scratch.path();
    for (int level = 0; level < levels; ++level) {
        expected += "/d";
    }
    EXPECT_EQ(items[0].path, expected + "/node_modules");
    EXPECT_EQ(items[0].title, "d / node_modules");
    EXPECT_GT(items[0].size, bigEnough);
    if (!memory.mounted()) {
        removeChainEndingIn(scratch.path(), levels, "node_modules");
    }
}

TEST_F(DeveloperArtifactsTest, TheRulesItemsFollowTheArtifactsAndNothingIsListedTwice) {
    test::writeAllocatedFile(at("Projects/web/node_modules/blob"), bigEnough);
    test::writeAllocatedFile(at("Library/Developer/Xcode/DerivedData/App-abc/blob"), bigEnough);
    test::writeAllocatedFile(at(".npm/_cacache/content/blob"), 2'000'000);
    test::setModificationTime(at(".npm/_cacache/content"), 1'650'000'000);
    // A tool's cache may hold what looks like a project: the rule lists it once, whole.
    test::writeAllocatedFile(at(".cache/yarn/v6/pkg/node_modules/blob"), bigEnough);
    test::writeAllocatedFile(at("Library/Caches/com.example/blob"), 1'000'000);

    std::vector<JunkFinding> junk;
    for (const JunkRule& each : JunkCatalogue::rules()) {
        JunkFinding finding = JunkFinder::evaluate(each);
        if (!finding.items.empty()) {
            junk.push_back(std::move(finding));
        }
    }
    const ScanResult scan = scanOf(home);
    const std::vector<DevItem> items = developerItems(&scan, junk, home);

    std::vector<std::string> paths;
    for (const DevItem& item : items) {
        paths.push_back(item.path);
    }
    // The app caches are junk of another heading; the rules' items come in the findings' order.
    EXPECT_EQ(paths, (std::vector<std::string>{
                         at("Projects/web/node_modules"),
                         at("Library/Developer/Xcode/DerivedData/App-abc"),
                         at(".npm/_cacache/content"),
                         at(".cache/yarn"),
                     }));
    const DevItem& derived = items[1];
    EXPECT_EQ(derived.title, rule("xcode-derived").title);
    EXPECT_EQ(derived.detail, rule("xcode-derived").explanation);
    EXPECT_EQ(derived.removal, rule("xcode-derived").removal);
    EXPECT_EQ(derived.size, duBytes(at("Library/Developer/Xcode/DerivedData/App-abc")));
    EXPECT_EQ(items[2].lastTouched, 1'650'000'000);

    // Without a scan the rules' items remain; without findings, the artifacts.
    const std::vector<DevItem> withoutScan = developerItems(nullptr, junk, home);
    ASSERT_EQ(withoutScan.size(), 3u);
    EXPECT_EQ(withoutScan[0].path, derived.path);
    std::set<std::string> withoutJunk;
    for (const DevItem& item : developerItems(&scan, {}, home)) {
        withoutJunk.insert(item.path);
    }
    EXPECT_EQ(withoutJunk, (std::set<std::string>{at("Projects/web/node_modules"),
                                                  at(".cache/yarn/v6/pkg/node_modules")}));
}

TEST(DeveloperArtifacts, AnItemWithoutADateIsNeverTouched) {
    JunkFinding finding{rule("npm-cache"), {}};
    finding.items.push_back(JunkItem{.id = "/h/.npm/_cacache/a",
                                     .url = "/System/Volumes/Data/h/.npm/_cacache/a",
                                     .ruleID = "npm-cache",
                                     .size = 5,
                                     .fileCount = 1,
                                     .modified = std::nullopt});
    const std::vector<DevItem> items = developerRuleItems({finding});
    ASSERT_EQ(items.size(), 1u);
    EXPECT_EQ(items[0].lastTouched, 0);
    EXPECT_EQ(items[0].path, "/h/.npm/_cacache/a");
}

} // namespace
} // namespace dorvik
