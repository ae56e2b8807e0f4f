// The watcher under a real event loop, on real folders watched with inotify, with a quiet period
// shortened to a fraction of a second.

#include "background/RemovedAppWatcher.h"
#include "support/Bundles.h"
#include "support/Environment.h"
#include "support/EventLoop.h"
#include "support/TempDir.h"
#include "support/TestHome.h"

#include <QCoreApplication>
#include <gtest/gtest.h>

#include <filesystem>

namespace dorvik {
namespace {

constexpr std::chrono::milliseconds quietPeriod{300};

// Lets the event loop run for a while, so that folder events reach the watcher.
void runEventsFor(std::chrono::milliseconds duration) {
    const auto until = std::chrono::steady_clock::now() + duration;
    test::waitUntil([&] { return std::chrono::steady_clock::now() >= until; }, duration * 2);
}

// The sum of the lengths of the files at or under a path: allocated sizes come in whole blocks,
// so a byte-exact limit can only be tried on lengths.
int64_t lengthOf(const std::string& path) {
    namespace fs = std::filesystem;
    if (!fs::is_directory(path)) {
        return static_cast<int64_t>(fs::file_size(path));
    }
    int64_t total = 0;
    for (const auto& entry : fs::recursive_directory_iterator(path)) {
        if (entry.is_regular_file()) {
            total += static_cast<int64_t>(entry.file_size());
        }
    }
    return total;
}

class RemovedAppWatcherTest : public ::testing::Test {
protected:
    test::TestHome home;
    test::TempDir system;
    test::ScopedEnvironment root{"DORVIK_SYSTEM_ROOT", system.path()};
    std::string applications = system.path() + "/Applications";
    std::string homeApplications = home.home + "/Applications";
    std::vector<RemovedApp> reports;
    int checks = 0;

    void SetUp() override {
        test::makeFolder(applications + "/Utilities");
        test::makeFolder(homeApplications);
    }
    void TearDown() override { test::settle(); }

    // A bundle in `folder` and `dataBytes` of data in the Library under its identifier.
    std::string makeApp(const std::string& folder, const std::string& name,
                        const std::string& identifier, int64_t dataBytes = 6'000'000) {
        const std::string bundle = folder + "/" + name + ".app";
        test::writeInfoPlist(bundle, {{"CFBundleIdentifier", identifier}});
        if (dataBytes > 0) {
            test::writeFile(home.home + "/Library/Caches/" + identifier + "/data", dataBytes);
        }
        return bundle;
    }

    std::unique_ptr<RemovedAppWatcher> startWatcher(RemovedAppWatcherOptions options = {}) {
        options.quietPeriod = quietPeriod;
        auto watcher = std::make_unique<RemovedAppWatcher>(std::move(options));
        QObject::connect(watcher.get(), &RemovedAppWatcher::checked, [this] { ++checks; });
        watcher->start([this](const RemovedApp& removed) { reports.push_back(removed); });
        test::settle(); // the first snapshot is in
        return watcher;
    }

    // Waits for the check after a change, and for the quiet period again to see no other.
    void waitForOneCheck() {
        ASSERT_TRUE(test::waitUntil([this] { return checks > 0; }));
        runEventsFor(quietPeriod * 2);
        test::settle();
        EXPECT_EQ(checks, 1);
    }

