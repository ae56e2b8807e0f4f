#include "support/RecordingRunner.h"
#include "support/TempDir.h"
#include "system/AutostartEntries.h"
#include "system/DesktopEntry.h"
#include "system/LaunchItemRemoval.h"
#include "system/SystemdUserUnits.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace dorvik {
namespace {

// A home with its own configuration and applications, and a system root beside it, as a GNOME
// session sees them.
struct LinuxDesktop {
    test::TempDir dir;
    LaunchPlaces places;

    LinuxDesktop() {
        places.home = dir / "home";
        places.configHome = dir / "home/.config";
        places.dataHome = dir / "home/.local/share";
        places.systemRoot = dir / "root";
        places.dataDirectories = {dir / "root/usr/share"};
        places.currentDesktops = {"ubuntu", "GNOME"};
    }

    std::string userEntry(const std::string& name) const {
        return places.folder(LaunchScope::autostartUser) + "/" + name;
    }
    std::string systemEntry(const std::string& name) const {
        return places.folder(LaunchScope::autostartSystem) + "/" + name;
    }
    std::vector<LaunchItem> list() const {
        return listAutostartEntries(places, DesktopApplications::read(places.applicationFolders()));
    }
};

std::string entry(const std::string& keys) {
    return "[Desktop Entry]\nType=Application\n" + keys + "\n[Desktop Action New]\nExec=other\n";
}

const LaunchItem* named(const std::vector<LaunchItem>& items, const std::string& label) {
    const auto found = std::ranges::find(items, label, &LaunchItem::label);
    return found == items.end() ? nullptr : &*found;
}

TEST(Autostart, EntriesAreOnOrOffAsTheDesktopDecides) {
    LinuxDesktop desktop;
    test::writeText(desktop.places.dataDirectories[0] + "/applications/org.example.Chat.desktop",
                    entry("Name=Chat\nIcon=chat-icon\nExec=/usr/bin/chat %U"));
    test::writeText(desktop.places.dataHome + "/applications/syncer.desktop",
                    entry("Name=File Syncer\nExec=\"/opt/Sync Tool/syncer\" --start"));
    struct Case {
        std::string name;
        bool inSystem;
        std::string keys;
        bool turnedOff;
        bool orphan;
        std::optional<std::string> owner;
    };
    const std::vector<Case> cases = {
        {"plain", false, "Name=Plain\nExec=/bin/sh -c true", false, false, std::nullopt},
        {"hidden", false, "Name=Hidden\nExec=/bin/sh\nHidden=true", true, false, std::nullopt},
        {"gnome-off", true, "Name=Off\nExec=/bin/sh\nX-GNOME-Autostart-enabled=false", true, false,
         std::nullopt},
        {"kde-only", true, "Name=KDE\nExec=/bin/sh\nOnlyShowIn=KDE;LXQt;", true, false,
         std::nullopt},
        {"gnome-only", true, "Name=GNOME\nExec=/bin/sh\nOnlyShowIn=XFCE;GNOME;", false, false,
         std::nullopt},
        {"not-gnome", true, "Name=Not\nExec=/bin/sh\nNotShowIn=GNOME;", true, false, std::nullopt},
        {"vanished", false, "Name=Vanished\nExec=/opt/dorvik-test-vanished/run --tray", false, true,
         std::nullopt},
        {"org.example.Chat", true, "Name=Chat helper\nExec=chat-helper", false, false, "Chat"},
        {"sync-at-login", false, "Name=Sync\nExec=env LANG=C syncer --hidden", false, false,
         "File Syncer"},
        {"shell-wrapper", false, "Name=Wrapper\nExec=sh -c syncer", false, false, std::nullopt},
    };
    for (const Case& row : cases) {
        const std::string path = row.inSystem ? desktop.systemEntry(row.name + ".desktop")
                                              : desktop.userEntry(row.name + ".desktop");
        test::writeText(path, entry(row.keys));
    }
    test::writeText(desktop.userEntry("readme.txt"), "not an entry");
    const std::vector<LaunchItem> items = desktop.list();
    EXPECT_EQ(items.size(), cases.size());
    for (const Case& row : cases) {
        SCOPED_TRACE(row.name);
        const LaunchItem* item = named(items, row.name);
        ASSERT_NE(item, nullptr);
        EXPECT_EQ(item->scope,
                  row.inSystem ? LaunchScope::autostartSystem : LaunchScope::autostartUser);
        EXPECT_EQ(item->isTurnedOff, row.turnedOff);
        EXPECT_EQ(item->runAtLoad, !row.turnedOff);
        EXPECT_EQ(item->isOrphan, row.orphan);
        EXPECT_EQ(item->ownerName, row.owner);
        EXPECT_TRUE(isRemovable(*item));
    }
    EXPECT_EQ(named(items, "org.example.Chat")->icon, "chat-icon");
    EXPECT_EQ(shownName(*named(items, "plain")), "Plain");
}

TEST(Autostart, TurningASystemEntryOffWritesTheUserOverride) {
    LinuxDesktop desktop;
    test::writeText(desktop.systemEntry("tracker.desktop"),
                    entry("Name=Tracker\nExec=/bin/sh -c track"));
    test::writeText(desktop.systemEntry("keep.desktop"), entry("Name=Keep\nExec=/bin/sh"));
    test::writeText(desktop.userEntry("keep.desktop"),
                    entry("Name=Keep mine\nExec=/bin/sh --mine"));

    std::vector<LaunchItem> items = desktop.list();
    ASSERT_EQ(items.size(), 2u);
    const LaunchItem* keep = named(items, "keep");
    EXPECT_EQ(keep->scope, LaunchScope::autostartUser); // the user's entry stands in for it
    EXPECT_TRUE(keep->shadowsSystemEntry);
    EXPECT_FALSE(isRemovable(*keep));

    const LaunchItem tracker = *named(items, "tracker");
    test::RecordingRunner runner;
    const LaunchRemoval removal = removeLaunchItem(tracker, desktop.places, runner.runner());
    EXPECT_FALSE(removal.message.has_value());
    EXPECT_FALSE(removal.toTrash.has_value());
    EXPECT_TRUE(runner.calls.empty());
    EXPECT_TRUE(test::entryExists(desktop.systemEntry("tracker.desktop")));
    const auto written =
        DesktopEntry::readGroup(desktop.userEntry("tracker.desktop"), "Desktop Entry");
    ASSERT_TRUE(written.has_value());
    EXPECT_TRUE(DesktopEntry::isTrue(*written, "Hidden"));

    items = desktop.list();
    const LaunchItem* off = named(items, "tracker");
    ASSERT_NE(off, nullptr);
    EXPECT_TRUE(off->isTurnedOff);
    EXPECT_FALSE(off->runAtLoad);
    EXPECT_TRUE(off->shadowsSystemEntry);
    EXPECT_EQ(shownName(*off), "Tracker");

    // A second time the override is there already: it is not written over.
    EXPECT_EQ(removeLaunchItem(tracker, desktop.places, runner.runner()).message,
              std::string(couldNotRemoveMessage));
}

TEST(Autostart, ExecLinesNameTheirProgram) {
    const std::vector<std::pair<std::string, std::optional<std::string>>> cases = {
        {"/usr/bin/app --flag %U", "/usr/bin/app"},
        {"\"/opt/My App/run\" --x", "/opt/My App/run"},
        {"\"/opt/quote\\\"d/run\"", "/opt/quote\"d/run"},
        {"env A=1 B=2 tool --x", "tool"},
        {"-/usr/bin/maybe", "/usr/bin/maybe"},
        {"@/usr/bin/daemon name", "/usr/bin/daemon"},
        {"   ", std::nullopt},
        {"env A=1", std::nullopt},
    };
    for (const auto& [line, program] : cases) {
        EXPECT_EQ(DesktopEntry::execProgram(line), program) << line;
    }
}

TEST(SystemdUserUnits, EnabledUnitsAreListedAndDisabledThroughSystemctlElseTheLinkGoes) {
    LinuxDesktop desktop;
    const std::string units = desktop.places.folder(LaunchScope::systemdUser);
    test::writeText(units + "/sync.service",
                    "[Unit]\nDescription=Sync daemon\n[Service]\nExecStart=/opt/dorvik-test-gone/"
                    "syncd --foreground\nRestart=always\n[Install]\nWantedBy=default.target\n");
    test::writeText(desktop.places.systemRoot + "/usr/lib/systemd/user/pipe.service",
                    "[Service]\nExecStart=-/bin/sh -c pipe\n");
    test::makeFolder(units + "/default.target.wants");
    test::makeSymlink("../sync.service", units + "/default.target.wants/sync.service");
    test::makeSymlink("/usr/lib/systemd/user/pipe.service",
                      units + "/default.target.wants/pipe.service");
    test::writeText(units + "/not-wants/other.service", "[Service]\nExecStart=/bin/true\n");

    std::vector<LaunchItem> items = listSystemdUserUnits(desktop.places, DesktopApplications{});
    ASSERT_EQ(items.size(), 2u);
    const LaunchItem* sync = named(items, "sync.service");
    ASSERT_NE(sync, nullptr);
    EXPECT_EQ(sync->program, "/opt/dorvik-test-gone/syncd");
    EXPECT_TRUE(sync->keepAlive);
    EXPECT_TRUE(sync->runAtLoad);
    EXPECT_TRUE(sync->isOrphan);
    EXPECT_EQ(shownName(*sync), "Sync daemon");
    const LaunchItem* pipe = named(items, "pipe.service");
    ASSERT_NE(pipe, nullptr);
    EXPECT_EQ(pipe->program, "/bin/sh"); // read under the system root
    EXPECT_FALSE(pipe->keepAlive);

    test::RecordingRunner answers;
    LaunchRemoval removal = removeLaunchItem(*sync, desktop.places, answers.runner());
    ASSERT_EQ(answers.calls.size(), 1u);
    EXPECT_EQ(answers.calls[0], (std::vector<std::string>{"/usr/bin/systemctl", "--user", "disable",
                                                          "sync.service"}));
    EXPECT_FALSE(removal.toTrash.has_value());
    EXPECT_FALSE(removal.message.has_value());

    test::RecordingRunner noBus;
    noBus.answer = {true, 1, "", "Failed to connect to bus"};
    removal = removeLaunchItem(*sync, desktop.places, noBus.runner());
    EXPECT_EQ(removal.toTrash, sync->path);
    EXPECT_FALSE(removal.message.has_value());
}

} // namespace
} // namespace dorvik
