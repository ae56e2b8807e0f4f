// The background services under a real event loop with a shortened tick: the volume comes
// through the services' seam, the clock too where a test needs exact seconds, and notifications
// go over a private session bus to a recording service (straight to a list when no bus can
// start). The scheduled clean runs the real finder and the real removal engine in a home of the
// test's own.

#include "background/BackgroundServices.h"
#include "background/BackgroundTexts.h"
#include "background/DesktopNotifications.h"
#include "background/PrivateSessionBus.h"
#include "base/Dates.h"
#include "base/PathNames.h"
#include "base/Wording.h"
#include "state/AppState.h"
#include "state/Settings.h"
#include "support/EventLoop.h"
#include "support/TestHome.h"

#include <QSettings>
#include <QSignalSpy>
#include <gtest/gtest.h>

#include <algorithm>
#include <iostream>
#include <memory>

namespace dorvik {
namespace {

using namespace std::chrono_literals;
using test::settle;
using test::waitUntil;

constexpr int64_t GB = 1'000'000'000;
constexpr double startTime = 1'800'000'000;

class BackgroundTest : public testing::Test, protected test::TestHome {
protected:
    void SetUp() override {
        QSettings(settingsOrganisation, settingsApplication).clear();
        if (bus.started()) {
            recorder = &bus.serveNotifications();
            sender = std::make_unique<QDBusConnection>(bus.connect(QStringLiteral("dorvik")));
        } else {
            std::cerr << "dbus-daemon could not start: notifications are recorded directly\n";
        }
    }
    void TearDown() override {
        settle();
        state.reset();
    }

    void setFree(int64_t free) { volume = VolumeInfo{"Test Disk", 500 * GB, free, free}; }

    // A state whose background reads `volume`, tells the time by `clock` and ticks every 30 ms.
    void makeState() {
        AppStateOptions options;
        options.accessProbe = [] { return true; };
        options.background.tickInterval = 30ms;
        options.background.readVolume = [this] {
            ++reads;
            return volume;
        };
        options.background.now = [this] { return clock; };
        options.background.notify = [this](std::string_view title, std::string_view body) {
            if (sender) {
                DesktopNotifications::post(*sender, title, body);
            } else {
                direct.push_back({QString::fromStdString(Wording::shown(title)),
                                  QString::fromStdString(Wording::shown(body)),
                                  {}});
            }
        };
        state = std::make_unique<AppState>(options);
        settle();
    }

    BackgroundServices& background() { return state->background(); }

    const std::vector<test::PostedNotification>& posted() const {
        return recorder != nullptr ? recorder->posted : direct;
    }

    // Lets `count` more ticks happen.
    void waitTicks(int count) {
        const int target = reads + count;
        ASSERT_TRUE(waitUntil([&] { return reads >= target; }, 5s));
    }

    // Waits for `count` notifications, then a little longer to catch any that should not come.
    void expectPosted(size_t count) {
        waitUntil([&] { return posted().size() >= count; }, 3s);
        waitTicks(3);
        settle();
        EXPECT_EQ(posted().size(), count);
    }

    std::string cacheItem = home + "/Library/Caches/cache-of-an-app";

