#include "platform/FlatpakPlaces.h"
#include "platform/FlatpakUninstall.h"
#include "support/Environment.h"
#include "support/RecordingRunner.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

namespace dorvik::platform {
namespace {

TEST(FlatpakPlaces, AnAppsFolderIsExactlyOneLevelBelowAnInstallation) {
    test::TempDir dir;
    test::ScopedEnvironment data("XDG_DATA_HOME", dir / "data");
    test::ScopedEnvironment root("DORVIK_SYSTEM_ROOT", dir / "root");
    const std::string userApps = dir / "data/flatpak/app";
    const std::string systemApps = dir / "root/var/lib/flatpak/app";
    EXPECT_EQ(flatpakAppsFolder(FlatpakInstallation::user), userApps);
    EXPECT_EQ(flatpakAppsFolder(FlatpakInstallation::system), systemApps);
    constexpr auto user = FlatpakInstallation::user;
    constexpr auto system = FlatpakInstallation::system;
    const struct {
        std::string path;
        std::optional<FlatpakAppFolder> expected;
    } cases[] = {
        {userApps + "/org.example.Writer", FlatpakAppFolder{"org.example.Writer", user}},
        {systemApps + "/io.github.some_one.Tool-2",
         FlatpakAppFolder{"io.github.some_one.Tool-2", system}},
        {userApps + "/org.example", std::nullopt},
        {userApps + "/org..example.Writer", std::nullopt},
        {userApps + "/org.example.Writer.", std::nullopt},
        {userApps + "/.org.example.Writer", std::nullopt},
        {userApps + "/org.example.Writer/current", std::nullopt},
        {userApps + "/org.example.Wri ter", std::nullopt},
        {userApps + "/org.example.Writer;rm", std::nullopt},
        {userApps, std::nullopt},
        {dir / "data/flatpak/runtime/org.example.Platform", std::nullopt},
        {"/var/lib/flatpak/app/org.example.Writer", std::nullopt}, // the root is moved here
    };
    for (const auto& c : cases) {
        EXPECT_EQ(flatpakAppOfFolder(c.path), c.expected) << c.path;
    }
}

TEST(FlatpakUninstall, TheUserInstallationDirectlyTheSystemsAsAdministrator) {
    test::RecordingRunner runner;
    EXPECT_EQ(
        uninstallFlatpakApp({"org.example.Writer", FlatpakInstallation::user}, runner.runner()),
        std::nullopt);
    EXPECT_EQ(
        uninstallFlatpakApp({"org.example.Writer", FlatpakInstallation::system}, runner.runner()),
        std::nullopt);
    ASSERT_EQ(runner.calls.size(), 2u);
    EXPECT_EQ(runner.calls[0],
              (std::vector<std::string>{"/usr/bin/flatpak", "uninstall", "--user",
                                        "--noninteractive", "-y", "org.example.Writer"}));
    EXPECT_EQ(runner.calls[1],
              (std::vector<std::string>{
                  "/usr/bin/pkexec", "/bin/sh", "-c",
                  "/usr/bin/flatpak uninstall --system --noninteractive -y org.example.Writer"}));

    runner.answer = {true, 126, "", ""};
    EXPECT_EQ(
        uninstallFlatpakApp({"org.example.Writer", FlatpakInstallation::system}, runner.runner()),
        "Cancelled.");
    // A malformed identifier never reaches a command line.
    const size_t before = runner.calls.size();
    EXPECT_EQ(
        uninstallFlatpakApp({"org.example.W;reboot", FlatpakInstallation::system}, runner.runner()),
        "Flatpak could not uninstall the app.");
    EXPECT_EQ(runner.calls.size(), before);
}

} // namespace
} // namespace dorvik::platform
