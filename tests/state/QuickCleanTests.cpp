// Quick Clean's run under a real event loop, over the real junk finder and the real removal engine,
// in a home of the test's own.

#include "base/PathNames.h"
#include "base/Wording.h"
#include "catalogue/JunkCatalogue.h"
#include "cli/CliRun.h"
#include "state/AppState.h"
#include "state/Settings.h"
#include "support/Environment.h"
#include "support/EventLoop.h"
#include "support/TestHome.h"

#include <QElapsedTimer>
#include <QSettings>
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <sstream>

namespace dorvik {
namespace {

using namespace std::chrono_literals;
using test::settle;
using test::waitUntil;

class QuickCleanTest : public testing::Test, protected test::TestHome {
protected:
    void SetUp() override {
        QSettings(settingsOrganisation, settingsApplication).clear();
        test::writeFile(caches, 300000);
        test::writeFile(logs, 50000);
        test::writeFile(trashed, 40000);
        test::writeFile(archive, 200000);
        test::writeFile(installer, 120000);
        test::setModificationTime(installer, 1'600'000'000);
    }
    void TearDown() override {
        settle();
        state.reset();
    }

    void makeState(QuickCleanPacing pacing) {
        AppStateOptions options;
        options.accessProbe = [] { return true; };
        options.quickCleanPacing = pacing;
        state = std::make_unique<AppState>(options);
        settle();
    }

    QuickCleanState& quick() { return state->quickClean(); }

    // The node of the scan at `path`, which the test knows is there.
    FileNodePtr scannedNode(const std::string& path) const {
        FileNodePtr node = state->scan()->root;
        const std::string relative = path.substr(home.size());
        for (const std::string_view piece : pathPieces(relative)) {
            const auto child = std::ranges::find(node->children, piece, &FileNode::name);
            EXPECT_NE(child, node->children.end()) << path;
            if (child == node->children.end()) {
                return node;
            }
            node = *child;
        }
        return node;
    }

    // Waits for `phase` and says how long it took to come.
    std::chrono::milliseconds waitForPhase(SmartPhase phase) {
        QElapsedTimer clock;
        clock.start();
        EXPECT_TRUE(waitUntil([&] { return quick().phase() == phase; }))
            << "still in phase " << static_cast<int>(quick().phase());
        return std::chrono::milliseconds(clock.elapsed());
    }

    int64_t foundSize(const std::string& ruleID) const {
        for (const JunkFinding& finding : state->junk().findings()) {
            if (finding.rule.id == ruleID) {
                return totalSize(finding);
            }
        }
        return 0;
    }

    const std::string caches = home + "/Library/Caches/com.example.app/blob";
    const std::string logs = home + "/Library/Logs/app.log";
    const std::string trashed = home + "/.Trash/Old Report.pdf";
    const std::string archive = home + "/Library/Developer/Xcode/Archives/App.xcarchive/Info";
    const std::string installer = home + "/Downloads/Setup.dmg";
    std::unique_ptr<AppState> state;
};

TEST_F(QuickCleanTest, AFirstRunTicksTheRulesQuickCleanMayTakeAndListsTheOthersUnticked) {
    makeState({10ms, 10ms});
    // Rules 1, 2, 3, 5 to 10 and 15 of the catalogue, and the desktop's Trash beside the Mac's.
    std::set<std::string> ticked = {"desktop-trash"};
    for (const size_t position : {1, 2, 3, 5, 6, 7, 8, 9, 10, 15}) {
        ticked.insert(JunkCatalogue::rules().at(position - 1).id);
    }
    EXPECT_EQ(quick().selection(), ticked);

    quick().start();
    EXPECT_EQ(quick().phase(), SmartPhase::scanning);
    waitForPhase(SmartPhase::review);
    for (const std::string unticked : {"xcode-archives", "old-installers"}) {
        EXPECT_GT(foundSize(unticked), 0) << unticked << " is listed";
        EXPECT_FALSE(quick().selection().contains(unticked)) << unticked;
    }
    EXPECT_EQ(quick().selectedTotal(),
              foundSize("user-caches") + foundSize("user-logs") + foundSize("trash"));
}

TEST_F(QuickCleanTest, ARunCleansTheTickedRulesThroughTheRemovalRoad) {
    makeState({400ms, 300ms});
    state->startScan(ScanTarget::folder(home));
    ASSERT_TRUE(waitUntil([&] { return !state->isScanning(); }));
    settle();

    quick().start();
    // A finder that is done at once still leaves the scanning stage up for its time.
    EXPECT_GE(waitForPhase(SmartPhase::review), 380ms);

    const int64_t before = quick().selectedTotal();
    quick().setRuleSelected("user-logs", false);
    EXPECT_EQ(quick().selectedTotal(), before - foundSize("user-logs")); // at once, no event loop
    const int64_t expectedFreed = foundSize("user-caches") + foundSize("trash");
    ASSERT_GT(expectedFreed, 0);

    quick().clean();
    EXPECT_EQ(quick().phase(), SmartPhase::cleaning);
    EXPECT_GE(waitForPhase(SmartPhase::done), 280ms);

    ASSERT_TRUE(quick().lastReport());
    EXPECT_EQ(quick().lastReport()->freed, expectedFreed);
    EXPECT_EQ(quick().lastReport()->movedToTrash, 0);
    EXPECT_TRUE(quick().lastReport()->failures.empty());
    EXPECT_FALSE(test::entryExists(home + "/Library/Caches/com.example.app"));
    EXPECT_FALSE(test::entryExists(trashed));
    EXPECT_TRUE(test::entryExists(home + "/.Trash"));
    EXPECT_TRUE(test::entryExists(logs));
    EXPECT_TRUE(test::entryExists(archive));
    // The history, the model and the toast, as after any removal.
    EXPECT_EQ(state->removal().history().entries().size(), 2u);
    ASSERT_TRUE(state->removal().toast());
    EXPECT_TRUE(state->removal().toast()->undoable.empty());
    EXPECT_TRUE(scannedNode(home + "/Library/Caches/com.example.app")->deleted);
    EXPECT_FALSE(scannedNode(home + "/Library/Logs")->deleted);

    // The junk is looked for again; what the user unticked stays unticked for the next run.
    ASSERT_TRUE(waitUntil([&] { return !state->junk().isLoading(); }));
    EXPECT_EQ(foundSize("user-caches"), 0);
    EXPECT_GT(foundSize("user-logs"), 0);
    quick().startOver();
    EXPECT_EQ(quick().phase(), SmartPhase::idle);
    EXPECT_FALSE(quick().selection().contains("user-logs"));
    EXPECT_TRUE(quick().selection().contains("user-caches"));
}

TEST_F(QuickCleanTest, WithNothingTickedNothingIsRemoved) {
    makeState({10ms, 10ms});
    const std::set<std::string> ticked = quick().selection();
    for (const std::string& id : ticked) {
        quick().setRuleSelected(id, false);
    }
    quick().start();
    waitForPhase(SmartPhase::review);
    EXPECT_EQ(quick().selectedTotal(), 0);
    quick().clean();
    waitForPhase(SmartPhase::done);
    ASSERT_TRUE(quick().lastReport());
    EXPECT_TRUE(quick().lastReport()->deletedPaths.empty());
    for (const std::string& path : {caches, logs, trashed, archive, installer}) {
        EXPECT_TRUE(test::entryExists(path)) << path;
    }
}

TEST_F(QuickCleanTest, PermanentDeleteLeavesATrashRuleGoingToTheTrash) {
    makeState({10ms, 10ms});
    state->settings().setPermanentDelete(true);
    quick().setRuleSelected("old-installers", true);
    quick().start();
    waitForPhase(SmartPhase::review);
    const int64_t installerSize = foundSize("old-installers");
    ASSERT_GT(installerSize, 0);
    quick().clean();
    waitForPhase(SmartPhase::done);
    ASSERT_TRUE(quick().lastReport());
    EXPECT_EQ(quick().lastReport()->movedToTrash, installerSize);
    EXPECT_TRUE(test::entryExists(trashFiles + "/Setup.dmg"));
    EXPECT_FALSE(test::entryExists(installer));
}

TEST_F(QuickCleanTest, CancellingTheWaitGoesStraightToTheNextStage) {
    makeState({60s, 60s});
    quick().start();
    ASSERT_TRUE(waitUntil([&] { return !state->junk().findings().empty(); }));
    settle();
    EXPECT_EQ(quick().phase(), SmartPhase::scanning);
    quick().skipWait();
    EXPECT_EQ(quick().phase(), SmartPhase::review);

    quick().clean();
    ASSERT_TRUE(waitUntil([&] { return quick().lastReport().has_value(); }));
    EXPECT_EQ(quick().phase(), SmartPhase::cleaning);
    quick().skipWait();
    EXPECT_EQ(quick().phase(), SmartPhase::done);
}

TEST_F(QuickCleanTest, TheEngineStillRefusesWhatIsProtected) {
    // The data folder inside the caches: the cache item holds the desktop Trash, which the
    // safety rules protect, so the item that holds it is protected too.
    const std::string sharedData = home + "/Library/Caches/share";
    const test::ScopedEnvironment dataVariable("XDG_DATA_HOME", sharedData);
    test::writeFile(sharedData + "/Trash/files/kept.txt", 30000);
    makeState({10ms, 10ms});
    quick().start();
    waitForPhase(SmartPhase::review);
    quick().clean();
    waitForPhase(SmartPhase::done);
    ASSERT_TRUE(quick().lastReport());
    const auto& refused = quick().lastReport()->skippedProtected;
    EXPECT_TRUE(std::ranges::any_of(
        refused, [&](const DeletionFailure& failure) { return failure.path == sharedData; }));
    EXPECT_TRUE(test::entryExists(sharedData + "/Trash"));
    EXPECT_FALSE(test::entryExists(home + "/Library/Caches/com.example.app"));
}

TEST_F(QuickCleanTest, TheJunkFollowsTheLastLoadAndEveryRemoval) {
    test::writeFile(home + "/.cargo/registry/cache/index/serde.crate", 30000);
    makeState({10ms, 10ms});
    JunkState& junk = state->junk();
    int answered = 0;
    int stored = 0;
    QObject::connect(&junk, &JunkState::findingsChanged, [&] { ++stored; });
    junk.load([&] { ++answered; });
    test::writeFile(home + "/Library/Caches/com.example.late", 70000);
    junk.load([&] { ++answered; });
    ASSERT_TRUE(waitUntil([&] { return !junk.isLoading(); }));
    settle();
    // Both callers hear once, from the load that started last, which saw the late cache.
    EXPECT_EQ(answered, 2);
    EXPECT_EQ(stored, 1); // the superseded load's findings were dropped
    ASSERT_GT(foundSize("user-caches"), 0);
    const auto cacheFinding = std::ranges::find(
        junk.findings(), "user-caches", [](const JunkFinding& finding) { return finding.rule.id; });
    EXPECT_EQ(cacheFinding->items.size(), 2u);

    // What a removal takes away leaves the findings without a new search: an item that went
    // itself or with a folder above it, and a finding left with no items.
    ASSERT_GT(foundSize("cargo-cache"), 0);
    state->removal().performDeletion(
        {makeDeletionRequest(home + "/Library/Caches/com.example.app", 300000, Removal::permanent),
         makeDeletionRequest(home + "/Library/Caches/com.example.late", 70000, Removal::permanent),
         makeDeletionRequest(home + "/.cargo/registry", 30000, Removal::permanent)},
        true);
    ASSERT_TRUE(waitUntil([&] { return foundSize("cargo-cache") == 0; }));
    EXPECT_FALSE(junk.isLoading());
    EXPECT_EQ(foundSize("user-caches"), 0);
    EXPECT_GT(foundSize("user-logs"), 0);
    EXPECT_GT(foundSize("trash"), 0);
}

// dorvik-cli clean takes what a first run of Quick Clean would: the titles it lists are those of
// the findings the application's start selection ticks.
TEST_F(QuickCleanTest, TheCliCleansWhatAFirstRunWouldTick) {
    for (const JunkRule& rule : JunkCatalogue::rules()) {
        if (rule.base.starts_with('/')) {
            continue;
        }
        const std::string folder = ruleFolder(rule, home, dataHome);
        const std::string name =
            rule.extensions ? "item." + *rule.extensions->begin() : std::string("item");
        test::writeFile(folder + "/" + name, 20000);
        test::setModificationTime(folder + "/" + name, 1'600'000'000);
    }
    makeState({10ms, 10ms});
    quick().start();
    waitForPhase(SmartPhase::review);
    std::vector<std::string> expected;
    for (const JunkFinding& finding : state->junk().findings()) {
        if (quick().selection().contains(finding.rule.id)) {
            expected.push_back(Wording::shown(finding.rule.title));
        }
    }
    ASSERT_GE(expected.size(), 9u);

    const test::CliRun dry = test::cliUnattended("clean --dry-run");
    ASSERT_EQ(dry.status, 0) << dry.out;
    std::vector<std::string> listed;
    std::istringstream lines(dry.out);
    for (std::string line; std::getline(lines, line);) {
        if (const size_t colon = line.find(": "); colon != std::string::npos) {
            listed.push_back(line.substr(0, colon));
        }
    }
    std::ranges::sort(expected);
    std::ranges::sort(listed);
    EXPECT_EQ(listed, expected) << dry.out;
}

} // namespace
} // namespace dorvik