    test::PrivateSessionBus bus;
    test::NotificationRecorder* recorder = nullptr;
    std::unique_ptr<QDBusConnection> sender;
    std::vector<test::PostedNotification> direct;
    std::optional<VolumeInfo> volume;
    double clock = startTime;
    int reads = 0;
    std::unique_ptr<AppState> state;
};

TEST_F(BackgroundTest, TheLowSpaceWarningComesOnceAFallAndResetsTwoGigabytesAbove) {
    setFree(100 * GB);
    makeState();
    background().setLowSpaceGB(10);
    background().start(*state);

    struct Step {
        int64_t free;
        size_t warnings;
        bool flag;
    };
    const Step steps[] = {
        {9'900'000'000, 1, true},   // below: the first warning
        {9'000'000'000, 1, true},   // still below: no second one
        {11'000'000'000, 1, true},  // above, within the margin: the flag stands
        {9'900'000'000, 1, true},   // so this fall says nothing
        {12'100'000'000, 1, false}, // more than 2 GB above: the flag goes
        {9'900'000'000, 2, true},   // and the next fall warns again
    };
    for (const Step& step : steps) {
        setFree(step.free);
        expectPosted(step.warnings);
        EXPECT_EQ(state->settings().lowSpaceNotified(), step.flag) << step.free;
    }
    EXPECT_EQ(posted().back().title, QStringLiteral("Your computer is running out of space"));
    EXPECT_EQ(posted().back().body,
              QStringLiteral("Only 9.9 GB free. Open Dorvik to see what's taking up space."));
    if (recorder != nullptr) {
        EXPECT_EQ(posted().back().application, QStringLiteral("Dorvik"));
    }
}

TEST_F(BackgroundTest, AThresholdOfZeroWarnsOfNothingWhateverTheFlagSays) {
    setFree(1 * GB);
    makeState();
    background().setLowSpaceGB(0);
    background().start(*state);
    for (const bool flag : {false, true}) {
        state->settings().setLowSpaceNotified(flag);
        expectPosted(0);
        EXPECT_EQ(state->settings().lowSpaceNotified(), flag);
        EXPECT_FALSE(background().isSpaceLow());
    }
    // A volume that cannot be read warns of nothing either.
    volume.reset();
    background().setLowSpaceGB(10);
    expectPosted(0);
}

TEST_F(BackgroundTest, EachTickReadsTheVolumeAndKeepsAnHourlySample) {
    setFree(200 * GB);
    makeState();
    QSignalSpy volumeChanges(&background(), &BackgroundServices::volumeChanged);
    QSignalSpy trendChanges(state.get(), &AppState::trendsChanged);
    background().start(*state);
    waitTicks(3);
    EXPECT_GE(volumeChanges.count(), 3);
    ASSERT_TRUE(background().volume());
    EXPECT_EQ(background().volume()->available, 200 * GB);
    // One sample for the hour, however many ticks.
    ASSERT_EQ(state->trends().samples().size(), 1u);
    EXPECT_EQ(state->trends().samples()[0].used, 300 * GB);
    EXPECT_EQ(state->trends().samples()[0].date, startTime);
    EXPECT_EQ(trendChanges.count(), 1);
    clock += TrendStore::sampleSpacing;
    waitTicks(2);
    EXPECT_EQ(state->trends().samples().size(), 2u);
    EXPECT_EQ(trendChanges.count(), 2);
}

TEST_F(BackgroundTest, TheScanGoingStaleIsAnnouncedOnceEachWay) {
    setFree(200 * GB);
    test::writeFile(home + "/Documents/a.bin", 100000);
    makeState();
    state->startScan(ScanTarget::folder(home));
    ASSERT_TRUE(waitUntil([&] { return !state->isScanning(); }));
    ASSERT_TRUE(state->scan());
    QSignalSpy staleness(state.get(), &AppState::scanStalenessChanged);
    clock = state->scan()->finishedAt + 86'400;
    background().start(*state);
    waitTicks(2);
    EXPECT_EQ(staleness.count(), 0); // a day exactly is not more than a day
    clock += 1;
    waitTicks(2);
    EXPECT_EQ(staleness.count(), 1);
    // A new scan is fresh again.
    state->startScan();
    ASSERT_TRUE(waitUntil([&] { return !state->isScanning(); }));
    clock = state->scan()->finishedAt + 10;
    waitTicks(2);
    EXPECT_EQ(staleness.count(), 2);
}

// The junk of the test's home, by whether the scheduled clean may take it. Each item is a folder
// holding a file, or a file where its name has an extension.
struct HomeJunk {
    std::vector<std::string> cleaned;
    std::vector<std::string> kept;
};

void makeItem(const std::string& path) {
    const bool isFile = pathName(path).find('.') != std::string::npos;
    test::writeFile(isFile ? path : path + "/blob", 300'000);
}

HomeJunk makeJunk(const test::TestHome& where) {
    const std::string& home = where.home;
    HomeJunk junk;
    junk.cleaned = {
        home + "/Library/Caches/cache-of-an-app",
        home + "/Library/Logs/tool.log",
        home + "/Library/Saved Application State/window-state",
    };
    junk.kept = {
        home + "/Library/Caches/CloudKit",            // the system needs it
        home + "/.Trash/old letter.txt",              // never emptied unattended
        where.trashFiles + "/old photo.jpg",          // nor the desktop's Trash
        home + "/.npm/_cacache/index",                // safe, but not Quick Clean's
        home + "/.cache/pip",                         // to review
        home + "/Library/Developer/Xcode/Archives/a", // to review, and to the Trash
        home + "/Downloads/installer.dmg",            // to review, and to the Trash
    };
    for (const auto* list : {&junk.cleaned, &junk.kept}) {
        for (const std::string& path : *list) {
            makeItem(path);
        }
    }
    test::setModificationTime(home + "/Downloads/installer.dmg", 1'600'000'000);
    return junk;
}

TEST_F(BackgroundTest, AFirstScheduleRunsAtTheNextTickAndTakesOnlyWhatMayGoUnattended) {
    setFree(200 * GB);
    const HomeJunk junk = makeJunk(*this);
    makeState();
    background().start(*state);
    waitTicks(3);
    EXPECT_FALSE(background().lastAutoClean()); // off: nothing runs
    for (const std::string& path : junk.cleaned) {
        EXPECT_TRUE(test::entryExists(path)) << path;
    }

    QSignalSpy shownToasts(&state->removal(), &RemovalState::toastChanged);
    background().setCleanSchedule(CleanSchedule::weekly);
    ASSERT_TRUE(waitUntil([&] { return background().lastAutoClean().has_value(); }));
    settle();
    EXPECT_EQ(*background().lastAutoClean(), clock);
    for (const std::string& path : junk.cleaned) {
        EXPECT_FALSE(test::entryExists(path)) << path;
    }
    for (const std::string& path : junk.kept) {
        EXPECT_TRUE(test::entryExists(path)) << path;
    }
    // Into the history for good, nothing on the screen.
    std::vector<std::string> recorded;
    for (const HistoryEntry& entry : state->removal().history().entries()) {
        EXPECT_FALSE(entry.trashPath) << entry.originalPath;
        recorded.push_back(entry.originalPath);
    }
    std::ranges::sort(recorded);
    std::vector<std::string> expected = junk.cleaned;
    std::ranges::sort(expected);
    EXPECT_EQ(recorded, expected);
    EXPECT_GT(background().lastAutoCleanBytes(), 900'000);
    EXPECT_EQ(shownToasts.count(), 0);
    EXPECT_FALSE(state->removal().toast());
    // Under a megabyte: no notification.
    expectPosted(0);
    // The stored record is what the next process reads.
    SettingsState other;
    EXPECT_EQ(other.lastAutoCleanBytes(), background().lastAutoCleanBytes());
}

TEST_F(BackgroundTest, ADailyScheduleWaitsTheWholeDay) {
    setFree(200 * GB);
    makeState();
    state->settings().setLastAutoClean(Dates::toReferenceDate(clock - 86'399));
    background().setCleanSchedule(CleanSchedule::daily);
    test::writeFile(cacheItem + "/blob", 100'000);
    background().start(*state);
    waitTicks(3);
    settle();
    EXPECT_EQ(*background().lastAutoClean(), clock - 86'399);
    EXPECT_TRUE(test::entryExists(cacheItem));
    clock += 1; // 86,400 seconds since the last run
    ASSERT_TRUE(waitUntil([&] { return *background().lastAutoClean() == clock; }));
    settle();
    EXPECT_FALSE(test::entryExists(cacheItem));
}

TEST_F(BackgroundTest, ACleanOfMoreThanFiftyMegabytesIsAnnounced) {
    setFree(200 * GB);
    test::writeAllocatedFile(cacheItem + "/big", 60'000'000);
    makeState();
    background().setCleanSchedule(CleanSchedule::monthly);
    background().start(*state);
    ASSERT_TRUE(waitUntil([&] { return background().lastAutoClean().has_value(); }));
    expectPosted(1);
    EXPECT_EQ(posted()[0].title, QStringLiteral("Dorvik cleaned 60 MB"));
    EXPECT_EQ(posted()[0].body, QStringLiteral("Caches, logs and other regenerable files. "
                                               "Everything else was left untouched."));
    EXPECT_GT(background().lastAutoCleanBytes(), 60'000'000 - 1);
}

TEST_F(BackgroundTest, RunNowCleansWithTheScheduleOff) {
    setFree(200 * GB);
    test::writeFile(cacheItem + "/blob", 100'000);
    makeState();
    background().start(*state);
    waitTicks(2);
    ASSERT_EQ(background().cleanSchedule(), CleanSchedule::off);
    QSignalSpy cleaning(&background(), &BackgroundServices::cleaningChanged);
    background().cleanNow();
    EXPECT_TRUE(background().isCleaning());
    ASSERT_TRUE(waitUntil([&] { return !background().isCleaning(); }));
    EXPECT_EQ(cleaning.count(), 2);
    EXPECT_FALSE(test::entryExists(cacheItem));
    EXPECT_EQ(background().lastAutoClean(), clock);
    EXPECT_GT(background().lastAutoCleanBytes(), 0);
    // With nothing left to take, a run still counts as a run, of nothing.
    clock += 60;
    background().cleanNow();
    ASSERT_TRUE(waitUntil([&] { return !background().isCleaning(); }));
    EXPECT_EQ(background().lastAutoClean(), clock);
    EXPECT_EQ(background().lastAutoCleanBytes(), 0);
}

TEST_F(BackgroundTest, SwitchesAreStoredUnderTheirOneKey) {
    makeState();
    QSignalSpy changes(&background(), &BackgroundServices::changed);
    background().setMenuBar(false);
    background().setWatchRemovedApps(false);
    background().setCleanSchedule(CleanSchedule::daily);
    background().setLowSpaceGB(20);
    EXPECT_EQ(changes.count(), 4);
    const QSettings stored(settingsOrganisation, settingsApplication);
    EXPECT_EQ(stored.value(SettingKeys::menuBar).toBool(), false);
    EXPECT_EQ(stored.value(SettingKeys::watchRemovedApps).toBool(), false);
    EXPECT_EQ(stored.value(SettingKeys::cleanSchedule).toString(), QStringLiteral("daily"));
    EXPECT_EQ(stored.value(SettingKeys::lowSpaceGB).toInt(), 20);
    // An unknown schedule is off.
    state->settings().setCleanSchedule(QStringLiteral("hourly"));
    EXPECT_EQ(background().cleanSchedule(), CleanSchedule::off);
}

TEST_F(BackgroundTest, WithoutANotificationServiceNothingFails) {
    if (!bus.started()) {
        GTEST_SKIP() << "dbus-daemon could not start";
    }
    QDBusConnection::disconnectFromBus(QStringLiteral("notification-service"));
    QDBusConnection lonely = bus.connect(QStringLiteral("lonely"));
    EXPECT_FALSE(DesktopNotifications::postAndWait(lonely, "title", "body", 2s));
    DesktopNotifications::post(lonely, "title", "body");
    // Nor without a bus at all.
    const QDBusConnection nowhere =
        QDBusConnection::connectToBus(QStringLiteral("unix:path=/nonexistent/bus"), "nowhere");
    EXPECT_FALSE(nowhere.isConnected());
    DesktopNotifications::post(nowhere, "title", "body");
    EXPECT_FALSE(DesktopNotifications::postAndWait(nowhere, "title", "body", 2s));
    QDBusConnection::disconnectFromBus(QStringLiteral("nowhere"));
    settle();
}

} // namespace
} // namespace dorvik
