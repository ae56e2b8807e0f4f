#include "apps/LeftoverSearch.h"
#include "support/Bundles.h"
#include "support/Environment.h"
#include "support/TempDir.h"
#include "support/TestHome.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>

namespace dorvik {
namespace {

using AppInventory::LibraryEntry;
using LeftoverSearch::Outcome;

// Probes that answer from tables and remember what they were asked.
struct RecordingProbes {
    std::set<std::string> knownElsewhere;
    std::map<std::string, int64_t> sizes; // by path; 1 MB when not listed
    std::vector<std::string> askedSystem;
    std::vector<std::string> measured;

    LeftoverSearch::Probes probes() {
        return {
            [this](const std::string& identifier) {
                askedSystem.push_back(identifier);
                return knownElsewhere.contains(identifier);
            },
            [this](const std::string& path) {
                measured.push_back(path);
                const auto found = sizes.find(path);
                return found == sizes.end() ? int64_t{1'000'000} : found->second;
            },
        };
    }
};

LibraryEntry cacheEntry(const std::string& name) {
    return {"/home/me/Library/Caches/" + name, name, "Library/Caches"};
}

// Each test decides in turn: an entry that passes all the tests before it and fails this one
// is dropped by it, and an entry that fails two is dropped by the earlier.
TEST(LeftoverSearch, EachTestDropsInItsTurn) {
    struct Case {
        const char* name;
        int64_t size;
        Outcome outcome;
        const char* identifier;
    };
    const Case cases[] = {
        {"com.example", 1'000'000, Outcome::fewerThanThreeParts, "com.example"},
        {"com..example.", 1'000'000, Outcome::fewerThanThreeParts, "com..example."},
        {"com.example.plist", 1'000'000, Outcome::fewerThanThreeParts, "com.example"},
        {"com.example.app.plist", 1'000'000, Outcome::leftover, "com.example.app"},
        {"com.example.Gone.savedState", 1'000'000, Outcome::leftover, "com.example.Gone"},
        {"com.example.gone.binarycookies", 1'000'000, Outcome::leftover, "com.example.gone"},
        // ".plist" comes off before ".savedState", never after it.
        {"com.example.a.savedState.plist", 1'000'000, Outcome::leftover, "com.example.a"},
        {"com.example.b.plist.savedState", 1'000'000, Outcome::leftover, "com.example.b.plist"},
        {"com.apple.Safari", 1'000'000, Outcome::reservedFamily, "com.apple.Safari"},
        {"COM.APPLE.mail.plist", 1'000'000, Outcome::reservedFamily, "COM.APPLE.mail"},
        {"group.com.example.app", 1'000'000, Outcome::reservedFamily, "group.com.example.app"},
        {"app.dorvik.mac", 1'000'000, Outcome::reservedFamily, "app.dorvik.mac"},
        {"app.dorvikhelper.cache", 1'000'000, Outcome::reservedFamily, "app.dorvikhelper.cache"},
        {"My Company.Tool.Data", 1'000'000, Outcome::space, "My Company.Tool.Data"},
        {"My Company.Tool", 1'000'000, Outcome::fewerThanThreeParts, "My Company.Tool"},
        {"com.example.installed", 1'000'000, Outcome::installed, "com.example.installed"},
        {"Com.Example.Installed.plist", 1'000'000, Outcome::installed, "Com.Example.Installed"},
        {"com.example.installed.helper", 1'000'000, Outcome::partOfInstalled,
         "com.example.installed.helper"},
        {"com.example.installedpro", 1'000'000, Outcome::leftover, "com.example.installedpro"},
        {"com.example.Elsewhere", 1'000'000, Outcome::knownToSystem, "com.example.Elsewhere"},
        {"com.example.small", 65'535, Outcome::tooSmall, "com.example.small"},
        {"com.example.enough", 65'536, Outcome::leftover, "com.example.enough"},
    };
    const std::set<std::string> installed =
        LeftoverSearch::installedIdentifiers(std::vector<std::string>{"com.example.INSTALLED"});
    for (const Case& c : cases) {
        RecordingProbes recording;
        recording.knownElsewhere = {"com.example.Elsewhere"};
        const LibraryEntry entry = cacheEntry(c.name);
        recording.sizes[entry.path] = c.size;
        const auto examination = LeftoverSearch::examineName(entry, installed, recording.probes());
        EXPECT_EQ(examination.outcome, c.outcome) << c.name;
        EXPECT_EQ(examination.identifier, c.identifier) << c.name;
        // The system is asked only past the installed tests, with the case as found, and only
        // what it doesn't know is measured.
        const bool pastInstalled = c.outcome >= Outcome::knownToSystem;
        EXPECT_EQ(recording.askedSystem, pastInstalled ? std::vector<std::string>{c.identifier}
                                                       : std::vector<std::string>{})
            << c.name;
        EXPECT_EQ(recording.measured.size(), c.outcome >= Outcome::tooSmall ? 1u : 0u) << c.name;
        if (c.outcome >= Outcome::tooSmall) {
            EXPECT_EQ(examination.size, c.size) << c.name;
        }
    }
}

// The location is compared with the folder paths, while the entries carry the short labels: a
// perfect leftover in any real location is dropped there, before anything is asked or measured.
TEST(LeftoverSearch, TheLocationTestComesFirstAndComparesTheWrittenNames) {
    for (const auto& location : AppInventory::libraryLocations) {
        EXPECT_FALSE(LeftoverSearch::isSearchedLocation(location.label)) << location.label;
        RecordingProbes recording;
        const LibraryEntry entry{"/home/me/" + std::string(location.relativePath) +
                                     "/com.example.gone",
                                 "com.example.gone", std::string(location.label)};
        EXPECT_EQ(LeftoverSearch::examine(entry, {}, recording.probes()).outcome,
                  Outcome::otherLocation)
            << location.label;
        EXPECT_TRUE(recording.askedSystem.empty());
        EXPECT_TRUE(recording.measured.empty());
    }
    const std::map<std::string, bool> written = {
        {"Library/Application Support", true},
        {"Library/Caches", true},
        {"Library/Containers", true},
        {"Library/Preferences", true},
        {"Library/Saved Application State", true},
        {"Library/HTTPStorages", true},
        {"Library/WebKit", true},
        {"Library/Logs", true},
        {"Library/Group Containers", false},
        {"Library/Cookies", false},
        {"Library/LaunchAgents", false},
        {"Library/Application Scripts", false},
        {"library/caches", false},
    };
    for (const auto& [label, searched] : written) {
        EXPECT_EQ(LeftoverSearch::isSearchedLocation(label), searched) << label;
        RecordingProbes recording;
        const LibraryEntry entry{"/home/me/" + label + "/com.example.gone", "com.example.gone",
                                 label};
        EXPECT_EQ(LeftoverSearch::examine(entry, {}, recording.probes()).outcome,
                  searched ? Outcome::leftover : Outcome::otherLocation)
            << label;
    }
}

TEST(LeftoverSearch, InstalledIdentifiersAreReadFromTheBundlesOfTheRoots) {
    test::TestHome home;
    test::TempDir system;
    test::ScopedEnvironment root("DORVIK_SYSTEM_ROOT", system.path());
    test::writeInfoPlist(system.path() + "/Applications/Writer.app",
                         {{"CFBundleIdentifier", "com.example.writer"}});
    test::writeInfoPlist(home.home + "/Applications/Paint.app",
                         {{"CFBundleIdentifier", "org.example.paint"}}, test::PlistFormat::binary);
    test::writeInfoPlist(system.path() + "/Applications/Utilities/Bare.app",
                         {{"CFBundleName", "B"}});
    auto identifiers = LeftoverSearch::bundleIdentifiersInRoots();
    std::ranges::sort(identifiers);
    EXPECT_EQ(identifiers, (std::vector<std::string>{"com.example.writer", "org.example.paint"}));
}

class LeftoverHome : public ::testing::Test {
protected:
    test::TestHome testHome;
    test::TempDir system;
    test::ScopedEnvironment root{"DORVIK_SYSTEM_ROOT", system.path()};
    std::string library = testHome.home + "/Library";

    void SetUp() override {
        test::writeFile(library + "/Application Support/com.example.gone/data", 300'000);
        test::writeFile(library + "/Caches/com.example.gone/blob", 150'000);
        test::writeFile(library + "/Preferences/org.example.old.plist", 90'000);
        test::setModificationTime(library + "/Preferences/org.example.old.plist", 1'600'000'000);
        test::writeFile(library + "/Caches/com.example.tiny/blob", 100);
        test::writeFile(library + "/Caches/com.example.writer/blob", 500'000);
        test::writeFile(library + "/Cookies/com.example.gone.binarycookies", 200'000);
        test::writeFile(library + "/Group Containers/ABCDE.com.example.gone/data", 200'000);
        // Installed deep below a root: the roots' listing misses it, the system does not.
        const std::string deep = system.path() + "/Applications/Vendor/Suite/Tool.app";
        test::writeInfoPlist(deep, {{"CFBundleIdentifier", "com.vendor.tool"}});
        test::writeFile(library + "/Caches/com.vendor.tool/blob", 400'000);
    }
};

// With the location test taken as passed (each entry labelled by its folder), the rest of the
// search runs on the real Library: real sizes, the modification date, largest first.
TEST_F(LeftoverHome, EntriesPastTheLocationTestAreMeasuredDatedAndSorted) {
    std::vector<LibraryEntry> entries = AppInventory::libraryEntries(testHome.home, true);
    for (LibraryEntry& entry : entries) {
        for (const auto& location : AppInventory::libraryLocations) {
            if (entry.label == location.label) {
                entry.label = std::string(location.relativePath);
            }
        }
    }
    const auto leftovers = LeftoverSearch::search(
        LeftoverSearch::installedIdentifiers(std::vector<std::string>{"com.example.writer"}),
        entries, LeftoverSearch::systemProbes());
    ASSERT_EQ(leftovers.size(), 3u);
    EXPECT_EQ(leftovers[0].path, library + "/Application Support/com.example.gone");
    EXPECT_EQ(leftovers[0].location, "Library/Application Support");
    EXPECT_EQ(leftovers[1].path, library + "/Caches/com.example.gone");
    EXPECT_EQ(leftovers[2].path, library + "/Preferences/org.example.old.plist");
    EXPECT_EQ(leftovers[2].identifier, "org.example.old");
    EXPECT_EQ(leftovers[2].size,
              test::allocatedBytes(library + "/Preferences/org.example.old.plist"));
    ASSERT_TRUE(leftovers[2].modified);
    EXPECT_DOUBLE_EQ(*leftovers[2].modified, 1'600'000'000);
    EXPECT_GT(leftovers[0].size, leftovers[1].size);
}

// As the locations are labelled, the search of a real Library lists nothing, however plain the
// leftovers in it.
TEST_F(LeftoverHome, TheSearchOfARealLibraryListsNothing) {
    EXPECT_TRUE(LeftoverSearch::search(std::vector<std::string>{"com.example.writer"}).empty());
    EXPECT_TRUE(LeftoverSearch::search(std::vector<InstalledApp>{}).empty());
}

} // namespace
} // namespace dorvik
