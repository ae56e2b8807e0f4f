#include "TreeGenerator.h"
#include "scanning/ScanArchive.h"
#include "scanning/Scanner.h"
#include "state/AppState.h"
#include "state/ScanStaleness.h"
#include "state/Settings.h"
#include "support/Environment.h"
#include "support/EventLoop.h"
#include "support/TempDir.h"

#include <QCoreApplication>
#include <QSettings>
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <functional>
#include <sys/inotify.h>
#include <unistd.h>

namespace dorvik {
namespace {

using namespace std::chrono_literals;

using test::settle;
using test::waitUntil;

class AppStateTest : public testing::Test {
protected:
    void SetUp() override {
        QSettings(settingsOrganisation, settingsApplication).clear();
        std::filesystem::remove(ScanArchive::defaultPath());
    }
    void TearDown() override { settle(); }

    static void setSetting(const char* key, const QString& value) {
        QSettings(settingsOrganisation, settingsApplication).setValue(QLatin1String(key), value);
    }

    static AppStateOptions options(bool access = true) {
        AppStateOptions result;
        result.accessProbe = [access] { return access; };
        result.archiveDelay = 100ms;
        return result;
    }

    test::TempDir dir;
};

TEST_F(AppStateTest, ASecondStartCancelsTheFirstAndOnlyTheSecondLands) {
    test::makeFolder(dir / "big");
    bench::generateTree(dir / "big", 20000, 3);
    test::writeFile(dir / "small/a.txt", 10);
    AppState state(options());
    settle();
    int landed = 0;
    QObject::connect(&state, &AppState::scanChanged, [&] { ++landed; });

    state.startScan(ScanTarget::folder(dir / "big"));
    state.startScan(ScanTarget::folder(dir / "small"));
    ASSERT_TRUE(waitUntil([&] { return !state.isScanning(); }));
    settle();
    ASSERT_TRUE(state.scan());
    EXPECT_EQ(state.scan()->rootPath, dir / "small");
    EXPECT_EQ(landed, 1);
    EXPECT_EQ(state.revision(), 1);
    EXPECT_EQ(state.explorerStack(), std::vector<FileNodePtr>{state.scan()->root});
    // Only the scan that counted left an archive.
    const auto archived = ScanArchive::read(ScanArchive::defaultPath());
    ASSERT_TRUE(archived);
    EXPECT_EQ(archived->scan.rootPath, dir / "small");
    // And a snapshot for the trends.
    EXPECT_EQ(state.trends().history(dir / "small").size(), 1u);
    EXPECT_TRUE(state.trends().history(dir / "big").empty());
}

TEST_F(AppStateTest, CancelThenStart) {
    test::writeFile(dir / "one/a.txt", 10);
    test::writeFile(dir / "two/b.txt", 10);
    AppState state(options());
    settle();
    state.startScan(ScanTarget::folder(dir / "one"));
    state.cancelScan();
    EXPECT_FALSE(state.isScanning());
    state.startScan(ScanTarget::folder(dir / "two"));
    EXPECT_TRUE(state.isScanning());
    ASSERT_TRUE(waitUntil([&] { return !state.isScanning(); }));
    settle();
    EXPECT_EQ(state.scan()->rootPath, dir / "two");
    EXPECT_EQ(state.revision(), 1);

    state.startScan(ScanTarget::folder(dir / "one"));
    state.cancelScan();
    settle();
    EXPECT_EQ(state.scan()->rootPath, dir / "two"); // the scan in force stays
    EXPECT_FALSE(state.isScanning());
}

TEST_F(AppStateTest, ARestoreThatEndsAfterAStartIsDropped) {
    test::writeFile(dir / "old/a.txt", 10);
    test::writeFile(dir / "new/b.txt", 10);
    const auto old = Scanner().scan(dir / "old", {}, nullptr);
    ASSERT_TRUE(
        ScanArchive::write(*old, ScanTarget::folder(dir / "old"), ScanArchive::defaultPath()));

    AppState state(options());
    EXPECT_TRUE(state.isRestoringScan());
    state.startScan(ScanTarget::folder(dir / "new"));
    ASSERT_TRUE(waitUntil([&] { return !state.isScanning() && !state.isRestoringScan(); }));
    settle();
    EXPECT_EQ(state.scan()->rootPath, dir / "new");
    EXPECT_EQ(state.scanTarget(), ScanTarget::folder(dir / "new"));
    EXPECT_EQ(state.revision(), 1);
}

TEST_F(AppStateTest, AFolderTargetComesBackFromTheArchiveWithItsScan) {
    test::writeFile(dir / "kept/sub/big.bin", 1 << 20);
    {
        AppState first(options());
        settle();
        first.startScan(ScanTarget::folder(dir / "kept"));
        ASSERT_TRUE(waitUntil([&] { return !first.isScanning(); }));
        settle();
    }
    AppState second(options());
    EXPECT_TRUE(second.isRestoringScan());
    ASSERT_TRUE(waitUntil([&] { return !second.isRestoringScan(); }));
    EXPECT_EQ(second.scanTarget(), ScanTarget::folder(dir / "kept"));
    ASSERT_TRUE(second.scan());
    EXPECT_EQ(second.scan()->rootPath, dir / "kept");
    EXPECT_EQ(second.scan()->files.size(), 1u);
    EXPECT_EQ(second.revision(), 1);
    EXPECT_EQ(second.explorerStack().size(), 1u);
}

TEST_F(AppStateTest, LaunchSettings) {
    test::writeFile(dir / "auto/a.txt", 10);
    test::writeFile(dir / "archived/b.txt", 10);
    const auto old = Scanner().scan(dir / "archived", {}, nullptr);
    ASSERT_TRUE(
        ScanArchive::write(*old, ScanTarget::folder(dir / "archived"), ScanArchive::defaultPath()));
    const struct {
        QString autoScan;
        QString initialSection;
        bool scans;
        std::string landed; // the root of the scan in force at the end
        AppSection section;
    } cases[] = {
        {QString::fromStdString(dir / "auto"), "history", true, dir / "auto", AppSection::history},
        {"", "nonsense", false, dir / "archived", AppSection::smartClean},
        {"elsewhere", "junk", false, dir / "archived", AppSection::junk},
        {"home", "", true, dir.path(), AppSection::smartClean},
    };
    for (const auto& c : cases) {
        SetUp();
        ASSERT_TRUE(ScanArchive::write(*old, ScanTarget::folder(dir / "archived"),
                                       ScanArchive::defaultPath()));
        setSetting(SettingKeys::autoScan, c.autoScan);
        setSetting(SettingKeys::initialSection, c.initialSection);
        const std::string savedHome = std::getenv("HOME");
        setenv("HOME", dir.path().c_str(), 1);
        AppState state(options());
        setenv("HOME", savedHome.c_str(), 1);
        EXPECT_EQ(state.isScanning(), c.scans) << c.autoScan.toStdString();
        EXPECT_EQ(state.isRestoringScan(), !c.scans) << c.autoScan.toStdString();
        EXPECT_EQ(state.section(), c.section);
        ASSERT_TRUE(waitUntil([&] { return !state.isScanning() && !state.isRestoringScan(); }));
        settle();
        ASSERT_TRUE(state.scan()) << c.autoScan.toStdString();
        EXPECT_EQ(state.scan()->rootPath, c.landed) << c.autoScan.toStdString();
    }
}

TEST_F(AppStateTest, AccessOnboardingStopsAWholeScanUntilSkipped) {
    test::writeFile(dir / "f/a.txt", 10);
    AppState state(options(false));
    settle();
    EXPECT_FALSE(state.hasFullDiskAccess());
    state.startScan(ScanTarget::home());
    EXPECT_TRUE(state.showAccessOnboarding());
    EXPECT_FALSE(state.isScanning());
    EXPECT_EQ(state.scanTarget(), ScanTarget::home());

    state.setShowAccessOnboarding(false);
    state.startScan(ScanTarget::folder(dir / "f")); // a folder never asks
    EXPECT_TRUE(state.isScanning());
    EXPECT_FALSE(state.showAccessOnboarding());
    ASSERT_TRUE(waitUntil([&] { return !state.isScanning(); }));

    state.settings().setAccessOnboardingSkipped(true);
    state.startScan(ScanTarget::home());
    EXPECT_TRUE(state.isScanning());
    EXPECT_FALSE(state.showAccessOnboarding());
    state.cancelScan();
}

TEST_F(AppStateTest, AccessGivenWhileAwayClosesTheSheetAndStartsTheScan) {
    test::writeFile(dir / "home/a.txt", 10);
    test::ScopedEnvironment home("HOME", dir / "home");
    auto access = std::make_shared<bool>(false);
    AppStateOptions withProbe = options();
    withProbe.accessProbe = [access] { return *access; };
    AppState state(withProbe);
    settle();

    state.applicationBecameActive(); // nothing held back: nothing starts
    EXPECT_FALSE(state.isScanning());
    state.startScan(ScanTarget::home());
    ASSERT_TRUE(state.showAccessOnboarding());
    state.applicationBecameActive(); // still no access: the sheet stays
    EXPECT_TRUE(state.showAccessOnboarding());
    EXPECT_FALSE(state.isScanning());

    *access = true;
    state.applicationBecameActive();
    EXPECT_TRUE(state.hasFullDiskAccess());
    EXPECT_FALSE(state.showAccessOnboarding());
    EXPECT_TRUE(state.isScanning());
    ASSERT_TRUE(waitUntil([&] { return !state.isScanning(); }));
    settle();
    ASSERT_TRUE(state.scan());
    EXPECT_EQ(state.scan()->rootPath, dir / "home");

    *access = false;
    state.refreshFullDiskAccess();
    EXPECT_FALSE(state.hasFullDiskAccess());
}

TEST(ScanStaleness, ADayAfterTheScanEnded) {
    ScanResult scan;
    scan.finishedAt = 1'000'000;
    struct Case {
        bool hasScan;
        bool isScanning;
        double age;
        bool stale;
    };
    const Case cases[] = {
        {true, false, 86399, false}, {true, false, 86400, false},  {true, false, 86401, true},
        {true, true, 90000, false},  {false, false, 90000, false},
    };
    for (const Case& c : cases) {
        const std::optional<ScanResult> held = c.hasScan ? std::optional(scan) : std::nullopt;
        EXPECT_EQ(isScanStale(held, c.isScanning, scan.finishedAt + c.age), c.stale)
            << c.hasScan << c.isScanning << " " << c.age;
    }
}

// Counts the archive files renamed into place while the event loop runs for `period`.
int archiveWritesDuring(std::chrono::milliseconds period, const std::function<void()>& act) {
    const std::string folder = std::filesystem::path(ScanArchive::defaultPath()).parent_path();
    const int fd = inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    inotify_add_watch(fd, folder.c_str(), IN_MOVED_TO);
    act();
    waitUntil([] { return false; }, period);
    settle();
    int writes = 0;
    alignas(inotify_event) char buffer[4096];
    ssize_t got = 0;
    while ((got = read(fd, buffer, sizeof buffer)) > 0) {
        for (ssize_t offset = 0; offset < got;) {
            const auto* event = reinterpret_cast<const inotify_event*>(buffer + offset);
            if (event->len > 0 && std::string(event->name) == "last-scan.dvscan") {
                ++writes;
            }
            offset += static_cast<ssize_t>(sizeof(inotify_event) + event->len);
        }
    }
    close(fd);
    return writes;
}

TEST_F(AppStateTest, ABurstOfRemovalsWritesTheArchiveOnceAfterTheQuietTime) {
    for (int i = 0; i < 5; ++i) {
        test::writeFile(dir / ("t/f" + std::to_string(i) + ".bin"), 1 << 20);
    }
    AppState state(options());
    settle();
    state.startScan(ScanTarget::folder(dir / "t"));
    ASSERT_TRUE(waitUntil([&] { return !state.isScanning(); }));
    settle();
    const int64_t before = state.scan()->root->size;

    const int writes = archiveWritesDuring(600ms, [&] {
        for (int i = 0; i < 5; ++i) {
            state.markRemoved({dir / ("t/f" + std::to_string(i) + ".bin")});
            QCoreApplication::processEvents();
        }
    });
    EXPECT_EQ(writes, 1);
    EXPECT_EQ(state.revision(), 6);
    EXPECT_EQ(state.scan()->root->size, before - 5 * (1 << 20));
    const auto archived = ScanArchive::read(ScanArchive::defaultPath());
    ASSERT_TRUE(archived);
    EXPECT_TRUE(archived->scan.files.empty());
}

TEST_F(AppStateTest, RevealNodeOpensTheExplorerAtItsFolder) {
    test::writeFile(dir / "r/a/b/big.bin", 1 << 20);
    AppState state(options());
    settle();
    state.startScan(ScanTarget::folder(dir / "r"));
    ASSERT_TRUE(waitUntil([&] { return !state.isScanning(); }));
    const FileNodePtr file = state.scan()->files.at(0);
    state.revealNode(file);
    EXPECT_EQ(state.section(), AppSection::explorer);
    std::vector<std::string> names;
    for (const auto& node : state.explorerStack()) {
        names.push_back(node->name);
    }
    EXPECT_EQ(names, (std::vector<std::string>{dir / "r", "a", "b"}));
    state.revealNode(state.explorerStack()[1]);
    EXPECT_EQ(state.explorerStack().size(), 2u);
}

TEST_F(AppStateTest, ExcludedPathsAreLinesOfTheSetting) {
    test::writeFile(dir / "x/keep/a.txt", 10);
    test::writeFile(dir / "x/skip/b.txt", 10);
    AppState state(options());
    settle();
    state.settings().setExcludedRaw(
        QString::fromStdString("\n" + (dir / "x/skip") + "\n\n/nowhere\n"));
    EXPECT_EQ(state.settings().excludedPaths(),
              (std::vector<std::string>{dir / "x/skip", "/nowhere"}));
    state.startScan(ScanTarget::folder(dir / "x"));
    ASSERT_TRUE(waitUntil([&] { return !state.isScanning(); }));
    EXPECT_EQ(state.scan()->totalFiles, 1);

    // What a list's menu appends lands as a canonical line of its own, even after a last line
    // without its line feed; a twin changes nothing for the scan.
    state.settings().setExcludedRaw(QString::fromStdString(dir / "x/skip"));
    state.settings().appendExcludedPath("/System/Volumes/Data" + (dir / "x/keep"));
    state.settings().appendExcludedPath(dir / "x/keep");
    EXPECT_EQ(state.settings().excludedPaths(),
              (std::vector<std::string>{dir / "x/skip", dir / "x/keep", dir / "x/keep"}));
    state.startScan(ScanTarget::folder(dir / "x"));
    ASSERT_TRUE(waitUntil([&] { return !state.isScanning(); }));
    EXPECT_EQ(state.scan()->totalFiles, 0);

    EXPECT_FALSE(state.settings().permanentDelete());
    state.settings().setPermanentDelete(true);
    EXPECT_TRUE(AppState(options()).settings().permanentDelete());
}

} // namespace
} // namespace dorvik
