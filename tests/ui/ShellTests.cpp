#include "UiTest.h"
#include "base/Dates.h"
#include "ui/Appearance.h"
#include "ui/pages/ScanPage.h"
#include "ui/sheets/SettingsView.h"
#include "ui/shell/DiskFooter.h"
#include "ui/shell/RootView.h"
#include "ui/shell/StaleScanBanner.h"
#include "ui/widgets/PageHeader.h"
#include "ui/widgets/SelectionBar.h"
#include "ui/widgets/UsageBar.h"

#include <QApplication>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QTest>

#include <set>

namespace dorvik {
namespace {

class ShellTest : public test::UiTest {
protected:
    AppearanceController appearance{QApplication::palette()};
};

TEST_F(ShellTest, TheWindowShowsTheSectionsPage) {
    auto state = makeState();
    RootView window(*state, appearance);
    EXPECT_GE(window.minimumWidth(), 1040);
    EXPECT_GE(window.minimumHeight(), 680);
    for (AppSection section : allAppSections) {
        state->setSection(section);
        EXPECT_EQ(window.currentPage(), window.page(section)) << info(section).rawValue;
    }
}

TEST_F(ShellTest, TheSettingsWindowClosesOnEscapeAndCtrlW) {
    auto state = makeState();
    const struct {
        Qt::Key key;
        Qt::KeyboardModifiers modifiers;
    } closers[] = {{Qt::Key_Escape, Qt::NoModifier}, {Qt::Key_W, Qt::ControlModifier}};
    for (const auto& [key, modifiers] : closers) {
        SettingsView settings(*state, appearance);
        settings.show();
        settings.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&settings));
        QTest::keyClick(settings.appearanceButton(0), key, modifiers);
        EXPECT_FALSE(settings.isVisible())
            << QKeySequence(key | modifiers).toString().toStdString();
    }
}

TEST_F(ShellTest, PagesThatWorkFromAScanPromptForOneUntilItIsThere) {
    // The Developer page shows the junk rules' items before a scan too, with a hint to scan
    // (DeveloperViewTests).
    const std::set<AppSection> fromScan = {AppSection::overview, AppSection::explorer,
                                           AppSection::types, AppSection::large,
                                           AppSection::duplicates};
    test::writeFile(dir / "f/a.txt", 10);
    auto state = makeState();
    RootView window(*state, appearance);
    window.show();
    for (AppSection section : allAppSections) {
        const auto* page = dynamic_cast<const Page*>(window.page(section));
        ASSERT_NE(page, nullptr) << info(section).rawValue;
        EXPECT_FALSE(page->header()->title().isEmpty());
        const auto* scanPage = dynamic_cast<const ScanPage*>(page);
        EXPECT_EQ(scanPage != nullptr, fromScan.count(section) == 1) << info(section).rawValue;
        EXPECT_TRUE(scanPage == nullptr || scanPage->showsScanPrompt()) << info(section).rawValue;
    }
    scanFolder(*state, dir / "f");
    for (AppSection section : allAppSections) {
        const auto* page = dynamic_cast<const ScanPage*>(window.page(section));
        EXPECT_TRUE(page == nullptr || !page->showsScanPrompt()) << info(section).rawValue;
    }
}

TEST_F(ShellTest, TheScanMenu) {
    auto state = makeState();
    RootView window(*state, appearance);
    const QList<QAction*> actions = window.scanMenu()->actions();
    ASSERT_EQ(actions.size(), 3);
    const struct {
        QString text;
        QKeySequence shortcut;
    } expected[] = {
        {"Scan Entire Disk", QKeySequence(QStringLiteral("Ctrl+R"))},
        {"Scan Home Folder", QKeySequence(QStringLiteral("Ctrl+Shift+R"))},
        {"Quick Clean", QKeySequence(QStringLiteral("Ctrl+1"))},
    };
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(actions[i]->text(), expected[i].text);
        EXPECT_EQ(actions[i]->shortcut(), expected[i].shortcut) << expected[i].text.toStdString();
    }

    state->setSection(AppSection::history);
    actions[2]->trigger();
    EXPECT_EQ(state->section(), AppSection::smartClean);
    actions[1]->trigger();
    EXPECT_TRUE(state->isScanning());
    EXPECT_EQ(state->scanTarget(), ScanTarget::home());
    ASSERT_TRUE(test::waitUntil([&] { return !state->isScanning(); }));
}

TEST(DiskFooter, TheWarningStartsBelowATenthFree) {
    const struct {
        int64_t total;
        int64_t available;
        bool low;
    } cases[] = {
        {1000, 100, false}, {1000, 99, true}, {1000, 0, true}, {1000, 1000, false}, {0, 0, false},
    };
    for (const auto& c : cases) {
        VolumeInfo volume;
        volume.total = c.total;
        volume.available = c.available;
        EXPECT_EQ(isLowOnSpace(volume), c.low) << c.total << " " << c.available;
    }
}

TEST_F(ShellTest, TheDiskFooterShowsTheStartupVolume) {
    auto state = makeState();
    ASSERT_TRUE(state->volume()); // the test machine's "/"
    DiskFooter footer(*state);
    EXPECT_EQ(footer.nameLabel()->text().toStdString(), state->volume()->name);
    EXPECT_TRUE(footer.freeLabel()->text().endsWith(" free"));
    const double used = 1.0 - static_cast<double>(state->volume()->available) /
                                  static_cast<double>(state->volume()->total);
    EXPECT_NEAR(footer.usedBar()->share(), used, 1e-9);
}

TEST(SelectionBar, ShowsWhatIsSelected) {
    SelectionBar bar("Delete Items");
    bar.show();
    const struct {
        int64_t count;
        int64_t size;
        bool shown;
        QString summary;
    } cases[] = {
        {0, 0, false, {}},
        {1, 2'000'000, true, "1 selected  ·  2 MB"},
        {1234, 5'000'000'000, true, "1,234 selected  ·  5 GB"},
    };
    for (const auto& c : cases) {
        bar.setSelection(c.count, c.size);
        EXPECT_EQ(bar.isVisible(), c.shown) << c.count;
        if (c.shown) {
            EXPECT_EQ(bar.summary()->text(), c.summary);
        }
    }
    EXPECT_FALSE(bar.secondaryButton()->isVisible());
    int secondary = 0;
    int action = 0;
    bar.onSecondary = [&] { ++secondary; };
    bar.onAction = [&] { ++action; };
    bar.setSecondary("Share Space", "Keep both copies in one place on disk");
    EXPECT_TRUE(bar.secondaryButton()->isVisible());
    EXPECT_EQ(bar.secondaryButton()->toolTip(), "Keep both copies in one place on disk");
    bar.secondaryButton()->click();
    bar.actionButton()->click();
    EXPECT_EQ(secondary, 1);
    EXPECT_EQ(action, 1);
}

TEST_F(ShellTest, TheStaleScanBanner) {
    auto state = makeState();
    StaleScanBanner banner(*state);
    const double now = Dates::now();
    banner.setDate(now - 3 * Dates::secondsPerDay, now);
    EXPECT_EQ(banner.headline()->text(), "This scan is from 3 days ago");
    EXPECT_TRUE(banner.rescanButton()->isEnabled());
    state->startScan(ScanTarget::home());
    EXPECT_FALSE(banner.rescanButton()->isEnabled());
    ASSERT_TRUE(test::waitUntil([&] { return !state->isScanning(); }));
    EXPECT_TRUE(banner.rescanButton()->isEnabled());
}

} // namespace
} // namespace dorvik
