// The settings window as a user meets it: its three tabs, each control bound to its one stored
// key, the background's switches, "Run Now" over a real clean, and the exclusions list.

#include "UiTest.h"
#include "platform/HomeDirectory.h"
#include "support/TestHome.h"
#include "ui/Appearance.h"
#include "ui/LinuxWording.h"
#include "ui/sheets/SettingsView.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QTabWidget>
#include <QTest>
#include <QToolButton>

#include <filesystem>

namespace dorvik {
namespace {

using namespace std::chrono_literals;

class SettingsViewTest : public test::UiTest {
protected:
    void SetUp() override {
        UiTest::SetUp();
        std::filesystem::remove_all(platform::configHomeDirectory() + "/autostart");
    }
    void TearDown() override {
        std::filesystem::remove_all(platform::configHomeDirectory() + "/autostart");
        UiTest::TearDown();
    }

    std::unique_ptr<AppState> makeStartedState(bool hasAccess = true) {
        AppStateOptions options;
        options.accessProbe = [hasAccess] { return hasAccess; };
        options.background.tickInterval = 1h;
        options.background.notify = [](std::string_view, std::string_view) {};
        auto state = std::make_unique<AppState>(options);
        state->background().start(*state);
        test::settle();
        return state;
    }

    // Chooses the entry `text` of a closed picker with the keyboard, as a user would.
    static void choose(QComboBox* picker, const QString& text) {
        const int target = picker->findText(text);
        ASSERT_GE(target, 0) << text.toStdString();
        picker->setFocus();
        while (picker->currentIndex() != target) {
            QTest::keyClick(picker, picker->currentIndex() < target ? Qt::Key_Down : Qt::Key_Up);
        }
    }

