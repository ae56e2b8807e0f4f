// AppState's removal flows under a real event loop: a plan proposed and executed, the engine on a
// worker, the history, the model, the toast and undo. Each test has its own home and data folder.

#include "base/TextForms.h"
#include "scanning/FileNode.h"
#include "state/AppState.h"
#include "state/Settings.h"
#include "support/EventLoop.h"
#include "support/ScratchMount.h"
#include "support/TempDir.h"
#include "support/TestHome.h"

#include <QSettings>
#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <set>
#include <sys/stat.h>

namespace dorvik {
namespace {

namespace fs = std::filesystem;
using test::settle;
using test::waitUntil;

FileNodePtr findNode(const FileNodePtr& root, const std::string& path) {
    if (root->path() == path) {
        return root;
    }
    for (const FileNodePtr& child : root->children) {
        if (path.starts_with(child->path())) {
            if (auto found = findNode(child, path)) {
                return found;
            }
        }
    }
    return nullptr;
}

class AppStateRemovalTest : public testing::Test, protected test::TestHome {
protected:
    std::unique_ptr<AppState> state;

    void SetUp() override {
        QSettings(settingsOrganisation, settingsApplication).clear();
        test::writeFile(home + "/Downloads/movie.mkv", 2 << 20);
        test::writeFile(home + "/Downloads/album/track.flac", 1 << 20);
        test::writeFile(home + "/Downloads/album/cover.jpg", 600000);
        test::writeFile(home + "/Documents/thesis.tex", 1000);
        AppStateOptions options;
        options.accessProbe = [] { return true; };
        state = std::make_unique<AppState>(options);
        settle();
        state->startScan(ScanTarget::folder(home));
        ASSERT_TRUE(waitUntil([&] { return !state->isScanning(); }));
        settle();
        ASSERT_TRUE(state->scan());
    }
    void TearDown() override {
        settle();
        state.reset();
    }

    int64_t nodeSize(const std::string& path) const {
        const FileNodePtr node = findNode(state->scan()->root, path);
        return node ? node->size : -1;
    }

    PlanItem item(const std::string& relative) const {
        const std::string path = home + "/" + relative;
        return makePlanItem(path, std::max<int64_t>(nodeSize(path), 0), Removal::trash);
    }

