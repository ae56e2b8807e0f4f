// The removal engine on real files, in a home and data folder of the test's own: the last-moment
// refusal, the two ways of going, and every failure in words.

#include "base/Dates.h"
#include "base/PathNames.h"
#include "removal/DeletionEngine.h"
#include "removal/DeletionPlan.h"
#include "support/Bundles.h"
#include "support/ChildProcess.h"
#include "support/ScratchMount.h"
#include "support/TestHome.h"
#include "support/Unprivileged.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cmath>
#include <cstring>
#include <filesystem>
#include <iostream>
#include <set>
#include <sys/stat.h>
#include <thread>

namespace dorvik {
namespace {

namespace fs = std::filesystem;

const std::string noLongerExists = "No longer exists.";
const std::string mountedHere = "Another disk or folder is mounted here. It was left alone.";
const std::string noPermission =
    "No permission. It may need Full Disk Access, or it belongs to another user.";

class DeletionEngineTest : public testing::Test, protected test::TestHome {
protected:
    static DeletionRequest request(const std::string& path, int64_t size, Removal removal) {
        return makeDeletionRequest(path, size, removal);
    }
};

TEST_F(DeletionEngineTest, AnEmptyListGivesAnEmptyReport) {
    const DeletionOutcome outcome = DeletionEngine::run({});
    EXPECT_EQ(outcome.report, DeletionReport{});
    EXPECT_TRUE(outcome.entries.empty());
}

TEST_F(DeletionEngineTest, TrashAndPermanentMixAndEachSumsItsOwn) {
    test::writeFile(home + "/Downloads/movie.mkv", 20000);
    test::writeFile(home + "/Library/Caches/com.example/blob", 30000);
    test::writeFile(home + "/Downloads/empty.txt", 0);
    test::writeFile(home + "/Downloads/album/track.flac", 40000);
    // The sizes are the scan's: the engine adds them up and measures nothing.
    const std::vector<DeletionRequest> requests = {
        request(home + "/Downloads/movie.mkv", 2'000'000'000, Removal::trash),
        request(home + "/Library/Caches/com.example", 1'000'000, Removal::permanent),
        request(home + "/Downloads/empty.txt", 0, Removal::permanent),
        request(home + "/Downloads/album", 3000, Removal::trash),
    };
    const double before = Dates::now();
    const DeletionOutcome outcome = DeletionEngine::run(requests);
    const DeletionReport& report = outcome.report;
    EXPECT_EQ(report.freed, 1'000'000);
    EXPECT_EQ(report.movedToTrash, 2'000'003'000);
    EXPECT_EQ(report.deletedPaths, (std::vector<std::string>{requests[0].path, requests[1].path,
                                                             requests[2].path, requests[3].path}));
    EXPECT_TRUE(report.failures.empty());
    EXPECT_TRUE(report.skippedProtected.empty());

    ASSERT_EQ(outcome.entries.size(), 4u);
    const std::optional<std::string> trashPaths[] = {trashFiles + "/movie.mkv", std::nullopt,
                                                     std::nullopt, trashFiles + "/album"};
    std::set<std::string> ids;
    for (size_t i = 0; i < requests.size(); ++i) {
        const HistoryEntry& entry = outcome.entries[i];
        EXPECT_EQ(entry.originalPath, requests[i].path);
        EXPECT_EQ(entry.size, requests[i].size);
        EXPECT_EQ(entry.trashPath, trashPaths[i]);
        EXPECT_FALSE(entry.restored);
        EXPECT_GE(entry.date, before);
        EXPECT_LE(entry.date, Dates::now());
        ids.insert(entry.id);
        EXPECT_FALSE(test::entryExists(requests[i].path));
    }
    EXPECT_EQ(ids.size(), 4u);
    EXPECT_EQ(fs::file_size(trashFiles + "/album/track.flac"), 40000u);
    EXPECT_TRUE(test::entryExists(home + "/Library/Caches")); // the rule's folder stays
}

// A file manager lists the Trash from its Trash information: an item that leaves the Trash takes
// its ".trashinfo" along, and a folder that only looks like a trash keeps everything else.
TEST_F(DeletionEngineTest, AnItemLeavingTheTrashTakesItsTrashInfoWithIt) {
    test::writeFile(home + "/Downloads/a.txt", 1000);
    test::writeFile(home + "/Downloads/b.txt", 1000);
    const DeletionOutcome trashed = DeletionEngine::run({
        request(home + "/Downloads/a.txt", 1000, Removal::trash),
        request(home + "/Downloads/b.txt", 1000, Removal::trash),
    });
    ASSERT_EQ(trashed.entries.size(), 2u);
    const std::string info = dataHome + "/Trash/info";
    ASSERT_TRUE(test::entryExists(info + "/a.txt.trashinfo"));
    ASSERT_TRUE(test::entryExists(info + "/b.txt.trashinfo"));
    test::writeFile(home + "/work/files/c.txt", 1000);
    test::writeText(home + "/work/info/c.txt.trashinfo", "[Trash Info]\nPath=/x/c.txt\n");

    const DeletionOutcome outcome = DeletionEngine::run({
        request(trashFiles + "/a.txt", 1000, Removal::permanent),
        request(trashFiles + "/b.txt", 1000, Removal::trash),
        request(home + "/work/files/c.txt", 1000, Removal::permanent),
    });
    EXPECT_EQ(outcome.report.deletedPaths.size(), 3u);
    EXPECT_FALSE(test::entryExists(trashFiles + "/a.txt"));
    EXPECT_FALSE(test::entryExists(info + "/a.txt.trashinfo"));
    // Trashed again, the item lies under a new name with Trash information of its own.
    ASSERT_EQ(outcome.entries.size(), 3u);
    ASSERT_TRUE(outcome.entries[1].trashPath.has_value());
    const std::string again = pathName(*outcome.entries[1].trashPath);
    EXPECT_NE(again, "b.txt");
    EXPECT_FALSE(test::entryExists(info + "/b.txt.trashinfo"));
    EXPECT_TRUE(test::entryExists(info + "/" + again + ".trashinfo"));
    EXPECT_TRUE(test::entryExists(home + "/work/info/c.txt.trashinfo"));
}

TEST_F(DeletionEngineTest, ProtectedPathsAreRefusedWhateverTheCallerBuilt) {
    test::writeFile(home + "/Library/Caches/com.example/blob", 1000);
    test::writeFile(home + "/Documents/thesis.tex", 1000);
    test::writeFile(home + "/Library/Keychains/login.keychain-db", 1000);
    const std::string caches = "Folder used by macOS. Dorvik empties its contents but keeps the "
                               "folder.";
    const struct {
        std::string path;
        std::string reason;
    } cases[] = {
        {home + "/Library/Caches", caches},
        {home + "/Documents",
         "Standard folder in your user account. You can delete its contents, but not the "
         "folder."},
        {home + "/Library/Keychains/login.keychain-db",
         "Your keychains: passwords, keys and certificates."},
        {home, "Root folder of the system or your user account."},
        {"/System/Library/Kernels",
         "Part of macOS, protected by System Integrity Protection (SIP)."},
    };
    std::vector<DeletionRequest> requests;
    for (const auto& c : cases) {
        requests.push_back(request(c.path, 1000, Removal::permanent));
        requests.push_back(request(c.path, 1000, Removal::trash));
    }
    const DeletionOutcome outcome = DeletionEngine::run(requests);
    EXPECT_TRUE(outcome.entries.empty());
    EXPECT_EQ(outcome.report.freed + outcome.report.movedToTrash, 0);
    EXPECT_TRUE(outcome.report.deletedPaths.empty());
    EXPECT_TRUE(outcome.report.failures.empty());
    ASSERT_EQ(outcome.report.skippedProtected.size(), requests.size());
    for (size_t i = 0; i < requests.size(); ++i) {
        const DeletionFailure& skipped = outcome.report.skippedProtected[i];
        EXPECT_EQ(skipped.path, cases[i / 2].path);
        EXPECT_EQ(skipped.reason, cases[i / 2].reason);
    }
    EXPECT_TRUE(test::entryExists(home + "/Library/Caches/com.example/blob"));
    EXPECT_TRUE(test::entryExists(home + "/Documents/thesis.tex"));
    EXPECT_TRUE(test::entryExists(home + "/Library/Keychains/login.keychain-db"));
    EXPECT_FALSE(test::entryExists(dataHome + "/Trash/files/Caches"));
}

TEST_F(DeletionEngineTest, AnAppStartedAfterThePlanIsRefusedAtTheLastMoment) {
    const std::string bundle = home + "/Applications/Sleeper.app";
    test::writeInfoPlist(bundle, {{"CFBundleIdentifier", "com.example.engine-sleeper"}});
    const std::string executable = test::installExecutable(bundle, "/bin/sleep", "Sleeper");
    const PlanItem seen = makePlanItem(bundle, 5000, Removal::trash);
    ASSERT_EQ(seen.verdict.risk, Risk::review);
    {
        test::ChildProcess running(executable, {"60"});
        const DeletionOutcome outcome =
            DeletionEngine::run(planRequests(*makePlan({seen}, "Uninstall"), true, false));
        ASSERT_EQ(outcome.report.skippedProtected.size(), 1u);
        EXPECT_EQ(outcome.report.skippedProtected[0].reason,
                  "The app is open. Quit it before removing it.");
        EXPECT_TRUE(test::entryExists(executable));
    }
    const DeletionOutcome afterQuit = DeletionEngine::run({request(bundle, 5000, Removal::trash)});
    EXPECT_EQ(afterQuit.report.deletedPaths, std::vector<std::string>{bundle});
}

TEST_F(DeletionEngineTest, TheSamePathTwiceAndAVanishedPathFail) {
    test::writeFile(home + "/Downloads/a.zip", 100);
    test::writeFile(home + "/Downloads/b.zip", 100);
    const std::vector<DeletionRequest> requests = {
        request(home + "/Downloads/a.zip", 10, Removal::trash),
        request(home + "/Downloads/a.zip", 10, Removal::trash),
        request(home + "/Downloads/b.zip", 20, Removal::permanent),
        request(home + "/Downloads/b.zip", 20, Removal::permanent),
        request(home + "/Downloads/never-was.zip", 30, Removal::trash),
        request(home + "/Downloads/never-was.zip", 30, Removal::permanent),
    };
    const DeletionOutcome outcome = DeletionEngine::run(requests);
    EXPECT_EQ(outcome.report.deletedPaths,
              (std::vector<std::string>{requests[0].path, requests[2].path}));
    EXPECT_EQ(outcome.report.movedToTrash, 10);
    EXPECT_EQ(outcome.report.freed, 20);
    EXPECT_EQ(outcome.entries.size(), 2u);
    ASSERT_EQ(outcome.report.failures.size(), 4u);
    const size_t failedRequests[] = {1, 3, 4, 5};
    for (size_t i = 0; i < 4; ++i) {
        EXPECT_EQ(outcome.report.failures[i].path, requests[failedRequests[i]].path);
        EXPECT_EQ(outcome.report.failures[i].reason, noLongerExists);
    }
    EXPECT_NE(outcome.report.failures[0].id, outcome.report.failures[1].id);
}

TEST_F(DeletionEngineTest, AFolderSwappedForALinkAfterThePlanLosesOnlyTheLink) {
    for (const Removal removal : {Removal::permanent, Removal::trash}) {
        const std::string folder = home + "/Downloads/folder-" + std::string(caseName(removal));
        test::writeFile(folder + "/junk.bin", 4096);
        test::writeFile(home + "/Pictures/wedding/photo.jpg", 4096);
        test::writeFile(home + "/Pictures/portrait.jpg", 4096);
        const auto plan = makePlan({makePlanItem(folder, 8192, removal)}, "Delete Items");
        fs::rename(folder, folder + "-moved");
        test::makeSymlink(home + "/Pictures/wedding", folder);
        test::makeSymlink(home + "/Pictures/portrait.jpg", folder + "-moved/to-file");

        const DeletionOutcome outcome = DeletionEngine::run(planRequests(*plan, false, false));
        EXPECT_EQ(outcome.report.deletedPaths, std::vector<std::string>{folder});
        EXPECT_FALSE(test::entryExists(folder));
        EXPECT_EQ(fs::file_size(home + "/Pictures/wedding/photo.jpg"), 4096u);
        EXPECT_TRUE(test::entryExists(folder + "-moved/junk.bin"));
        // And a link inside a folder that goes for good takes nothing with it.
        const DeletionOutcome inner =
            DeletionEngine::run({request(folder + "-moved", 1, Removal::permanent)});
        EXPECT_EQ(inner.report.deletedPaths.size(), 1u);
        EXPECT_EQ(fs::file_size(home + "/Pictures/portrait.jpg"), 4096u);
    }
}

// The folder above the item is swapped for a link to other data, over and over, while the engine
// runs. Whatever the timing, the engine acts on the folder it judged or on nothing.
TEST_F(DeletionEngineTest, AFolderAboveSwappedDuringTheRunNeverLeadsElsewhere) {
    const std::string box = dir / "box";
    const std::string precious = dir / "precious";
    constexpr int runs = 500;
    int removed = 0;
    int refused = 0;
    int losses = 0;
    for (int run = 0; run < runs; ++run) {
        fs::remove_all(box);
        for (int file = 0; file < 8; ++file) {
            test::writeFile(box + "/par/cache/f" + std::to_string(file), 100);
        }
        if (!test::entryExists(precious + "/cache/keep.txt")) {
            test::writeText(precious + "/cache/keep.txt", "precious");
        }
        const DeletionRequest request = makeDeletionRequest(
            box + "/par/cache", 1, run % 2 == 0 ? Removal::permanent : Removal::trash);
        std::atomic<bool> stop = false;
        std::thread swapper([&] {
            std::error_code ignored;
            while (!stop) {
                fs::rename(box + "/par", box + "/par.real", ignored);
                fs::create_directory_symlink(precious, box + "/par", ignored);
                fs::remove(box + "/par", ignored);
                fs::rename(box + "/par.real", box + "/par", ignored);
            }
        });
        const DeletionOutcome outcome = DeletionEngine::run({request});
        stop = true;
        swapper.join();
        if (test::readText(precious + "/cache/keep.txt") != "precious") {
            ++losses;
        }
        removed += static_cast<int>(outcome.report.deletedPaths.size());
        refused += static_cast<int>(outcome.report.failures.size());
    }
    RecordProperty("runs", runs);
    RecordProperty("removed", removed);
    RecordProperty("refused", refused);
    RecordProperty("losses", losses);
    std::cout << runs << " runs: " << removed << " removed, " << refused << " refused, " << losses
              << " lost\n";
    EXPECT_EQ(losses, 0);
    EXPECT_EQ(removed + refused, runs);
    EXPECT_GT(removed, 0);
}

TEST_F(DeletionEngineTest, AMountPointIsRefusedAndOneInsideIsLeftAlone) {
    const std::string source = home + "/Downloads/source";
    test::writeFile(source + "/keep.txt", 100);
    test::writeFile(home + "/Downloads/folder/own.txt", 100);
    test::ScratchMount inside(home + "/Downloads/folder/bound", test::ScratchMount::BindOf{source});
    if (!inside.mounted()) {
        GTEST_SKIP() << inside.whyNot();
    }
    test::ScratchMount item(home + "/Downloads/bound", test::ScratchMount::BindOf{source});
    ASSERT_TRUE(item.mounted()) << item.whyNot();
    const DeletionOutcome outcome = DeletionEngine::run({
        request(home + "/Downloads/folder", 10, Removal::permanent),
        request(home + "/Downloads/bound", 10, Removal::permanent),
        request(home + "/Downloads/bound", 10, Removal::trash),
    });
    EXPECT_TRUE(outcome.report.deletedPaths.empty());
    ASSERT_EQ(outcome.report.failures.size(), 3u);
    for (const DeletionFailure& failure : outcome.report.failures) {
        EXPECT_EQ(failure.reason, mountedHere) << failure.path;
    }
    EXPECT_EQ(outcome.report.partlyDeletedPaths,
              std::vector<std::string>{home + "/Downloads/folder"});
    EXPECT_TRUE(test::entryExists(source + "/keep.txt"));
    EXPECT_FALSE(test::entryExists(home + "/Downloads/folder/own.txt"));
}

// What the unprivileged run reported, in plain data.
struct LockedRun {
    int64_t freed;
    size_t deleted;
    size_t failures;
    char reason[160];
    bool folderStays;
    size_t partly;
};

TEST_F(DeletionEngineTest, AFolderThatCannotBeRemovedCompletelyIsAFailure) {
    const std::string folder = home + "/Downloads/shared";
    test::writeFile(folder + "/mine.txt", 100);
    test::writeFile(folder + "/locked/theirs.txt", 100);
    test::writeFile(home + "/Downloads/free.txt", 100);
    test::handToUnprivileged(dir.path());
    chmod((folder + "/locked").c_str(), 0555);

    const auto seen = test::runUnprivileged<LockedRun>([&] {
        const DeletionOutcome outcome = DeletionEngine::run({
            request(folder, 700, Removal::permanent),
            request(home + "/Downloads/free.txt", 5, Removal::permanent),
        });
        LockedRun run{outcome.report.freed,           outcome.report.deletedPaths.size(),
                      outcome.report.failures.size(), {},
                      test::entryExists(folder),      outcome.report.partlyDeletedPaths.size()};
        if (!outcome.report.failures.empty()) {
            std::strncpy(run.reason, outcome.report.failures[0].reason.c_str(),
                         sizeof run.reason - 1);
        }
        return run;
    });
    ASSERT_TRUE(seen);
    EXPECT_EQ(seen->freed, 5); // the folder's size does not count
    EXPECT_EQ(seen->deleted, 1u);
    EXPECT_EQ(seen->failures, 1u);
    EXPECT_EQ(std::string(seen->reason), noPermission);
    EXPECT_TRUE(seen->folderStays);
    EXPECT_EQ(seen->partly, 1u); // mine.txt went
}

TEST(DeletionEngine, FailuresInWords) {
    using platform::FileErrorKind;
    const struct {
        platform::FileError error;
        std::string reason;
    } cases[] = {
        {{FileErrorKind::noSuchFile, "No such file or directory"}, noLongerExists},
        {{FileErrorKind::noPermission, "Permission denied"}, noPermission},
        {{FileErrorKind::inUse, "Device or resource busy"},
         "In use. Quit the app that uses it, then try again."},
        {{FileErrorKind::mountPoint, "Device or resource busy"}, mountedHere},
        {{FileErrorKind::other, "Directory not empty"}, "Directory not empty"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(DeletionEngine::failureReason(c.error), c.reason);
    }
    const struct {
        int number;
        FileErrorKind kind;
    } numbers[] = {
        {ENOENT, FileErrorKind::noSuchFile},  {EACCES, FileErrorKind::noPermission},
        {EPERM, FileErrorKind::noPermission}, {EROFS, FileErrorKind::noPermission},
        {EBUSY, FileErrorKind::inUse},        {ETXTBSY, FileErrorKind::inUse},
        {ENOTEMPTY, FileErrorKind::other},    {EIO, FileErrorKind::other},
    };
    for (const auto& n : numbers) {
        const platform::FileError error = platform::fileErrorFromNumber(n.number);
        EXPECT_EQ(error.kind, n.kind) << n.number;
        EXPECT_EQ(error.description, std::strerror(n.number));
    }
}

} // namespace
} // namespace dorvik

namespace dorvik {
namespace {

// Stands in for Flatpak, which no test runs: records each command line and, when told to, takes
// the app's folder away as Flatpak would.
struct FakeFlatpak {
    std::vector<std::vector<std::string>> calls;
    platform::ToolRun answer{true, 0, "", ""};
    std::string removes; // the folder the uninstall takes away, if any

    platform::ProcessRunner runner() {
        return [this](const std::vector<std::string>& argv) {
            calls.push_back(argv);
            if (!removes.empty()) {
                fs::remove_all(removes);
            }
            return answer;
        };
    }
};

TEST_F(DeletionEngineTest, AFlatpakAppGoesOnlyByUninstallingItWithFlatpak) {
    const std::string apps = dataHome + "/flatpak/app";
    const std::string app = apps + "/org.example.Writer";
    const std::string data = home + "/.var/app/org.example.Writer";
    const std::vector<std::string> command = {
        "/usr/bin/flatpak", "uninstall", "--user", "--noninteractive", "-y", "org.example.Writer"};
    const std::string goByUninstall =
        "A Flatpak app is removed by uninstalling it, which asks Flatpak. It was left alone.";
    struct Case {
        std::string path;
        Removal removal;
        platform::ToolRun answer;
        bool flatpakRemoves;
        std::vector<std::vector<std::string>> calls;
        std::string failure; // empty when it went
    };
    const std::vector<Case> cases = {
        {app, Removal::uninstall, {true, 0, "", ""}, true, {command}, ""},
        {app,
         Removal::uninstall,
         {true, 1, "", "error: org.example.Writer is running\n"},
         false,
         {command},
         "error: org.example.Writer is running"},
        {app,
         Removal::uninstall,
         {false, -1, "", ""},
         false,
         {command},
         "Flatpak is not installed."},
        {app,
         Removal::uninstall,
         {true, 0, "", ""},
         false,
         {command},
         "Flatpak reported no error, yet the app is still there."},
        // Never around Flatpak, whichever way is asked; and nothing else is uninstalled.
        {app, Removal::trash, {true, 0, "", ""}, true, {}, goByUninstall},
        {app, Removal::permanent, {true, 0, "", ""}, true, {}, goByUninstall},
        {data,
         Removal::uninstall,
         {true, 0, "", ""},
         true,
         {},
         "Only a Flatpak app can be uninstalled."},
    };
    for (const Case& c : cases) {
        test::writeFile(app + "/x86_64/stable/abc/files/program", 5000);
        test::writeFile(data + "/config/settings", 100);
        FakeFlatpak flatpak{{}, c.answer, c.flatpakRemoves ? c.path : ""};
        const DeletionOutcome outcome =
            DeletionEngine::run({request(c.path, 7000, c.removal)}, nullptr, flatpak.runner());
        EXPECT_EQ(flatpak.calls, c.calls) << c.path;
        if (c.failure.empty()) {
            EXPECT_EQ(outcome.report.deletedPaths, std::vector<std::string>{c.path});
            EXPECT_EQ(outcome.report.freed, 7000);
            ASSERT_EQ(outcome.entries.size(), 1u);
            EXPECT_FALSE(outcome.entries[0].trashPath.has_value()); // nothing brings it back
        } else {
            ASSERT_EQ(outcome.report.failures.size(), 1u) << c.path;
            EXPECT_EQ(outcome.report.failures[0].reason, c.failure);
            EXPECT_TRUE(outcome.entries.empty());
            EXPECT_EQ(outcome.report.freed, 0);
            EXPECT_TRUE(test::entryExists(data + "/config/settings"));
        }
    }
}

} // namespace
} // namespace dorvik
