#include "apps/AppInventory.h"
#include "support/Bundles.h"
#include "support/Environment.h"
#include "support/TempDir.h"
#include "support/TestHome.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace dorvik {
namespace {

using AppInventory::LibraryEntry;

TEST(AppInventory, MatchingRule) {
    struct Case {
        const char* entry;
        const char* bundleID;
        const char* appName;
        bool expected;
    };
    const Case cases[] = {
        {"com.example.writer", "com.example.writer", "Writer", true},
        {"COM.Example.Writer", "com.example.writer", "", true},
        {"com.example.writer.plist", "com.example.writer", "", true},
        {"com.example.writer.savedState", "com.example.writer", "", true},
        {"com.example.writer.binarycookies", "com.example.writer", "", true},
        {"com.example.writer.helper", "com.example.writer", "", true},
        {"com.example.writer.ShipIt", "com.example.writer", "", true},
        {"com.example.writer.helper.plist", "com.example.writer", "", true},
        {"com.example.writer.helper.data", "com.example.writer", "", false},
        {"com.example.writerpro", "com.example.writer", "", false},
        {"com.example.writerpro.plist", "com.example.writer", "", false},
        {"ABCDE12345.com.example.writer", "com.example.writer", "", true},
        {"ABCDE12345.com.example.writer.extra", "com.example.writer", "", false},
        {"group.com.example.writer", "com.example.writer", "", true},
        {"com.example", "com.example.writer", "", false},
        // Names of four characters and more match whole, case aside; shorter ones never.
        {"go", "com.example.go", "Go", false},
        {"rust", "org.example.rust-ide", "Rust", true},
        {"Writer", "com.example.writer", "Writer", true},
        {"Writer Data", "com.example.writer", "Writer", false},
        {"Writer", "", "Writer", true},
        {"", "", "", false},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(AppInventory::matches(c.entry, c.bundleID, c.appName), c.expected)
            << c.entry << " / " << c.bundleID << " / " << c.appName;
    }
}

TEST(AppInventory, BundlesAreFoundInRootsAndOneFolderBelow) {
    test::TempDir dir;
    const std::string system = dir / "Applications";
    const std::string home = dir / "home/Applications";
    const std::string utilities = system + "/Utilities";
    for (const std::string& bundle :
         {system + "/Writer.app", system + "/Vendor/Tool.app", system + "/Vendor/Sub/Deep.app",
          utilities + "/Terminal.app", home + "/Own.app", system + "/Vendor/notes.txt.d"}) {
        test::makeFolder(bundle);
    }
    test::writeFile(system + "/Stray.APP", 10); // a file named like a bundle is kept, as listed
    const auto paths = AppInventory::applicationPaths({system, home, utilities, dir / "missing"});
    auto sorted = paths;
    std::ranges::sort(sorted);
    const std::vector<std::string> expected = {system + "/Stray.APP", utilities + "/Terminal.app",
                                               system + "/Vendor/Tool.app", system + "/Writer.app",
                                               home + "/Own.app"};
    auto expectedSorted = expected;
    std::ranges::sort(expectedSorted);
    EXPECT_EQ(sorted, expectedSorted);
    // Terminal is met once, from its own root, never through /Applications' "Utilities".
    EXPECT_EQ(std::ranges::count(paths, utilities + "/Terminal.app"), 1);
    // Roots are searched in order.
    EXPECT_EQ(paths.back(), utilities + "/Terminal.app");
}

TEST(AppInventory, LibraryEntriesFollowTheLocationsAndTheAccessRule) {
    test::TempDir dir;
    const std::string home = dir.path();
    test::makeFolder(home + "/Library/Caches/com.example.writer");
    test::makeFolder(home + "/Library/Containers/com.example.writer");
    test::makeFolder(home + "/Library/Group Containers/ABCDE.com.example");
    test::writeFile(home + "/Library/Preferences/com.example.writer.plist", 10);
    test::makeFolder(home + "/Library/Application Support/Writer");
    test::makeFolder(home + "/Library/Application Support/Writer/Inner");

    const auto withAccess = AppInventory::libraryEntries(home, true);
    std::vector<std::string> labels;
    for (const LibraryEntry& entry : withAccess) {
        labels.push_back(entry.label);
    }
    EXPECT_EQ(labels, (std::vector<std::string>{"Application Support", "Caches", "Container",
                                                "Group Container", "Preferences"}));
    EXPECT_EQ(withAccess[0], (LibraryEntry{home + "/Library/Application Support/Writer", "Writer",
                                           "Application Support"}));

    const auto withoutAccess = AppInventory::libraryEntries(home, false);
    EXPECT_EQ(withoutAccess.size(), 3u);
    for (const LibraryEntry& entry : withoutAccess) {
        EXPECT_EQ(entry.path.find("Containers"), std::string::npos) << entry.path;
    }
}

TEST(AppInventory, InspectingBundles) {
    test::TempDir dir;
    const std::string home = dir / "home";
    const std::string library = home + "/Library";
    test::writeAllocatedFile(library + "/Application Support/com.example.writer/data", 300000);
    test::writeAllocatedFile(library + "/Caches/com.example.writer/cache", 100000);
    test::writeAllocatedFile(library + "/Preferences/com.example.writer.plist", 4096);
    test::writeAllocatedFile(library + "/Application Support/Writer/more", 200000);
    test::writeAllocatedFile(library + "/Application Support/com.apple.Notes/x", 50000);
    test::writeAllocatedFile(library + "/Caches/com.example.other/cache", 50000);
    const auto entries = AppInventory::libraryEntries(home, true);

    for (const test::PlistFormat format : {test::PlistFormat::xml, test::PlistFormat::binary}) {
        const std::string bundle =
            dir / (format == test::PlistFormat::xml ? "x/Writer.app" : "b/Writer.app");
        test::writeInfoPlist(bundle,
                             {{"CFBundleIdentifier", "com.example.writer"},
                              {"CFBundleName", "Writer Pro"},
                              {"CFBundleShortVersionString", "2.1"},
                              {"CFBundleExecutable", "writer"}},
                             format);
        test::writeAllocatedFile(bundle + "/Contents/MacOS/writer", 1000000);
        test::setModificationTime(bundle + "/Contents/MacOS/writer", 1'600'000'000.0);
        for (const char* item :
             {"/Application Support/com.example.writer", "/Caches/com.example.writer",
              "/Application Support/Writer", "/Preferences/com.example.writer.plist"}) {
            test::setModificationTime(library + item, 1'500'000'000.0);
        }
        test::setModificationTime(library + "/Caches/com.example.writer", 1'700'000'000.0);

        const InstalledApp app = AppInventory::inspectBundle(bundle, entries);
        EXPECT_EQ(app.name, "Writer Pro");
        EXPECT_EQ(app.bundleID, "com.example.writer");
        EXPECT_EQ(app.version, "2.1");
        EXPECT_GE(app.appSize, 1000000);
        EXPECT_FALSE(app.isApple);
        EXPECT_FALSE(app.isAppStore);
        std::vector<std::string> related;
        for (const RelatedItem& item : app.related) {
            related.push_back(item.path);
        }
        // The file name "Writer" claims the folder of that name; largest first.
        EXPECT_EQ(related,
                  (std::vector<std::string>{library + "/Application Support/com.example.writer",
                                            library + "/Application Support/Writer",
                                            library + "/Caches/com.example.writer",
                                            library + "/Preferences/com.example.writer.plist"}));
        EXPECT_EQ(app.related[2].label, "Caches");
        EXPECT_EQ(app.totalSize(), app.appSize + app.relatedSize());
        // The latest of the executable's access and the items' changes: the cache's.
        EXPECT_EQ(app.lastUsed, 1'700'000'000.0);
    }

    test::writeInfoPlist(dir / "Notes.app", {{"CFBundleIdentifier", "com.apple.Notes"},
                                             {"CFBundleDisplayName", "Notes"}});
    test::makeFolder(dir / "Notes.app/Contents/_MASReceipt");
    const InstalledApp apple = AppInventory::inspectBundle(dir / "Notes.app", entries);
    EXPECT_TRUE(apple.isApple);
    EXPECT_TRUE(apple.isAppStore);
    EXPECT_TRUE(apple.related.empty());
    EXPECT_EQ(apple.name, "Notes");

    // No identifier: listed by its file name, with nothing related and no date.
    test::makeFolder(dir / "Writer.app/Contents");
    const InstalledApp anonymous = AppInventory::inspectBundle(dir / "Writer.app", entries);
    EXPECT_EQ(anonymous.name, "Writer");
    EXPECT_FALSE(anonymous.bundleID.has_value());
    EXPECT_TRUE(anonymous.related.empty());
    EXPECT_FALSE(anonymous.lastUsed.has_value());
}

TEST(AppInventory, LoadingAllListsEveryBundleLargestFirst) {
    test::TestHome testHome;
    test::TempDir system;
    test::ScopedEnvironment root("DORVIK_SYSTEM_ROOT", system.path());
    const std::string apps = system / "Applications";
    // One identifier installed twice gives two rows.
    for (const std::string& bundle :
         {apps + "/Writer.app", testHome.home + "/Applications/Writer.app"}) {
        test::writeInfoPlist(bundle, {{"CFBundleIdentifier", "com.example.writer"}});
    }
    test::writeAllocatedFile(apps + "/Writer.app/Contents/big", 2000000);
    test::writeInfoPlist(apps + "/Utilities/Small.app", {{"CFBundleIdentifier", "com.example.s"}});
    test::writeAllocatedFile(testHome.home + "/Library/Caches/com.example.s/c", 900000);
    // A Flatpak app stands among the bundles by its size.
    const std::string flatpak = testHome.dataHome + "/flatpak/app/org.example.Flat";
    test::writeText(flatpak + "/x86_64/stable/1a2b/metadata",
                    "[Application]\nname=org.example.Flat\n");
    test::writeAllocatedFile(flatpak + "/x86_64/stable/1a2b/files/program", 1400000);
    test::makeSymlink("1a2b", flatpak + "/x86_64/stable/active");
    test::makeSymlink("x86_64/stable", flatpak + "/current");

    const auto loaded = AppInventory::loadAll(3);
    ASSERT_EQ(loaded.size(), 4u);
    EXPECT_EQ(loaded[0].path, apps + "/Writer.app");
    EXPECT_EQ(loaded[1].path, flatpak);
    EXPECT_EQ(loaded[2].path, apps + "/Utilities/Small.app");
    EXPECT_EQ(loaded[3].path, testHome.home + "/Applications/Writer.app");
    EXPECT_TRUE(std::ranges::is_sorted(loaded, std::greater{}, &InstalledApp::totalSize));
    EXPECT_EQ(AppInventory::loadAll(1), loaded);
}

TEST(AppInventory, IdentifierSearchLooksDeeperThanTheList) {
    test::TestHome testHome;
    test::TempDir system;
    test::ScopedEnvironment root("DORVIK_SYSTEM_ROOT", system.path());
    const std::string deep = system / "Applications/Vendor/Sub/Deep.app";
    test::writeInfoPlist(deep, {{"CFBundleIdentifier", "com.example.deep"}});
    EXPECT_TRUE(AppInventory::applicationPaths().empty());
    EXPECT_EQ(AppInventory::applicationWithIdentifier("com.example.deep"), deep);
    EXPECT_FALSE(AppInventory::applicationWithIdentifier("com.example.gone").has_value());
}

} // namespace
} // namespace dorvik
