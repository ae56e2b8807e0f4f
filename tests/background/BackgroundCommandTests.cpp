// dorvik-cli background --tick end to end: the settings and files of the test run, a home of the
// test's own, and the notifications over a private session bus.

#include "background/PrivateSessionBus.h"
#include "base/Dates.h"
#include "cli/CliRun.h"
#include "state/Settings.h"
#include "support/EventLoop.h"
#include "support/TestHome.h"

#include <QSettings>
#include <gtest/gtest.h>

namespace dorvik {
namespace {

using namespace std::chrono_literals;

class BackgroundCommandTest : public testing::Test, protected test::TestHome {
protected:
    void SetUp() override { store().clear(); }

    static QSettings& store() {
        static QSettings settings(settingsOrganisation, settingsApplication);
        return settings;
    }
    static void setStored(const char* key, const QVariant& value) {
        store().setValue(key, value);
        store().sync();
    }
    static QVariant stored(const char* key) {
        store().sync();
        return store().value(key);
    }

    test::CliRun tick(const std::string& environment = "") {
        return test::cli("background --tick </dev/null", true,
                         "HOME=" + test::shellQuoted(home) +
                             " XDG_DATA_HOME=" + test::shellQuoted(dataHome) + " " + environment);
    }

    std::string cache = home + "/Library/Caches/cache-of-an-app";
};

TEST_F(BackgroundCommandTest, ATickSaysEachStepAndRemembersWhatItDid) {
    test::writeFile(cache + "/blob", 200'000);
    test::writeFile(home + "/.Trash/kept.txt", 10'000);
    // Any disk is low against a threshold of a petabyte.
    setStored(SettingKeys::lowSpaceGB, 1'000'000);
    setStored(SettingKeys::cleanSchedule, QStringLiteral("daily"));

    const test::CliRun first = tick();
    ASSERT_EQ(first.status, 0) << first.out;
    EXPECT_NE(first.out.find("Free space: "), std::string::npos) << first.out;
    EXPECT_NE(first.out.find("Space sample: recorded\n"), std::string::npos) << first.out;
    EXPECT_NE(first.out.find("Low-space warning: given, below 1000000 GB\n"), std::string::npos)
        << first.out;
    EXPECT_NE(first.out.find("Scheduled clean: freed "), std::string::npos) << first.out;
    EXPECT_NE(first.out.find("(1 item)\n"), std::string::npos) << first.out;
    EXPECT_FALSE(test::entryExists(cache));
    EXPECT_TRUE(test::entryExists(home + "/.Trash/kept.txt"));
    EXPECT_TRUE(stored(SettingKeys::lowSpaceNotified).toBool());
    const double lastRun = Dates::fromReferenceDate(stored(SettingKeys::lastAutoClean).toDouble());
    EXPECT_NEAR(lastRun, Dates::now(), 60);
    EXPECT_GT(stored(SettingKeys::lastAutoCleanBytes).toLongLong(), 0);
    EXPECT_NE(test::readText(dataHome + "/Dorvik/history.json").find("cache-of-an-app"),
              std::string::npos);

    const test::CliRun second = tick();
    ASSERT_EQ(second.status, 0) << second.out;
    EXPECT_NE(second.out.find("Space sample: not needed, the last is less than an hour old\n"),
              std::string::npos)
        << second.out;
    EXPECT_NE(second.out.find("Low-space warning: already given, below 1000000 GB\n"),
              std::string::npos)
        << second.out;
    EXPECT_NE(second.out.find("Scheduled clean: Every day, next after "), std::string::npos)
        << second.out;

    setStored(SettingKeys::lowSpaceGB, 0);
    setStored(SettingKeys::cleanSchedule, QStringLiteral("off"));
    const test::CliRun third = tick();
    EXPECT_NE(third.out.find("Low-space warning: off\n"), std::string::npos) << third.out;
    EXPECT_NE(third.out.find("Scheduled clean: off\n"), std::string::npos) << third.out;
    EXPECT_TRUE(stored(SettingKeys::lowSpaceNotified).toBool()); // off leaves the flag alone
}

TEST_F(BackgroundCommandTest, TheWarningReachesTheSessionsNotificationService) {
    test::PrivateSessionBus bus;
    if (!bus.started()) {
        GTEST_SKIP() << "dbus-daemon could not start";
    }
    test::NotificationRecorder& recorder = bus.serveNotifications();
    setStored(SettingKeys::lowSpaceGB, 1'000'000);
    const test::CliRun run =
        tick("DBUS_SESSION_BUS_ADDRESS=" + test::shellQuoted(bus.address().toStdString()));
    ASSERT_EQ(run.status, 0) << run.out;
    ASSERT_TRUE(test::waitUntil([&] { return !recorder.posted.empty(); }, 5s));
    EXPECT_EQ(recorder.posted[0].title, QStringLiteral("Your computer is running out of space"));
    EXPECT_TRUE(recorder.posted[0].body.startsWith(QStringLiteral("Only "))) << run.out;
}

TEST_F(BackgroundCommandTest, WithoutABusTheTickStillRuns) {
    setStored(SettingKeys::lowSpaceGB, 1'000'000);
    const test::CliRun run = tick("DBUS_SESSION_BUS_ADDRESS=unix:path=/nonexistent/bus");
    EXPECT_EQ(run.status, 0) << run.out;
    EXPECT_NE(run.out.find("Low-space warning: given"), std::string::npos) << run.out;
    EXPECT_EQ(test::cli("background", true).status, 2);
    EXPECT_EQ(test::cli("background --tock", true).status, 2);
}

} // namespace
} // namespace dorvik
