// The tray's panel shown on its own (the off-screen platform has no tray) and the tray's label:
// each row present only with its data, the reading taken afresh when the panel opens, and the
// ways back into the main window.

#include "UiTest.h"
#include "base/Dates.h"
#include "ui/Appearance.h"
#include "ui/shell/RootView.h"
#include "ui/tray/MenuBarPanel.h"
#include "ui/tray/TrayPresence.h"
#include "ui/widgets/UsageRing.h"

#include <QApplication>
#include <QLabel>
#include <QPushButton>
#include <QSystemTrayIcon>
#include <QTest>

namespace dorvik {
namespace {

using namespace std::chrono_literals;

constexpr int64_t GB = 1'000'000'000;

class MenuBarPanelTest : public test::UiTest {
protected:
    std::unique_ptr<AppState> makeVolumeState() {
        AppStateOptions options;
        options.accessProbe = [] { return true; };
        options.quickCleanPacing = {10ms, 10ms};
        options.background.tickInterval = 1h;
        options.background.readVolume = [this] {
            ++reads;
            return volume;
        };
        options.background.notify = [](std::string_view, std::string_view) {};
        auto state = std::make_unique<AppState>(options);
        test::settle();
        return state;
    }

    std::optional<VolumeInfo> volume;
    int reads = 0;
    int windowOpenings = 0;
};

TEST_F(MenuBarPanelTest, WithoutAReadingThePanelStartsAtQuickClean) {
    auto state = makeVolumeState();
    MenuBarPanel panel(*state, [] {});
    panel.show();
    EXPECT_FALSE(panel.volumeRow()->isVisibleTo(&panel));
    EXPECT_FALSE(panel.forecastRow()->isVisibleTo(&panel));
    EXPECT_FALSE(panel.autoCleanRow()->isVisibleTo(&panel));
    EXPECT_FALSE(panel.removedAppButton()->isVisibleTo(&panel));
    EXPECT_TRUE(panel.quickCleanButton()->isVisibleTo(&panel));
    EXPECT_EQ(panel.quickCleanButton()->text(), QStringLiteral("Quick Clean"));
    EXPECT_EQ(panel.width(), menuBarPanelWidth);
}

TEST_F(MenuBarPanelTest, TheRingAndTheFiguresOfTheDiskAreReadAfreshOnOpening) {
    volume = VolumeInfo{"Data", 500 * GB, 120'500'000'000, 122'500'000'000};
    auto state = makeVolumeState();
    MenuBarPanel panel(*state, [] {});
    volume->available = 100 * GB; // changed since the last reading
    volume->availableForImportantUsage = 100 * GB;
    const int before = reads;
    panel.show();
    test::settle();
    EXPECT_EQ(reads, before + 1);
    EXPECT_TRUE(panel.volumeRow()->isVisibleTo(&panel));
    EXPECT_EQ(panel.volumeName()->text(), QStringLiteral("Data"));
    EXPECT_EQ(panel.freeLine()->text(), QStringLiteral("100 GB free of 500 GB"));
    EXPECT_FALSE(panel.purgeableLine()->isVisibleTo(&panel));
    EXPECT_DOUBLE_EQ(panel.ring()->share(), 0.8);
    EXPECT_EQ(panel.ring()->centreText(), QStringLiteral("80%"));
    EXPECT_EQ(panel.ring()->width(), menuBarRingDiameter);

    panel.hide();
    volume->availableForImportantUsage = 102 * GB; // 2 GB the system could free on demand
    panel.show();
    test::settle();
    EXPECT_TRUE(panel.purgeableLine()->isVisibleTo(&panel));
    EXPECT_EQ(panel.purgeableLine()->text(), QStringLiteral("2 GB purgeable"));
}

TEST_F(MenuBarPanelTest, TheForecastRowLeadsToTrends) {
    volume = VolumeInfo{"Data", 500 * GB, 100 * GB, 100 * GB};
    auto state = makeVolumeState();
    const double now = Dates::now();
    // Five days of samples, growing by 2 GB a day.
    for (int day = 5; day >= 0; --day) {
        const VolumeInfo then{"Data", 500 * GB, 100 * GB + day * 2 * GB, 0};
        state->trends().recordSample(then, now - day * Dates::secondsPerDay - 60);
    }
    MenuBarPanel panel(*state, [this] { ++windowOpenings; });
    panel.show();
    test::settle();
    ASSERT_TRUE(panel.forecastRow()->isVisibleTo(&panel));
    EXPECT_FALSE(panel.forecastTitle()->text().isEmpty());
    EXPECT_FALSE(panel.forecastDetail()->text().isEmpty());
    QTest::mouseClick(panel.openTrendsButton(), Qt::LeftButton);
    EXPECT_EQ(state->section(), AppSection::trends);
    EXPECT_EQ(windowOpenings, 1);

    // Without a reading of the disk there is no forecast either.
    volume.reset();
    state->background().refreshVolume();
    EXPECT_FALSE(panel.forecastRow()->isVisibleTo(&panel));
}

TEST_F(MenuBarPanelTest, TheLastAutoCleanAndARemovedAppHaveRowsOfTheirOwn) {
    volume = VolumeInfo{"Data", 500 * GB, 100 * GB, 100 * GB};
    auto state = makeVolumeState();
    MenuBarPanel panel(*state, [this] { ++windowOpenings; });
    panel.show();
    EXPECT_FALSE(panel.autoCleanRow()->isVisibleTo(&panel));
    state->settings().setLastAutoClean(
        Dates::toReferenceDate(Dates::now() - 2 * Dates::secondsPerDay - 60));
    state->settings().setLastAutoCleanBytes(1'200'000'000);
    state->background().setCleanSchedule(CleanSchedule::weekly); // the background tells
    EXPECT_TRUE(panel.autoCleanRow()->isVisibleTo(&panel));
    EXPECT_EQ(panel.autoCleanLine()->text(), QStringLiteral("Auto-clean 2 days ago · 1.2 GB"));

    panel.showRemovedApp(QStringLiteral("Sketch"), 1'500'000'000);
    EXPECT_EQ(panel.removedAppButton()->text(), QStringLiteral("Sketch left 1.5 GB behind"));
    EXPECT_TRUE(panel.removedAppButton()->isVisibleTo(&panel));
    QTest::mouseClick(panel.removedAppButton(), Qt::LeftButton);
    EXPECT_EQ(windowOpenings, 1);
    panel.hideRemovedApp();
    EXPECT_FALSE(panel.removedAppButton()->isVisibleTo(&panel));
}

TEST_F(MenuBarPanelTest, QuickCleanReopensTheClosedWindowOnItsPageWithTheScanRunning) {
    auto state = makeVolumeState();
    AppearanceController appearance{QPalette()};
    RootView window(*state, appearance);
    window.show();
    state->setSection(AppSection::history);
    window.close();
    ASSERT_FALSE(window.isVisible());
    MenuBarPanel panel(*state, [&window] { window.show(); });
    panel.setWindowFlags(Qt::Popup);
    panel.show();
    QTest::mouseClick(panel.quickCleanButton(), Qt::LeftButton);
    EXPECT_TRUE(window.isVisible());
    EXPECT_FALSE(panel.isVisible());
    EXPECT_EQ(state->section(), AppSection::smartClean);
    EXPECT_EQ(state->quickClean().phase(), SmartPhase::scanning);
    ASSERT_TRUE(
        test::waitUntil([&] { return state->quickClean().phase() != SmartPhase::scanning; }));
}

TEST_F(MenuBarPanelTest, OpenDorvikOpensTheWindow) {
    auto state = makeVolumeState();
    MenuBarPanel panel(*state, [this] { ++windowOpenings; });
    panel.show();
    QTest::mouseClick(panel.openDorvikButton(), Qt::LeftButton);
    EXPECT_EQ(windowOpenings, 1);
    EXPECT_EQ(panel.quitButton()->text(), QStringLiteral("Quit"));
}

TEST(TrayLabel, TheFreeSpaceBesideTheDriveOrTheWarning) {
    struct Row {
        std::optional<VolumeInfo> volume;
        int lowSpaceGB;
        std::string_view symbol;
        QString text;
    };
    const Row rows[] = {
        {std::nullopt, 10, "internaldrive", {}},
        {VolumeInfo{"D", 500 * GB, 120'500'000'000, 0}, 10, "internaldrive", "120.5 GB free"},
        {VolumeInfo{"D", 500 * GB, 9'900'000'000, 0}, 10, "exclamationmark.triangle.fill",
         "9.9 GB free"},
        {VolumeInfo{"D", 500 * GB, 9'900'000'000, 0}, 0, "internaldrive", "9.9 GB free"},
        {VolumeInfo{"D", 500 * GB, -4096, 0}, 10, "exclamationmark.triangle.fill", "Zero KB free"},
    };
    for (const Row& row : rows) {
        const TrayLabel label = trayLabel(row.volume, row.lowSpaceGB);
        EXPECT_EQ(label.symbol, row.symbol) << row.text.toStdString();
        EXPECT_EQ(label.text, row.text);
    }
}

TEST_F(MenuBarPanelTest, WithoutATrayThereIsNoIconAndClosingTheWindowQuits) {
    ASSERT_FALSE(QSystemTrayIcon::isSystemTrayAvailable()) << "the off-screen platform has none";
    auto state = makeVolumeState();
    TrayPresence tray(*state, [] {});
    EXPECT_FALSE(tray.isShown());
    EXPECT_TRUE(QApplication::quitOnLastWindowClosed());
    state->background().setMenuBar(false);
    EXPECT_FALSE(tray.isShown());
}

} // namespace
} // namespace dorvik
