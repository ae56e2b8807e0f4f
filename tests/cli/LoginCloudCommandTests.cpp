// dorvik-cli login-items and cloud over a home and a system root of the test's own, and
// login-items over this computer's own /etc/xdg/autostart, which it only reads.

#include "cli/CliRun.h"
#include "platform/FileSystem.h"
#include "support/Bundles.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <set>

namespace dorvik {
namespace {

using test::cli;
using test::shellQuoted;

struct Computer {
    test::TempDir dir;
    std::string home = dir / "home";
    std::string root = dir / "root";

    std::string environment() const {
        return "HOME=" + shellQuoted(home) + " XDG_CONFIG_HOME=" + shellQuoted(home + "/.config") +
               " XDG_DATA_HOME=" + shellQuoted(home + "/.local/share") +
               " XDG_DATA_DIRS= XDG_CURRENT_DESKTOP=GNOME DORVIK_SYSTEM_ROOT=" +
               shellQuoted(root);
    }
    nlohmann::json items() const {
        const test::CliRun run = cli("login-items --json", false, environment());
        EXPECT_EQ(run.status, 0) << run.out;
        return nlohmann::json::parse(run.out);
    }
};

const nlohmann::json* withLabel(const nlohmann::json& items, const std::string& label) {
    for (const nlohmann::json& item : items) {
        if (item["label"] == label) {
            return &item;
        }
    }
    return nullptr;
}

TEST(LoginItemsCommand, ListsEveryScopeAndRemovesThroughTheTrashOrAnOverride) {
    Computer computer;
    test::writePropertyList(computer.home + "/Library/LaunchAgents/org.agent.plist",
                            "<dict><key>Label</key><string>org.agent</string><key>Program</key>"
                            "<string>/opt/dorvik-test-gone/agent</string></dict>",
                            test::PlistFormat::binary);
    test::writeText(computer.home + "/.config/autostart/mine.desktop",
                    "[Desktop Entry]\nType=Application\nName=Mine\nExec=/bin/sh\n");
    test::writeText(computer.root + "/etc/xdg/autostart/shared.desktop",
                    "[Desktop Entry]\nType=Application\nName=Shared\nExec=/bin/sh\n");

    const nlohmann::json items = computer.items();
    ASSERT_EQ(items.size(), 3u);
    EXPECT_EQ(items[0]["label"], "org.agent"); // the orphan first
    EXPECT_EQ(items[0]["isOrphan"], true);
    EXPECT_EQ(items[0]["scope"], "userAgent");
    ASSERT_NE(withLabel(items, "shared"), nullptr);
    EXPECT_EQ((*withLabel(items, "shared"))["scope"], "autostartSystem");
    EXPECT_EQ((*withLabel(items, "mine"))["runAtLoad"], true);

    const std::string mine = computer.home + "/.config/autostart/mine.desktop";
    test::CliRun run =
        cli("login-items --remove " + shellQuoted(mine) + " --yes", true, computer.environment());
    EXPECT_EQ(run.status, 0) << run.out;
    EXPECT_FALSE(test::entryExists(mine));
    EXPECT_TRUE(test::entryExists(computer.home + "/.local/share/Trash/files/mine.desktop"));

    const std::string shared = computer.root + "/etc/xdg/autostart/shared.desktop";
    run = test::cliOnTerminal("login-items --remove " + shellQuoted(shared), "n\n",
                              computer.environment());
    EXPECT_NE(run.status, 0);
    EXPECT_FALSE(test::entryExists(computer.home + "/.config/autostart/shared.desktop"));
    run = test::cliOnTerminal("login-items --remove " + shellQuoted(shared), "y\n",
                              computer.environment());
    EXPECT_EQ(run.status, 0) << run.out;
    EXPECT_TRUE(test::entryExists(shared));
    const nlohmann::json after = computer.items();
    ASSERT_NE(withLabel(after, "shared"), nullptr);
    EXPECT_EQ((*withLabel(after, "shared"))["turnedOff"], true);
    EXPECT_EQ((*withLabel(after, "shared"))["runAtLoad"], false);

    run =
        cli("login-items --remove " + shellQuoted(computer.home + "/not-listed.desktop") + " --yes",
            true, computer.environment());
    EXPECT_NE(run.status, 0);
    EXPECT_NE(run.out.find("not a login item"), std::string::npos) << run.out;
}

TEST(LoginItemsCommand, ListsWhatThisComputersAutostartFolderHolds) {
    std::set<std::string> expected;
    for (const std::string& name :
         platform::directoryEntries("/etc/xdg/autostart").value_or(std::vector<std::string>{})) {
        if (name.ends_with(".desktop") &&
            test::readText("/etc/xdg/autostart/" + name).find("[Desktop Entry]") !=
                std::string::npos) {
            expected.insert("/etc/xdg/autostart/" + name);
        }
    }
    test::TempDir home;
    const test::CliRun run = cli("login-items --json", false,
                                 "HOME=" + shellQuoted(home.path()) +
                                     " XDG_CONFIG_HOME=" + shellQuoted(home / "config"));
    ASSERT_EQ(run.status, 0) << run.out;
    std::set<std::string> listed;
    for (const nlohmann::json& item : nlohmann::json::parse(run.out)) {
        if (item["scope"] == "autostartSystem") {
            listed.insert(item["path"].get<std::string>());
        }
    }
    EXPECT_EQ(listed, expected);
}

TEST(CloudCommand, SaysICloudIsNotInUseOrListsTheDownloads) {
    test::TempDir home;
    const std::string environment = "HOME=" + shellQuoted(home.path());
    test::CliRun run = cli("cloud", false, environment);
    EXPECT_EQ(run.status, 0);
    EXPECT_NE(run.out.find("iCloud Drive isn\u2019t in use on this computer"), std::string::npos)
        << run.out;

    test::writeAllocatedFile(home / "Library/Mobile Documents/com~apple~CloudDocs/Films/a.mov",
                             2'000'000);
    test::writeSparseFile(home / "Library/Mobile Documents/iCloud~org~example~reader/b.epub",
                          3'000'000);
    run = cli("cloud --json", false, environment);
    ASSERT_EQ(run.status, 0) << run.out;
    const nlohmann::json report = nlohmann::json::parse(run.out);
    EXPECT_EQ(report["isAvailable"], true);
    EXPECT_EQ(report["onlyInCloud"], 3'000'000);
    EXPECT_EQ(report["canBeFreed"], 0); // nothing is known to be uploaded here
    ASSERT_EQ(report["folders"].size(), 2u);
    EXPECT_EQ(report["folders"][0]["title"], "Films");
    EXPECT_EQ(report["folders"][0]["items"][0]["isUploaded"], false);
    EXPECT_EQ(report["folders"][1]["title"], "Reader");
    EXPECT_EQ(report["folders"][1]["isApp"], true);
}

} // namespace
} // namespace dorvik
