#include "catalogue/JunkCatalogue.h"
#include "cleaning/JunkFinder.h"
#include "support/Environment.h"
#include "support/TempDir.h"
#include "support/Unprivileged.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <set>
#include <sys/stat.h>

namespace dorvik {
namespace {

constexpr double day = 86400;
// A fixed present, so that ages can be set to the second around the cutoff.
constexpr double now = 1'700'000'000;

const JunkRule& rule(std::string_view id) {
    const auto& rules = JunkCatalogue::rules();
    const auto found = std::ranges::find(rules, id, &JunkRule::id);
    EXPECT_NE(found, rules.end()) << id;
    return *found;
}

// The expected item for an entry whose age was set to `modified`, measured as the system reports
// its blocks.
JunkItem itemAt(const std::string& path, std::string_view ruleID, double modified, int64_t bytes,
                int64_t files) {
    return JunkItem{.id = path,
                    .url = path,
                    .ruleID = std::string(ruleID),
                    .size = bytes,
                    .fileCount = files,
                    .modified = modified};
}

class JunkFinderTest : public ::testing::Test {
protected:
    test::TempDir dir;
    std::string home = dir / "Users/me";
    std::string dataHome = dir / "data";
    test::ScopedEnvironment scopedHome{"HOME", home};
    test::ScopedEnvironment scopedDataHome{"XDG_DATA_HOME", dataHome};

