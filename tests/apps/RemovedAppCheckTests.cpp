#include "apps/RemovedAppCheck.h"
#include "support/Bundles.h"
#include "support/TempDir.h"
#include "support/TestHome.h"

#include <gtest/gtest.h>

#include <map>

namespace dorvik {
namespace {

using AppInventory::LibraryEntry;
using RemovedAppCheck::Known;
using RemovedAppCheck::Snapshot;

TEST(RemovedAppCheck, SnapshotLeavesOutAppleThisProgramAndBundlesWithoutIdentifier) {
    test::TempDir dir;
    const std::string apps = dir / "Applications";
    test::writeInfoPlist(apps + "/Writer.app", {{"CFBundleIdentifier", "com.example.writer"},
                                                {"CFBundleDisplayName", "Writer Pro"}});
    test::writeInfoPlist(apps + "/Paint.app", {{"CFBundleIdentifier", "org.example.paint"}},
                         test::PlistFormat::binary);
    test::writeInfoPlist(apps + "/Safari.app", {{"CFBundleIdentifier", "com.apple.Safari"}});
    test::writeInfoPlist(apps + "/Dorvik.app", {{"CFBundleIdentifier", "app.dorvik.mac"}});
    test::writeInfoPlist(apps + "/Nameless.app", {{"CFBundleName", "Nameless"}});
    test::makeFolder(apps + "/Empty.app");
    const Snapshot snapshot = RemovedAppCheck::takeSnapshot(
        {apps + "/Writer.app", apps + "/Paint.app", apps + "/Safari.app", apps + "/Dorvik.app",
         apps + "/Nameless.app", apps + "/Empty.app"});
    const Snapshot expected = {
        {apps + "/Writer.app", {"Writer Pro", "com.example.writer"}},
        {apps + "/Paint.app", {"Paint", "org.example.paint"}},
    };
    EXPECT_EQ(snapshot, expected);
}

// An application has gone only when its path, its identifier and the system's knowledge of it
// have all gone.
TEST(RemovedAppCheck, GoneOnlyWhenPathIdentifierAndSystemAllSaySo) {
    const Snapshot before = {
        {"/Applications/Writer.app", {"Writer", "com.example.writer"}},
        {"/Applications/Tool.app", {"Tool", "com.example.tool"}},
        {"/Applications/Old.app", {"Old", "com.example.old"}},
        {"/Applications/Moved.app", {"Moved", "com.example.moved"}},
        {"/Applications/Elsewhere.app", {"Elsewhere", "com.example.elsewhere"}},
        {"/Applications/Another.app", {"Another", "org.example.another"}},
    };
    const Snapshot after = {
        // updated in place: the path stays (even with another identifier)
        {"/Applications/Tool.app", {"Tool", "com.example.tool2"}},
        // moved to the other root, or renamed
        {"/home/me/Applications/Writer.app", {"Writer", "com.example.writer"}},
        {"/Applications/Moved Again.app", {"Moved", "com.example.moved"}},
    };
    std::vector<std::string> asked;
    const auto gone = RemovedAppCheck::goneApps(before, after, [&](const std::string& id) {
        asked.push_back(id);
        return id == "com.example.elsewhere";
    });
    const std::vector<RemovedAppCheck::GoneApp> expected = {
        {"/Applications/Another.app", {"Another", "org.example.another"}},
        {"/Applications/Old.app", {"Old", "com.example.old"}},
    };
    EXPECT_EQ(gone, expected);
    // The system is asked only about what the snapshots can't explain.
    EXPECT_EQ(asked, (std::vector<std::string>{"org.example.another", "com.example.elsewhere",
                                               "com.example.old"}));
    // A snapshot that found nothing: whatever the system still knows stays.
    EXPECT_TRUE(
        RemovedAppCheck::goneApps(before, {}, [](const std::string&) { return true; }).empty());
}

// What a gone application left: the entries its identifier or file name match, largest first,
// and a report from 5,000,000 bytes on.
TEST(RemovedAppCheck, ItemsAreTheMatchingEntriesAndTheFloorIsFiveMillion) {
    const std::vector<LibraryEntry> entries = {
        {"/L/Caches/com.example.old", "com.example.old", "Caches"},
        {"/L/Preferences/com.example.old.plist", "com.example.old.plist", "Preferences"},
        {"/L/Application Support/OldFiles", "OldFiles", "Application Support"},
        {"/L/Application Support/Oldie", "Oldie", "Application Support"},
        {"/L/Caches/com.example.older", "com.example.older", "Caches"},
        {"/L/Logs/com.example.writer", "com.example.writer", "Logs"},
    };
    const RemovedAppCheck::GoneApp gone{"/Applications/Oldie.app", {"Old App", "com.example.old"}};
    struct Case {
        int64_t cache;
        int64_t preferences;
        int64_t support;
        bool reported;
    };
    const Case cases[] = {
        {4'000'000, 999'999, 0, false},
        {4'000'000, 1'000'000, 0, true},
        {1, 2, 4'999'996, false},
        {1, 2, 4'999'997, true},
    };
    for (const Case& c : cases) {
        const std::map<std::string, int64_t> sizes = {
            {"/L/Caches/com.example.old", c.cache},
            {"/L/Preferences/com.example.old.plist", c.preferences},
            {"/L/Application Support/Oldie", c.support},
        };
        const RemovedApp removed = RemovedAppCheck::leftBehind(
            gone, entries, [&](const std::string& path) { return sizes.at(path); });
        EXPECT_EQ(removed.name, "Old App");
        EXPECT_EQ(removed.bundleID, "com.example.old");
        ASSERT_EQ(removed.items.size(), 3u);
        for (size_t i = 1; i < removed.items.size(); ++i) {
            EXPECT_GE(removed.items[i - 1].size, removed.items[i].size);
        }
        EXPECT_EQ(RemovedAppCheck::isWorthReporting(removed), c.reported) << removed.itemsSize();

        const Snapshot before = {{gone.path, gone.app}};
        const auto reports = RemovedAppCheck::reports(
            before, {},
            {[](const std::string&) { return false; }, [&] { return entries; },
             [&](const std::string& path) { return sizes.at(path); }});
        EXPECT_EQ(reports.size(), c.reported ? 1u : 0u);
    }
}

// Reports come in the order of the gone applications' paths, each with its own items; the
// Library is read only when something went.
TEST(RemovedAppCheck, ReportsInOrderAndLibraryReadOnlyWhenNeeded) {
    test::TestHome home;
    const std::string library = home.home + "/Library";
    test::writeFile(library + "/Caches/com.example.beta/blob", 6'000'000);
    test::writeFile(library + "/Application Support/com.example.alpha/data", 5'500'000);
    test::writeFile(library + "/Preferences/com.example.alpha.plist", 1'000);
    const Snapshot before = {
        {"/Applications/Beta.app", {"Beta", "com.example.beta"}},
        {"/Applications/Alpha.app", {"Alpha", "com.example.alpha"}},
    };
    int libraryReads = 0;
    RemovedAppCheck::Probes probes = RemovedAppCheck::systemProbes();
    probes.knownToSystem = [](const std::string&) { return false; };
    probes.libraryEntries = [&, entries = probes.libraryEntries] {
        ++libraryReads;
        return entries();
    };
    EXPECT_TRUE(RemovedAppCheck::reports(before, before, probes).empty());
    EXPECT_EQ(libraryReads, 0);

    const auto reports = RemovedAppCheck::reports(before, {}, probes);
    EXPECT_EQ(libraryReads, 1);
    ASSERT_EQ(reports.size(), 2u);
    EXPECT_EQ(reports[0].name, "Alpha");
    ASSERT_EQ(reports[0].items.size(), 2u);
    EXPECT_EQ(reports[0].items[0].path, library + "/Application Support/com.example.alpha");
    EXPECT_EQ(reports[0].items[0].label, "Application Support");
    EXPECT_EQ(reports[0].items[1].path, library + "/Preferences/com.example.alpha.plist");
    EXPECT_EQ(reports[0].items[1].size,
              test::allocatedBytes(library + "/Preferences/com.example.alpha.plist"));
    EXPECT_EQ(reports[1].name, "Beta");
}

} // namespace
} // namespace dorvik