    // Runs the plan through execute and waits for its toast.
    void executeAndWait(const DeletionPlan& plan, bool includeReview) {
        int toasts = 0;
        const auto connection =
            QObject::connect(&state->removal(), &RemovalState::toastChanged, [&] { ++toasts; });
        state->removal().execute(plan, includeReview);
        EXPECT_FALSE(state->removal().plan());
        ASSERT_TRUE(waitUntil([&] { return toasts > 0; }));
        QObject::disconnect(connection);
    }
};

TEST_F(AppStateRemovalTest, AConfirmedPlanGoesThroughTheEngineIntoHistoryModelAndToast) {
    int plans = 0;
    int histories = 0;
    int failureChanges = 0;
    QObject::connect(&state->removal(), &RemovalState::planChanged, [&] { ++plans; });
    QObject::connect(&state->removal(), &RemovalState::historyChanged, [&] { ++histories; });
    QObject::connect(&state->removal(), &RemovalState::failuresChanged, [&] { ++failureChanges; });
    std::vector<std::set<std::string>> announced;
    QObject::connect(&state->removal(), &RemovalState::removed,
                     [&](const std::set<std::string>& paths) { announced.push_back(paths); });

    state->removal().propose({}, "Delete Items");
    EXPECT_FALSE(state->removal().plan());
    EXPECT_EQ(plans, 0);

    const int64_t movieSize = nodeSize(home + "/Downloads/movie.mkv");
    const int64_t albumSize = nodeSize(home + "/Downloads/album");
    const int64_t rootBefore = state->scan()->root->size;
    const auto kindTotalsBefore = state->scan()->kindTotals;
    const auto kindCountsBefore = state->scan()->kindCounts;
    const int revisionBefore = state->revision();
    state->removal().propose({item("Downloads/album/track.flac"), item("Downloads/movie.mkv"),
                              item("Downloads/album"), item("Documents"),
                              item("Downloads/vanished.zip"), item("Documents/thesis.tex")},
                             "Delete Items");
    ASSERT_TRUE(state->removal().plan());
    EXPECT_EQ(plans, 1);
    std::vector<std::string> planned;
    for (const PlanItem& planItem : state->removal().plan()->items) {
        planned.push_back(planItem.path);
    }
    // The track and the thesis lie in other items of the plan.
    EXPECT_EQ(planned,
              (std::vector<std::string>{home + "/Downloads/movie.mkv", home + "/Downloads/album",
                                        home + "/Documents", home + "/Downloads/vanished.zip"}));

    executeAndWait(*state->removal().plan(), false);
    EXPECT_EQ(plans, 2);
    settle();
    EXPECT_FALSE(test::entryExists(home + "/Downloads/movie.mkv"));
    EXPECT_FALSE(test::entryExists(home + "/Downloads/album"));
    EXPECT_TRUE(test::entryExists(home + "/Documents/thesis.tex"));

    ASSERT_EQ(state->removal().history().entries().size(), 2u);
    EXPECT_EQ(state->removal().history().entries()[0].originalPath, home + "/Downloads/movie.mkv");
    EXPECT_EQ(histories, 1);
    EXPECT_EQ(announced, (std::vector<std::set<std::string>>{
                             {home + "/Downloads/album", home + "/Downloads/movie.mkv"}}));
    EXPECT_EQ(state->scan()->root->size, rootBefore - movieSize - albumSize);
    EXPECT_GT(state->revision(), revisionBefore);
    // The movie and the album's two large files leave their kinds.
    EXPECT_EQ(state->scan()->kindCounts.at(FileKind::video),
              kindCountsBefore.at(FileKind::video) - 1);
    EXPECT_EQ(state->scan()->kindCounts.at(FileKind::audio),
              kindCountsBefore.at(FileKind::audio) - 1);

    ASSERT_TRUE(state->removal().toast());
    EXPECT_EQ(state->removal().toast()->message,
              TextForms::size(movieSize + albumSize) + " moved to the Trash");
    // The protected folder never reached the engine; the vanished file did, and failed.
    EXPECT_EQ(state->removal().toast()->detail,
              "1 item(s) couldn't be deleted. Details in History.");
    EXPECT_EQ(state->removal().toast()->undoable.size(), 2u);
    ASSERT_EQ(state->removal().failures().size(), 1u);
    EXPECT_EQ(failureChanges, 1);
    EXPECT_EQ(state->removal().failures()[0].path, home + "/Downloads/vanished.zip");
    EXPECT_EQ(state->removal().failures()[0].reason, "No longer exists.");

    state->removal().undo(state->removal().toast()->undoable);
    EXPECT_EQ(state->removal().toast()->message, "2 item(s) restored");
    EXPECT_EQ(state->removal().toast()->detail, "Scan again to see updated sizes.");
    EXPECT_TRUE(state->removal().toast()->undoable.empty());
    EXPECT_TRUE(test::entryExists(home + "/Downloads/movie.mkv"));
    EXPECT_TRUE(test::entryExists(home + "/Downloads/album/cover.jpg"));
    EXPECT_TRUE(state->removal().history().entries()[0].restored);
    EXPECT_EQ(histories, 2);
    // The nodes are back in the tree, with the kinds' totals the file pages show.
    EXPECT_EQ(state->scan()->root->size, rootBefore);
    EXPECT_EQ(nodeSize(home + "/Downloads/movie.mkv"), movieSize);
    EXPECT_FALSE(findNode(state->scan()->root, home + "/Downloads/album")->deleted);
    EXPECT_EQ(state->scan()->kindTotals, kindTotalsBefore);
    EXPECT_EQ(state->scan()->kindCounts, kindCountsBefore);

    state->removal().clearHistory();
    EXPECT_TRUE(state->removal().history().entries().empty());
    EXPECT_TRUE(DeletionHistory(DeletionHistory::defaultPath()).entries().empty());
}

TEST_F(AppStateRemovalTest, AnUndoneItemTheScanNeverHadIsNamedInTheToast) {
    // Made after the scan: no node stands for it.
    test::writeFile(home + "/Downloads/later.mkv", 1 << 20);
    state->removal().propose({makePlanItem(home + "/Downloads/later.mkv", 1 << 20, Removal::trash),
                              item("Downloads/movie.mkv")},
                             "Delete Items");
    executeAndWait(*state->removal().plan(), false);
    const int64_t rootAfterRemoval = state->scan()->root->size;
    state->removal().undo(state->removal().toast()->undoable);
    EXPECT_EQ(state->removal().toast()->message, "2 item(s) restored");
    EXPECT_EQ(state->removal().toast()->detail,
              "1 restored item(s) were not in this scan. Scan again to list them.");
    EXPECT_EQ(state->scan()->root->size,
              rootAfterRemoval + nodeSize(home + "/Downloads/movie.mkv"));
}

TEST_F(AppStateRemovalTest, ThePermanentSettingOverridesTheTrash) {
    state->settings().setPermanentDelete(true);
    state->removal().propose({item("Downloads/movie.mkv"), item("Downloads/album")},
                             "Delete Items");
    executeAndWait(*state->removal().plan(), false);
    EXPECT_FALSE(test::entryExists(home + "/Downloads/movie.mkv"));
    EXPECT_FALSE(test::entryExists(dataHome + "/Trash/files/movie.mkv"));
    EXPECT_TRUE(state->removal().toast()->undoable.empty());
    EXPECT_TRUE(state->removal().toast()->message.ends_with(" freed"))
        << state->removal().toast()->message;
    EXPECT_FALSE(state->removal().toast()->detail);
    for (const HistoryEntry& entry : state->removal().history().entries()) {
        EXPECT_EQ(historyMethod(entry), "Deleted");
    }
    EXPECT_TRUE(state->removal().failures().empty());
}

TEST_F(AppStateRemovalTest, ReviewItemsGoOnlyWhenAccepted) {
    state->removal().propose({item("Documents/thesis.tex"), item("Downloads/movie.mkv")},
                             "Delete Items");
    const DeletionPlan plan = *state->removal().plan();
    EXPECT_EQ(plan.items[0].verdict.risk, Risk::review);
    executeAndWait(plan, false);
    EXPECT_TRUE(test::entryExists(home + "/Documents/thesis.tex"));
    EXPECT_FALSE(test::entryExists(home + "/Downloads/movie.mkv"));

    executeAndWait(plan, true);
    EXPECT_FALSE(test::entryExists(home + "/Documents/thesis.tex"));
    // The movie went in the first run, so the second says so.
    EXPECT_EQ(state->removal().failures().size(), 1u);
    EXPECT_EQ(state->removal().failures()[0].reason, "No longer exists.");
}

TEST_F(AppStateRemovalTest, AQuietRunLeavesToastAndFailuresAlone) {
    state->removal().showToast(undoToast(5));
    const std::string toastID = state->removal().toast()->id;
    std::optional<DeletionReport> report;
    state->removal().performDeletion(
        {makeDeletionRequest(home + "/Downloads/movie.mkv", 7, Removal::permanent),
         makeDeletionRequest(home + "/Documents", 1, Removal::permanent)},
        true, [&](const DeletionReport& done) { report = done; });
    ASSERT_TRUE(waitUntil([&] { return report.has_value(); }));
    EXPECT_EQ(report->freed, 7);
    EXPECT_EQ(report->skippedProtected.size(), 1u);
    EXPECT_EQ(state->removal().toast()->id, toastID);
    EXPECT_TRUE(test::entryExists(home + "/Documents/thesis.tex"));
    EXPECT_TRUE(state->removal().failures().empty());
    EXPECT_EQ(state->removal().history().entries().size(), 1u); // quiet runs are logged too
    EXPECT_TRUE(findNode(state->scan()->root, home + "/Downloads/movie.mkv")->deleted);
}

TEST_F(AppStateRemovalTest, AFolderThatCannotGoCompletelyStaysInTheModel) {
    const std::string album = home + "/Downloads/album";
    std::unique_ptr<test::ScratchMount> mount;
    if (test::ignoresPermissions()) {
        mount = std::make_unique<test::ScratchMount>(album + "/mounted");
        if (!mount->mounted()) {
            GTEST_SKIP() << mount->whyNot();
        }
    } else {
        test::makeFolder(album + "/locked");
        test::writeFile(album + "/locked/keep.txt", 10);
        chmod((album + "/locked").c_str(), 0555);
    }
    const int64_t before = nodeSize(album);
    state->removal().propose({item("Downloads/album")}, "Delete Items");
    state->settings().setPermanentDelete(true);
    executeAndWait(*state->removal().plan(), false);
    // The rest of the album went: not "nothing".
    EXPECT_EQ(state->removal().toast()->message, "1 item(s) only partly deleted");
    ASSERT_EQ(state->removal().failures().size(), 1u);
    EXPECT_EQ(state->removal().failures()[0].path, album);
    EXPECT_FALSE(findNode(state->scan()->root, album)->deleted);
    EXPECT_EQ(nodeSize(album), before);
    EXPECT_TRUE(state->removal().history().entries().empty());
}

TEST_F(AppStateRemovalTest, AnOldToastsTimerLeavesANewerToastAlone) {
    int changes = 0;
    QObject::connect(&state->removal(), &RemovalState::toastChanged, [&] { ++changes; });
    state->removal().showToast(undoToast(1));
    const std::string first = state->removal().toast()->id;
    state->removal().showToast(undoToast(2));
    const std::string second = state->removal().toast()->id;
    state->removal().dismissToast(first);
    ASSERT_TRUE(state->removal().toast());
    EXPECT_EQ(state->removal().toast()->id, second);
    state->removal().dismissToast(second);
    EXPECT_FALSE(state->removal().toast());
    state->removal().dismissToast(second);
    EXPECT_EQ(changes, 3);
    state->removal().showToast(undoToast(3));
    state->removal().closeToast();
    EXPECT_FALSE(state->removal().toast());
    EXPECT_EQ(toastDuration, std::chrono::seconds(8));
}

TEST_F(AppStateRemovalTest, CancellingAPlanRemovesNothing) {
    state->removal().propose({item("Downloads/movie.mkv")}, "Delete Items");
    ASSERT_TRUE(state->removal().plan());
    state->removal().cancelPlan();
    EXPECT_FALSE(state->removal().plan());
    settle();
    EXPECT_TRUE(test::entryExists(home + "/Downloads/movie.mkv"));
    EXPECT_TRUE(state->removal().history().entries().empty());
}

} // namespace
} // namespace dorvik