    std::string at(const std::string& relative) const { return home + "/" + relative; }
};

TEST_F(JunkFinderTest, CachesListChildrenWithTheirWholeSizeAndLeaveOutWhatIsNoJunk) {
    const std::string caches = at("Library/Caches");
    test::writeFile(caches + "/com.big/data/a", 300000);
    test::writeFile(caches + "/com.big/b", 100000);
    test::writeFile(caches + "/com.linked/a", 100000);
    test::makeHardLink(caches + "/com.linked/a", caches + "/com.linked/b");
    test::writeFile(caches + "/small.db", 5000);
    test::writeFile(caches + "/CloudKit/records", 50000);   // the system's
    test::writeFile(caches + "/app.dorvik.mac/x", 50000);   // ours
    test::writeFile(caches + "/.DS_Store", 6000);           // only the Trash lists it
    test::writeFile(caches + "/empty.bin", 0);              // no blocks
    test::writeSparseFile(caches + "/sparse.bin", 1 << 20); // no blocks either
    test::writeSparseFile(caches + "/hollow/sparse", 1 << 20);
    for (const std::string name : {"com.big/data", "com.big", "com.linked", "small.db", "hollow"}) {
        test::setModificationTime(caches + "/" + name, now - 3 * day);
    }
    const auto measured = [&](const std::vector<std::string>& entries) {
        int64_t bytes = 0;
        for (const std::string& entry : entries) {
            bytes += test::allocatedBytes(caches + "/" + entry);
        }
        return bytes;
    };
    const double age = now - 3 * day;
    std::vector<JunkItem> expected = {
        itemAt(caches + "/com.big", "user-caches", age,
               measured({"com.big", "com.big/data", "com.big/data/a", "com.big/b"}), 2),
        itemAt(caches + "/com.linked", "user-caches", age, measured({"com.linked", "com.linked/a"}),
               1),
        itemAt(caches + "/small.db", "user-caches", age, measured({"small.db"}), 1),
    };
    // A folder of hollow files weighs what the folder itself takes, which some file systems
    // count and others don't.
    if (const int64_t hollow = measured({"hollow"}); hollow > 0) {
        expected.push_back(itemAt(caches + "/hollow", "user-caches", age, hollow, 1));
    }
    std::ranges::stable_sort(expected,
                             [](const JunkItem& a, const JunkItem& b) { return a.size > b.size; });

    const JunkFinding finding = JunkFinder::evaluate(rule("user-caches"), now);
    EXPECT_EQ(finding.rule, rule("user-caches"));
    EXPECT_EQ(finding.items, expected);
    EXPECT_EQ(totalSize(finding),
              measured({"com.big", "com.big/data", "com.big/data/a", "com.big/b", "com.linked",
                        "com.linked/a", "small.db"}) +
                  measured({"hollow"}));
}

TEST_F(JunkFinderTest, TheTrashAloneListsFolderSettingsFiles) {
    test::writeFile(at(".Trash/.DS_Store"), 6000);
    test::writeFile(at(".Trash/Old Report.pdf"), 20000);
    test::writeFile(at("Library/Logs/.DS_Store"), 6000);
    const JunkFinding trash = JunkFinder::evaluate(rule("trash"), now);
    ASSERT_EQ(trash.items.size(), 2u);
    EXPECT_EQ(trash.items[0].id, at(".Trash/Old Report.pdf"));
    EXPECT_EQ(trash.items[1].id, at(".Trash/.DS_Store"));
    EXPECT_TRUE(JunkFinder::evaluate(rule("user-logs"), now).items.empty());
}

TEST_F(JunkFinderTest, InstallersOldEnoughWithTheirExtensionInAnyCase) {
    const double cutoff = now - 7 * day;
    const struct {
        std::string name;
        double modified;
        bool listed;
    } cases[] = {
        {"exact.dmg", cutoff, true},             // exactly seven days old
        {"second-newer.dmg", cutoff + 1, false}, // a second too young
        {"just-newer.dmg", cutoff + 0.25, false},
        {"just-older.dmg", cutoff - 0.25, true},
        {"OLD.ISO", now - 30 * day, true},
        {"Setup.Pkg", now - 30 * day, true}, // a package folder, measured whole
        {"tool.mpkg", now - 30 * day, true},
        {"Xcode.xip", now - 30 * day, true},
        {"photos.zip", now - 30 * day, false},
        {".dmg", now - 30 * day, false}, // a hidden name, no extension
        {"dmg", now - 30 * day, false},
        {"empty.dmg", now - 30 * day, false}, // no blocks
        {"future.pkg", now + day, false},
    };
    for (const auto& item : cases) {
        const std::string path = at("Downloads/" + item.name);
        if (item.name == "Setup.Pkg") {
            test::writeFile(path + "/Contents/Archive.pax", 70000);
        } else {
            test::writeFile(path, item.name == "empty.dmg" ? 0 : 9000);
        }
        test::setModificationTime(path, item.modified);
    }
    const JunkFinding finding = JunkFinder::evaluate(rule("old-installers"), now);
    for (const auto& item : cases) {
        const std::string path = at("Downloads/" + item.name);
        const auto found = std::ranges::find(finding.items, path, &JunkItem::id);
        EXPECT_EQ(found != finding.items.end(), item.listed) << item.name;
        if (found != finding.items.end()) {
            EXPECT_EQ(found->modified, item.modified) << item.name;
        }
    }
    ASSERT_FALSE(finding.items.empty());
    EXPECT_EQ(finding.items.front().id, at("Downloads/Setup.Pkg"));
    EXPECT_EQ(finding.items.front().fileCount, 1);
}

// What a Linux desktop adds: its Trash in the data folder, its packages in Downloads, and Cargo's
// downloads.
TEST_F(JunkFinderTest, LinuxRulesOnAHomeOfTheirOwn) {
    const std::string trash = dataHome + "/Trash";
    test::writeFile(trash + "/files/report.pdf", 20000);
    test::writeFile(trash + "/files/.DS_Store", 6000); // the Trash lists it
    test::writeFile(trash + "/files/album/track.flac", 40000);
    test::writeText(trash + "/info/report.pdf.trashinfo", "[Trash Info]\nPath=/x\n");
    test::writeFile(at(".cargo/registry/cache/index.crates.io-6f17d22bba15001f/serde.crate"),
                    30000);
    test::writeFile(at(".cargo/registry/src/index/serde/lib.rs"), 30000);
    const double old = now - 30 * day;
    const struct {
        std::string name;
        double modified;
        std::optional<std::string_view> rule;
    } downloads[] = {
        {"tool.AppImage", old, "linux-installers"},
        {"code.deb", old, "linux-installers"},
        {"fedora.RPM", old, "linux-installers"},
        {"org.gimp.GIMP.flatpakref", old, "linux-installers"},
        {"firefox.snap", old, "linux-installers"},
        {"fresh.deb", now - 6 * day, std::nullopt},
        {"disk.dmg", old, "old-installers"},
        {"source.tar.xz", old, std::nullopt},
    };
    for (const auto& item : downloads) {
        test::writeFile(at("Downloads/" + item.name), 9000);
        test::setModificationTime(at("Downloads/" + item.name), item.modified);
    }
    const auto ids = [](const JunkFinding& finding) {
        std::set<std::string> paths;
        for (const JunkItem& item : finding.items) {
            paths.insert(item.id);
        }
        return paths;
    };
    EXPECT_EQ(ids(JunkFinder::evaluate(rule("desktop-trash"), now)),
              (std::set<std::string>{trash + "/files/report.pdf", trash + "/files/.DS_Store",
                                     trash + "/files/album"}));
    EXPECT_EQ(
        ids(JunkFinder::evaluate(rule("cargo-cache"), now)),
        (std::set<std::string>{at(".cargo/registry/cache/index.crates.io-6f17d22bba15001f")}));
    for (const std::string_view id : {"linux-installers", "old-installers"}) {
        std::set<std::string> expected;
        for (const auto& item : downloads) {
            if (item.rule == id) {
                expected.insert(at("Downloads/" + item.name));
            }
        }
        EXPECT_EQ(ids(JunkFinder::evaluate(rule(id), now)), expected) << id;
    }
    // The Mac's Trash rule does not reach the desktop's.
    EXPECT_TRUE(JunkFinder::evaluate(rule("trash"), now).items.empty());
}

TEST_F(JunkFinderTest, MissingAndUnreadableFoldersFindNothing) {
    EXPECT_TRUE(JunkFinder::evaluate(rule("xcode-derived"), now).items.empty());
    chmod(dir.path().c_str(), 0755); // for the unprivileged reader
    const std::string state = at("Library/Saved Application State");
    test::writeFile(state + "/com.example.savedState/window_1.data", 10000);
    const auto itemCount = [] {
        return static_cast<int64_t>(JunkFinder::evaluate(rule("saved-state"), now).items.size());
    };
    EXPECT_EQ(test::runUnprivileged<int64_t>(itemCount), 1);
    chmod(state.c_str(), 0);
    EXPECT_EQ(test::runUnprivileged<int64_t>(itemCount), 0);
}

// A rule's folder that is a link, or lies below one, leads out of the place the rule names: it
// finds nothing, so that nothing out there is ever cleaned.
TEST_F(JunkFinderTest, ARuleFolderThatIsALinkOrBelowOneFindsNothing) {
    test::writeFile(dir / "elsewhere/caches/com.example/a", 20000);
    test::makeFolder(at("Library"));
    test::makeSymlink(dir / "elsewhere/caches", at("Library/Caches"));
    EXPECT_TRUE(JunkFinder::evaluate(rule("user-caches"), now).items.empty());

    test::writeFile(dir / "elsewhere/xcode/DerivedData/App-abc/index", 20000);
    test::makeSymlink(dir / "elsewhere/xcode", at("Library/Developer"));
    EXPECT_TRUE(JunkFinder::evaluate(rule("xcode-derived"), now).items.empty());

    // The home folder itself may be reached through a link: its items are named by its real path.
    test::writeFile(dir / "Users/real/.npm/_cacache/index-v5/a", 20000);
    test::makeSymlink(dir / "Users/real", dir / "Users/linked");
    test::ScopedEnvironment linkedHome("HOME", dir / "Users/linked");
    const JunkFinding npm = JunkFinder::evaluate(rule("npm-cache"), now);
    ASSERT_EQ(npm.items.size(), 1u);
    EXPECT_EQ(npm.items[0].url, dir / "Users/real/.npm/_cacache/index-v5");
}

TEST_F(JunkFinderTest, FindAllKeepsRulesWithItemsLargestTotalFirst) {
    test::writeFile(at("Library/Caches/com.example/a"), 200000);
    test::writeFile(at(".Trash/Old.pdf"), 500000);
    test::writeFile(at("Downloads/Old.dmg"), 50000);
    test::setModificationTime(at("Downloads/Old.dmg"), now - 30 * day);
    test::writeFile(at("Downloads/New.dmg"), 900000);
    test::writeFile(at(".npm/_cacache/index-v5/x"), 100000);
    test::writeFile(at("Library/Logs/empty.log"), 0);

    std::vector<JunkFinding> findings = JunkFinder::findAll();
    // The one rule outside the home folder reads this machine's /Library/Logs, if it has one.
    std::erase_if(findings, [](const JunkFinding& f) { return f.rule.id == "system-logs"; });
    std::vector<std::string> ids;
    for (const JunkFinding& finding : findings) {
        ids.push_back(finding.rule.id);
        EXPECT_FALSE(finding.items.empty()) << finding.rule.id;
    }
    EXPECT_EQ(ids,
              (std::vector<std::string>{"trash", "user-caches", "npm-cache", "old-installers"}));
    EXPECT_TRUE(std::ranges::is_sorted(findings, std::greater<>(), totalSize));
    ASSERT_EQ(findings.back().items.size(), 1u);
    EXPECT_EQ(findings.back().items[0].id, at("Downloads/Old.dmg"));
}

} // namespace
} // namespace dorvik