    std::vector<std::string> reportedNames() const {
        std::vector<std::string> names;
        for (const RemovedApp& removed : reports) {
            names.push_back(removed.name);
        }
        return names;
    }
};

TEST_F(RemovedAppWatcherTest, WatchesTheRootsThatExist) {
    std::filesystem::remove(homeApplications);
    auto watcher = startWatcher();
    EXPECT_EQ(watcher->watchedFolders(), 2u);
    EXPECT_TRUE(watcher->isRunning());
    watcher->stop();
    EXPECT_FALSE(watcher->isRunning());
}

TEST_F(RemovedAppWatcherTest, MovingBetweenTheRootsIsNoRemoval) {
    const std::string bundle = makeApp(applications, "Writer", "com.example.writer");
    auto watcher = startWatcher();
    std::filesystem::rename(bundle, homeApplications + "/Writer.app");
    waitForOneCheck();
    EXPECT_TRUE(reports.empty());
}

TEST_F(RemovedAppWatcherTest, AnUpdateInPlaceIsNoRemoval) {
    const std::string bundle = makeApp(applications, "Writer", "com.example.writer");
    auto watcher = startWatcher();
    // The way an updater does it: the new bundle made aside, the old one deleted, the new one
    // moved in.
    const std::string fresh = home.dir / "Writer.app";
    test::writeInfoPlist(fresh, {{"CFBundleIdentifier", "com.example.writer"},
                                 {"CFBundleShortVersionString", "2.0"}});
    std::filesystem::remove_all(bundle);
    std::filesystem::rename(fresh, bundle);
    waitForOneCheck();
    EXPECT_TRUE(reports.empty());
}

TEST_F(RemovedAppWatcherTest, AppleAppsAndThisProgramAreNeverReported) {
    const std::string safari = makeApp(applications, "Safari", "com.apple.Safari");
    const std::string dorvik = makeApp(homeApplications, "Dorvik", "app.dorvik.mac");
    const std::string writer = makeApp(applications + "/Utilities", "Writer", "com.example.writer");
    auto watcher = startWatcher();
    for (const std::string& bundle : {safari, dorvik, writer}) {
        std::filesystem::remove_all(bundle);
    }
    waitForOneCheck();
    ASSERT_EQ(reportedNames(), std::vector<std::string>{"Writer"});
    EXPECT_EQ(reports[0].bundleID, "com.example.writer");
    ASSERT_EQ(reports[0].items.size(), 1u);
    EXPECT_EQ(reports[0].items[0].path, home.home + "/Library/Caches/com.example.writer");
    EXPECT_GE(reports[0].items[0].size, 6'000'000);
}

TEST_F(RemovedAppWatcherTest, TwoRemovalsInTheQuietPeriodGiveTwoReportsFromOneCheck) {
    const std::string beta = makeApp(applications, "Beta", "com.example.beta");
    const std::string alpha = makeApp(applications, "Alpha", "com.example.alpha");
    auto watcher = startWatcher();
    std::filesystem::remove_all(beta);
    runEventsFor(quietPeriod / 2);
    EXPECT_TRUE(watcher->isCheckPending());
    std::filesystem::remove_all(alpha);
    waitForOneCheck();
    // In the order of the paths they had, not of their going.
    EXPECT_EQ(reportedNames(), (std::vector<std::string>{"Alpha", "Beta"}));
}

TEST_F(RemovedAppWatcherTest, StoppingInTheQuietPeriodCancelsTheCheck) {
    const std::string writer = makeApp(applications, "Writer", "com.example.writer");
    auto watcher = startWatcher();
    std::filesystem::remove_all(writer);
    ASSERT_TRUE(test::waitUntil([&] { return watcher->isCheckPending(); }));
    watcher->stop();
    runEventsFor(quietPeriod * 3);
    test::settle();
    EXPECT_EQ(checks, 0);
    EXPECT_TRUE(reports.empty());
}

TEST_F(RemovedAppWatcherTest, ReportsFromFiveMillionBytesLeft) {
    const std::string under = makeApp(applications, "Under", "com.example.under", 0);
    test::writeText(home.home + "/Library/Caches/com.example.under/data",
                    std::string(4'999'999, 'x'));
    const std::string exact = makeApp(applications, "Exact", "com.example.exact", 0);
    test::writeText(home.home + "/Library/Caches/com.example.exact/data",
                    std::string(4'000'000, 'x'));
    test::writeText(home.home + "/Library/Preferences/com.example.exact.plist",
                    std::string(1'000'000, 'x'));
    auto watcher = startWatcher({.measure = lengthOf});
    std::filesystem::remove_all(under);
    std::filesystem::remove_all(exact);
    waitForOneCheck();
    ASSERT_EQ(reportedNames(), std::vector<std::string>{"Exact"});
    EXPECT_EQ(reports[0].itemsSize(), 5'000'000);
    EXPECT_EQ(reports[0].items[0].label, "Caches");
}

// After a check the new snapshot stands: the same removal is not reported twice.
TEST_F(RemovedAppWatcherTest, AReportedAppIsReportedOnce) {
    const std::string writer = makeApp(applications, "Writer", "com.example.writer");
    auto watcher = startWatcher();
    std::filesystem::remove_all(writer);
    ASSERT_TRUE(test::waitUntil([this] { return checks == 1; }));
    test::writeFile(applications + "/unrelated.txt", 10);
    ASSERT_TRUE(test::waitUntil([this] { return checks == 2; }));
    test::settle();
    EXPECT_EQ(reportedNames(), std::vector<std::string>{"Writer"});
}

} // namespace
} // namespace dorvik