    AppearanceController appearance{QPalette()};
};

TEST_F(SettingsViewTest, ThreeTabsInOrder) {
    auto state = makeStartedState();
    SettingsView view(*state, appearance);
    ASSERT_EQ(view.tabs()->count(), 3);
    EXPECT_EQ(view.tabs()->tabText(0), QStringLiteral("General"));
    EXPECT_EQ(view.tabs()->tabText(1), QStringLiteral("Automation"));
    EXPECT_EQ(view.tabs()->tabText(2), QStringLiteral("Exclusions"));
    EXPECT_EQ(view.size(), settingsViewSize);
}

TEST_F(SettingsViewTest, TheGeneralSwitchesWriteTheirKeysAndTheLoginEntry) {
    LinuxWording wording;
    QApplication::installTranslator(&wording);
    auto state = makeStartedState();
    SettingsView view(*state, appearance);
    view.show();
    EXPECT_TRUE(view.fullDiskAccessRow()->isVisibleTo(&view));
    EXPECT_TRUE(test::showsText(&view, QStringLiteral("Granted")));
    EXPECT_TRUE(test::showsText(&view, QStringLiteral("Access to all files")));
    EXPECT_EQ(view.menuBarBox()->text(), QStringLiteral("Show free space in the system tray"));
    QApplication::removeTranslator(&wording);

    // On at first, as their defaults say; the login switch reads the entry, which isn't there.
    EXPECT_TRUE(view.menuBarBox()->isChecked());
    EXPECT_TRUE(view.watchRemovedAppsBox()->isChecked());
    EXPECT_FALSE(view.launchAtLoginBox()->isChecked());

    QTest::mouseClick(view.menuBarBox(), Qt::LeftButton);
    QTest::mouseClick(view.watchRemovedAppsBox(), Qt::LeftButton);
    EXPECT_FALSE(state->settings().menuBar());
    EXPECT_FALSE(state->settings().watchRemovedApps());

    const std::string entry = platform::configHomeDirectory() + "/autostart/dorvik.desktop";
    QTest::mouseClick(view.launchAtLoginBox(), Qt::LeftButton);
    EXPECT_TRUE(std::filesystem::exists(entry));
    EXPECT_TRUE(view.launchAtLoginBox()->isChecked());
    QTest::mouseClick(view.launchAtLoginBox(), Qt::LeftButton);
    EXPECT_FALSE(std::filesystem::exists(entry));

    // A change that fails leaves the switch showing what is true.
    std::filesystem::remove_all(platform::configHomeDirectory() + "/autostart");
    test::writeText(platform::configHomeDirectory() + "/autostart", "in the way");
    QTest::mouseClick(view.launchAtLoginBox(), Qt::LeftButton);
    EXPECT_FALSE(view.launchAtLoginBox()->isChecked());
}

TEST_F(SettingsViewTest, WithoutAccessTheGrantedRowIsNotShown) {
    auto state = makeStartedState(false);
    SettingsView view(*state, appearance);
    view.show();
    EXPECT_FALSE(view.fullDiskAccessRow()->isVisibleTo(&view));
    EXPECT_FALSE(test::visibleButton(&view, QStringLiteral("Grant…")));
}

TEST_F(SettingsViewTest, ThePickersShowAndStoreTheirKeys) {
    auto state = makeStartedState();
    state->settings().setLowSpaceGB(0);
    SettingsView view(*state, appearance);
    view.show();
    view.tabs()->setCurrentIndex(1);
    QStringList schedules;
    for (int index = 0; index < view.schedulePicker()->count(); ++index) {
        schedules.append(view.schedulePicker()->itemText(index));
    }
    EXPECT_EQ(schedules, (QStringList{"Off", "Every day", "Every week", "Every month"}));
    EXPECT_EQ(view.schedulePicker()->currentText(), QStringLiteral("Off"));
    EXPECT_EQ(view.lowSpacePicker()->currentText(), QStringLiteral("Never"));

    choose(view.schedulePicker(), QStringLiteral("Every week"));
    EXPECT_EQ(state->settings().cleanSchedule(), QStringLiteral("weekly"));
    choose(view.lowSpacePicker(), QStringLiteral("20 GB"));
    EXPECT_EQ(state->settings().lowSpaceGB(), 20);
    choose(view.lowSpacePicker(), QStringLiteral("Never"));
    EXPECT_EQ(state->settings().lowSpaceGB(), 0);

    // What another window or process stored is shown when the background says so.
    state->background().setLowSpaceGB(50);
    EXPECT_EQ(view.lowSpacePicker()->currentText(), QStringLiteral("50 GB"));
    state->background().setCleanSchedule(CleanSchedule::monthly);
    EXPECT_EQ(view.schedulePicker()->currentText(), QStringLiteral("Every month"));
}

TEST_F(SettingsViewTest, RunNowCleansWithTheScheduleOffAndShowsTheLastRun) {
    // A home and a history of this test's own: the clean removes for real.
    const test::TestHome testHome;
    const std::string cache = testHome.home + "/Library/Caches/settings-test-cache";
    test::writeFile(cache + "/blob", 100'000);
    auto state = makeStartedState();
    SettingsView view(*state, appearance);
    view.show();
    view.tabs()->setCurrentIndex(1);
    EXPECT_FALSE(view.lastRunLabel()->isVisibleTo(&view));
    ASSERT_EQ(state->background().cleanSchedule(), CleanSchedule::off);

    QTest::mouseClick(view.runNowButton(), Qt::LeftButton);
    EXPECT_EQ(view.runNowButton()->text(), QStringLiteral("Cleaning"));
    EXPECT_FALSE(view.runNowButton()->isEnabled());
    ASSERT_TRUE(test::waitUntil([&] { return !state->background().isCleaning(); }));
    EXPECT_EQ(view.runNowButton()->text(), QStringLiteral("Run Now"));
    EXPECT_TRUE(view.runNowButton()->isEnabled());
    EXPECT_FALSE(test::entryExists(cache));
    EXPECT_TRUE(view.lastRunLabel()->isVisibleTo(&view));
    EXPECT_TRUE(view.lastRunLabel()->text().startsWith(QStringLiteral("today \u00b7 ")))
        << view.lastRunLabel()->text().toStdString();
    EXPECT_FALSE(view.lastRunLabel()->text().endsWith(QStringLiteral("Zero KB")));
}

TEST_F(SettingsViewTest, ExclusionsAreStoredCanonicalAndRemovedWithTheirTwins) {
    auto state = makeStartedState();
    scanFolder(*state, dir.path());
    const int revision = state->revision();
    const FileNodePtr root = state->scan()->root;
    SettingsView view(*state, appearance);
    view.show();
    view.tabs()->setCurrentIndex(2);
    EXPECT_TRUE(test::showsText(&view, QStringLiteral("Folders Dorvik never scans or suggests "
                                                      "deleting.")));
    EXPECT_FALSE(view.removeExclusionButton()->isEnabled());

    view.addExclusion(QStringLiteral("/System/Volumes/Data/Users/ann/Movies"));
    view.addExclusion(QStringLiteral("/srv/media"));
    view.addExclusion(QStringLiteral("/Users/ann/Movies")); // a twin is harmless
    EXPECT_EQ(state->settings().excludedRaw(),
              QStringLiteral("/Users/ann/Movies\n/srv/media\n/Users/ann/Movies"));
    ASSERT_EQ(view.exclusionList()->count(), 3);
    EXPECT_EQ(view.exclusionList()->item(0)->text(), QStringLiteral("/Users/ann/Movies"));

    view.exclusionList()->setCurrentRow(2);
    EXPECT_TRUE(view.removeExclusionButton()->isEnabled());
    QTest::mouseClick(view.removeExclusionButton(), Qt::LeftButton);
    EXPECT_EQ(state->settings().excludedRaw(), QStringLiteral("/srv/media"));
    EXPECT_EQ(view.exclusionList()->count(), 1);
    EXPECT_TRUE(view.exclusionList()->selectedItems().isEmpty());
    EXPECT_FALSE(view.removeExclusionButton()->isEnabled());
    // No scan starts and the scan in memory stays as it is.
    EXPECT_FALSE(state->isScanning());
    EXPECT_EQ(state->revision(), revision);
    EXPECT_EQ(state->scan()->root, root);
}

} // namespace
} // namespace dorvik
