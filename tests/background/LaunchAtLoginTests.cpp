// Launch at login as an autostart entry, in the private configuration folder of the test run
// (XDG_CONFIG_HOME points into a temporary folder for the whole run).

#include "background/BackgroundServices.h"
#include "background/LaunchAtLogin.h"
#include "platform/HomeDirectory.h"
#include "state/SettingsState.h"
#include "support/TempDir.h"

#include <QSettings>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

namespace dorvik {
namespace {

QStringList logged;

void keepMessage(QtMsgType, const QMessageLogContext&, const QString& text) {
    logged.append(text);
}

class LaunchAtLoginTest : public testing::Test {
protected:
    void SetUp() override {
        // The test run's main points it into a temporary folder of its own.
        ASSERT_NE(std::getenv("XDG_CONFIG_HOME"), nullptr);
        std::filesystem::remove_all(platform::configHomeDirectory() + "/autostart");
        logged.clear();
    }
    void TearDown() override {
        std::filesystem::remove_all(platform::configHomeDirectory() + "/autostart");
    }
};

TEST_F(LaunchAtLoginTest, TheEntryIsWrittenAndRemovedAndReadLive) {
    SettingsState settings;
    BackgroundOptions options;
    options.executable = QStringLiteral("/opt/my apps/100% \"dorvik\"");
    BackgroundServices background(settings, options);
    EXPECT_FALSE(background.launchAtLogin());

    background.setLaunchAtLogin(true);
    EXPECT_TRUE(background.launchAtLogin());
    const std::string path = platform::configHomeDirectory() + "/autostart/dorvik.desktop";
    ASSERT_EQ(LaunchAtLogin::entryPath().toStdString(), path);
    const std::string text = test::readText(path);
    EXPECT_TRUE(text.starts_with("[Desktop Entry]\nType=Application\n")) << text;
    // Quoted, "%" doubled, the quote escaped, and that escape's backslash escaped once more.
    EXPECT_NE(text.find("\nExec=\"/opt/my apps/100%% \\\\\"dorvik\\\\\"\"\n"), std::string::npos)
        << text;
    EXPECT_EQ(std::filesystem::status(path).permissions() & std::filesystem::perms::others_write,
              std::filesystem::perms::none);
    // Nothing of it is kept in the settings.
    EXPECT_TRUE(QSettings(settingsOrganisation, settingsApplication)
                    .allKeys()
                    .filter(QStringLiteral("ogin"))
                    .isEmpty());

    background.setLaunchAtLogin(false);
    EXPECT_FALSE(std::filesystem::exists(path));
    EXPECT_FALSE(background.launchAtLogin());
    // Turning off what is off is no failure.
    background.setLaunchAtLogin(false);
    EXPECT_TRUE(logged.isEmpty());
}

TEST_F(LaunchAtLoginTest, AFailureGoesToTheLogAndTheSwitchReadsWhatIsTrue) {
    // A file where the folder should be: the entry cannot be written.
    test::writeText(platform::configHomeDirectory() + "/autostart", "in the way");
    SettingsState settings;
    BackgroundServices background(settings);
    const QtMessageHandler previous = qInstallMessageHandler(keepMessage);
    background.setLaunchAtLogin(true);
    qInstallMessageHandler(previous);
    EXPECT_FALSE(background.launchAtLogin());
    ASSERT_EQ(logged.size(), 1);
    EXPECT_TRUE(logged[0].startsWith(QStringLiteral("Launch at login: ")))
        << logged[0].toStdString();
    std::filesystem::remove(platform::configHomeDirectory() + "/autostart");
}

TEST_F(LaunchAtLoginTest, AnEntryHiddenByHandStartsNothing) {
    test::writeText(platform::configHomeDirectory() + "/autostart/dorvik.desktop",
                    "[Desktop Entry]\nType=Application\nExec=dorvik\nHidden=true\n");
    EXPECT_FALSE(LaunchAtLogin::isEnabled());
}

} // namespace
} // namespace dorvik
