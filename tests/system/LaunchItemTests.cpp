#include "platform/HomeDirectory.h"
#include "support/Bundles.h"
#include "support/Environment.h"
#include "support/RecordingRunner.h"
#include "support/TempDir.h"
#include "support/TestHome.h"
#include "system/LaunchItem.h"
#include "system/LaunchItemRemoval.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace dorvik {
namespace {

using test::PlistFormat;

// A home and a system root of the test's own, with the launch agents' folders in both.
struct MacLikeComputer {
    test::TestHome home;
    test::TempDir root;
    test::ScopedEnvironment rootVariable{"DORVIK_SYSTEM_ROOT", root.path()};
    LaunchPlaces places;

    MacLikeComputer() {
        places.home = home.home;
        places.configHome = home.home + "/.config";
        places.dataHome = home.dataHome;
        places.systemRoot = root.path();
    }

    std::string agent(LaunchScope scope, const std::string& name) const {
        return places.folder(scope) + "/" + name;
    }
};

std::string dict(const std::string& inside) {
    return "<dict>" + inside + "</dict>";
}

const LaunchItem* itemAt(const std::vector<LaunchItem>& items, const std::string& path) {
    const auto found = std::ranges::find(items, path, &LaunchItem::path);
    return found == items.end() ? nullptr : &*found;
}

TEST(LaunchItems, PropertyListsGiveTheirFieldsInXmlAndBinary) {
    MacLikeComputer computer;
    const std::string vanished = computer.home.home + "/Applications/Gone.app/Contents/MacOS/gone";
    test::writeInfoPlist(computer.home.home + "/Applications/Helper.app",
                         {{"CFBundleIdentifier", "com.example.helper"}});
    struct Case {
        std::string name;
        std::string body;
        std::string label;
        std::optional<std::string> program;
        bool runAtLoad;
        bool keepAlive;
        std::optional<std::string> ownerName;
        bool isOrphan;
    };
    const std::vector<Case> cases = {
        {"no-label.plist", dict("<key>Program</key><string>/bin/sh</string>"), "no-label",
         "/bin/sh", false, false, std::nullopt, false},
        {"keep.plist",
         dict("<key>Label</key><string>org.keep</string><key>KeepAlive</key><dict><key>"
              "SuccessfulExit</key><false/></dict><key>RunAtLoad</key><true/>"),
         "org.keep", std::nullopt, true, true, std::nullopt, false},
        {"not-bool.plist",
         dict("<key>Label</key><string>org.strings</string><key>KeepAlive</key><string>yes"
              "</string><key>RunAtLoad</key><string>YES</string>"),
         "org.strings", std::nullopt, false, false, std::nullopt, false},
        {"gone.plist",
         dict("<key>Label</key><string>org.gone</string><key>ProgramArguments</key><array>"
              "<string>" +
              vanished + "</string><string>--daemon</string></array><key>KeepAlive</key><false/>"),
         "org.gone", vanished, false, false, "Gone", true},
        {"bare.plist",
         dict("<key>Label</key><string>org.bare</string><key>Program</key><string>sh</string>"),
         "org.bare", "sh", false, false, std::nullopt, false},
        {"helper.plist",
         dict("<key>Label</key><string>com.example.helper</string><key>Program</key><string>"
              "/usr/local/libexec/helper-that-is-not-there</string>"),
         "com.example.helper", "/usr/local/libexec/helper-that-is-not-there", false, false,
         "Helper", true},
    };
    for (PlistFormat format : {PlistFormat::xml, PlistFormat::binary}) {
        for (const Case& row : cases) {
            SCOPED_TRACE(row.name + (format == PlistFormat::xml ? " xml" : " binary"));
            const std::string path = computer.agent(LaunchScope::userAgent, row.name);
            test::writePropertyList(path, row.body, format);
            const auto bytes = test::readText(path);
            const auto item = launchItemFromPropertyList(
                path, std::span(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size()),
                LaunchScope::userAgent);
            ASSERT_TRUE(item.has_value());
            EXPECT_EQ(item->label, row.label);
            EXPECT_EQ(item->program, row.program);
            EXPECT_EQ(item->runAtLoad, row.runAtLoad);
            EXPECT_EQ(item->keepAlive, row.keepAlive);
            EXPECT_EQ(item->ownerName, row.ownerName);
            EXPECT_EQ(item->isOrphan, row.isOrphan);
            EXPECT_TRUE(item->modified.has_value());
        }
    }
    // The owner of a vanished application still comes from ".app/" in its path.
    const auto items = listLaunchAgents(computer.places);
    const LaunchItem* gone = itemAt(items, computer.agent(LaunchScope::userAgent, "gone.plist"));
    ASSERT_NE(gone, nullptr);
    EXPECT_EQ(gone->ownerPath, computer.home.home + "/Applications/Gone.app");
}

TEST(LaunchItems, ListingSkipsWhatIsNoLaunchAgentAndSortsOrphansFirst) {
    MacLikeComputer computer;
    const auto write = [&](LaunchScope scope, const std::string& name, const std::string& label,
                           const std::string& program) {
        test::writePropertyList(computer.agent(scope, name),
                                dict("<key>Label</key><string>" + label +
                                     "</string><key>Program</key><string>" + program + "</string>"),
                                PlistFormat::binary);
    };
    write(LaunchScope::userAgent, "a.plist", "alpha", "/bin/sh");
    write(LaunchScope::systemAgent, "z.plist", "zeta", "/opt/vanished/zeta");
    write(LaunchScope::systemDaemon, "b.plist", "Beta", "/bin/sh");
    write(LaunchScope::userAgent, "c.plist", "com.apple.cloud", "/bin/sh");
    test::writeText(computer.agent(LaunchScope::userAgent, "notes.txt"), "not a list");
    test::writeText(computer.agent(LaunchScope::userAgent, "broken.plist"), "<plist><dict>");
    test::writePropertyList(computer.agent(LaunchScope::userAgent, "array.plist"),
                            "<array><string>x</string></array>");

    const std::vector<LaunchItem> items = listLaunchAgents(computer.places);
    std::vector<std::string> labels;
    for (const LaunchItem& item : items) {
        labels.push_back(item.label);
    }
    EXPECT_EQ(labels, (std::vector<std::string>{"zeta", "alpha", "Beta", "com.apple.cloud"}));
    EXPECT_EQ(items[0].scope, LaunchScope::systemAgent);
    EXPECT_EQ(items[2].scope, LaunchScope::systemDaemon);
    EXPECT_TRUE(isRemovable(items[1]));
    EXPECT_FALSE(isRemovable(items[3])); // Apple's own agent in the user's folder
}

TEST(LaunchItems, PathsOutsideTheAllowedCharactersAreRefusedBeforeAnyCommand) {
    MacLikeComputer computer;
    const std::vector<std::pair<std::string, LaunchScope>> refused = {
        {"/Library/LaunchAgents/it's.plist", LaunchScope::systemAgent},
        {"/Library/LaunchDaemons/a..b.plist", LaunchScope::systemDaemon},
        {"/Library/LaunchDaemons/../../etc/x.plist", LaunchScope::systemDaemon},
        {"/Library/LaunchAgents/$(reboot).plist", LaunchScope::systemAgent},
        {"/Library/LaunchAgents/back\\slash.plist", LaunchScope::systemAgent},
        {"/Library/LaunchAgents/tick`.plist", LaunchScope::systemAgent},
        {"/Library/LaunchAgents/agent.sh", LaunchScope::systemAgent},
        {computer.home.home + "/.config/autostart/x;y.desktop", LaunchScope::autostartUser},
        {computer.home.home + "/.config/systemd/user/default.target.wants/a\\x2d.service",
         LaunchScope::systemdUser},
    };
    for (const auto& [path, scope] : refused) {
        SCOPED_TRACE(path);
        test::RecordingRunner runner;
        LaunchItem item;
        item.path = path;
        item.label = "org.example";
        item.scope = scope;
        const LaunchRemoval removal = removeLaunchItem(item, computer.places, runner.runner());
        EXPECT_EQ(removal.message, std::string(unsupportedFileNameMessage));
        EXPECT_FALSE(removal.toTrash.has_value());
        EXPECT_TRUE(runner.calls.empty());
    }
    EXPECT_TRUE(isAcceptedLaunchItemPath("/Library/LaunchAgents/com.vendor.My Agent@2+x-y.plist",
                                         LaunchScope::systemAgent));
}

TEST(LaunchItems, SystemWideItemsGoThroughOneAdministratorLine) {
    MacLikeComputer computer;
    LaunchItem daemon;
    daemon.path = "/Library/LaunchDaemons/com.vendor.daemon.plist";
    daemon.label = "com.vendor.daemon";
    daemon.scope = LaunchScope::systemDaemon;
    LaunchItem agent = daemon;
    agent.path = "/Library/LaunchAgents/com.vendor.agent.plist";
    agent.scope = LaunchScope::systemAgent;
    const std::string uid = std::to_string(platform::currentUserId());
    struct Case {
        LaunchItem item;
        platform::ToolRun answer;
        std::optional<std::string> message;
        std::string line;
    };
    const std::vector<Case> cases = {
        {daemon,
         {true, 0, "", ""},
         std::nullopt,
         "/bin/launchctl bootout system '/Library/LaunchDaemons/com.vendor.daemon.plist'; /bin/mv "
         "'/Library/LaunchDaemons/com.vendor.daemon.plist' '" +
             computer.home.home + "/.Trash/'"},
        {agent,
         {true, 126, "", ""},
         "Cancelled.",
         "/bin/launchctl bootout gui/" + uid +
             " '/Library/LaunchAgents/com.vendor.agent.plist'; /bin/mv "
             "'/Library/LaunchAgents/com.vendor.agent.plist' '" +
             computer.home.home + "/.Trash/'"},
        {agent, {true, 1, "", ""}, "Couldn't remove it.", ""},
        {agent, {true, 1, "", "mv: permission denied\n"}, "mv: permission denied", ""},
    };
    for (const Case& row : cases) {
        test::RecordingRunner runner;
        runner.answer = row.answer;
        const LaunchRemoval removal = removeLaunchItem(row.item, computer.places, runner.runner());
        EXPECT_EQ(removal.message, row.message);
        EXPECT_FALSE(removal.toTrash.has_value());
        ASSERT_EQ(runner.calls.size(), 1u);
        EXPECT_EQ(runner.calls[0][0], "/usr/bin/pkexec");
        if (!row.line.empty()) {
            EXPECT_EQ(runner.calls[0].back(), row.line);
        }
    }
}

TEST(LaunchItems, UserAgentIsUnloadedOnlyWhereLaunchctlExistsThenTrashedByTheCaller) {
    MacLikeComputer computer;
    LaunchItem item;
    item.path = computer.agent(LaunchScope::userAgent, "org.example.agent.plist");
    item.label = "org.example.agent";
    item.scope = LaunchScope::userAgent;
    test::writePropertyList(item.path, dict(""));

    test::RecordingRunner absent;
    LaunchTools noLaunchctl;
    noLaunchctl.launchctl = computer.root / "bin/launchctl";
    LaunchRemoval removal = removeLaunchItem(item, computer.places, absent.runner(), noLaunchctl);
    EXPECT_TRUE(absent.calls.empty());
    EXPECT_EQ(removal.toTrash, item.path);
    EXPECT_FALSE(removal.message.has_value());

    // An executable stands in for launchctl; the recording runner never starts it.
    test::writeText(noLaunchctl.launchctl, "#!/bin/sh\n");
    test::commandOutput("chmod +x '" + noLaunchctl.launchctl + "'");
    test::RecordingRunner present;
    present.answer = {true, 3, "", "not loaded"};
    removal = removeLaunchItem(item, computer.places, present.runner(), noLaunchctl);
    ASSERT_EQ(present.calls.size(), 1u);
    EXPECT_EQ(
        present.calls[0],
        (std::vector<std::string>{noLaunchctl.launchctl, "bootout",
                                  "gui/" + std::to_string(platform::currentUserId()), item.path}));
    EXPECT_EQ(removal.toTrash, item.path); // a failed unload does not keep the file
}

} // namespace
} // namespace dorvik
