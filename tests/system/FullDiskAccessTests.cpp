#include "support/TempDir.h"
#include "system/FullDiskAccess.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

namespace dorvik {
namespace {

namespace fs = std::filesystem;

TEST(FullDiskAccess, LinuxHasNoGate) {
    EXPECT_TRUE(hasFullDiskAccess());
}

TEST(FullDiskAccess, CanariesAreThePrivacyDatabaseThenSafari) {
    EXPECT_EQ(fullDiskAccessCanaries("/Users/me"),
              (std::vector<std::string>{"/Library/Application Support/com.apple.TCC/TCC.db",
                                        "/Users/me/Library/Safari"}));
}

// What stands at each canary path in one case.
enum class Entry { missing, file, unreadableFile, folder, unreadableFolder, danglingLink };

void place(const std::string& path, Entry entry) {
    switch (entry) {
    case Entry::missing:
        return;
    case Entry::file:
    case Entry::unreadableFile:
        test::writeFile(path, 10);
        if (entry == Entry::unreadableFile) {
            fs::permissions(path, fs::perms::none);
        }
        return;
    case Entry::folder:
    case Entry::unreadableFolder:
        test::writeFile(path + "/History.db", 10);
        if (entry == Entry::unreadableFolder) {
            fs::permissions(path, fs::perms::none);
        }
        return;
    case Entry::danglingLink:
        test::makeFolder(fs::path(path).parent_path());
        test::makeSymlink(path + ".nowhere", path);
        return;
    }
}

TEST(FullDiskAccess, ProbeReadsTheFirstCanaryThatWorks) {
    const struct {
        Entry database;
        Entry safari;
        bool granted;
        bool needsPermissions; // root reads everything, so these rows can't be set up as root
    } cases[] = {
        {Entry::missing, Entry::missing, false, false},
        {Entry::file, Entry::missing, true, false},
        {Entry::missing, Entry::folder, true, false},
        {Entry::file, Entry::folder, true, false},
        {Entry::danglingLink, Entry::missing, false, false},
        {Entry::danglingLink, Entry::folder, true, false},
        {Entry::missing, Entry::file, false, false}, // a file is no folder to list
        {Entry::unreadableFile, Entry::missing, false, true},
        {Entry::unreadableFile, Entry::folder, true, true},
        {Entry::missing, Entry::unreadableFolder, false, true},
        {Entry::unreadableFile, Entry::unreadableFolder, false, true},
    };
    for (const auto& [database, safari, granted, needsPermissions] : cases) {
        if (needsPermissions && test::ignoresPermissions()) {
            continue;
        }
        test::TempDir temp;
        const std::vector<std::string> canaries = {temp / "TCC/TCC.db",
                                                   temp / "home/Library/Safari"};
        place(canaries[0], database);
        place(canaries[1], safari);
        EXPECT_EQ(probeFullDiskAccess(canaries), granted)
            << static_cast<int>(database) << " " << static_cast<int>(safari);
    }
}

} // namespace
} // namespace dorvik
