// The Overview's recommendations from the state's own scan and junk, what pressing each does, and
// the way from a folder of the trend history to the explorer. A real home, a real scan, a real
// junk search, under a real event loop.

#include "base/Dates.h"
#include "platform/HomeDirectory.h"
#include "state/AppState.h"
#include "state/OverviewActions.h"
#include "state/Settings.h"
#include "support/EventLoop.h"
#include "support/TempDir.h"
#include "support/TestHome.h"

#include <QSettings>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <memory>

namespace dorvik {
namespace {

using test::settle;
using test::waitUntil;

class OverviewActionsTest : public testing::Test, protected test::TestHome {
protected:
    std::unique_ptr<AppState> state;
    std::string trashed = home + "/.Trash/old.bin";
    std::string installer = home + "/Downloads/Tool.dmg";
    std::string cache = home + "/Library/Caches/app/blob";

    void SetUp() override {
        QSettings(settingsOrganisation, settingsApplication).clear();
        test::writeAllocatedFile(trashed, 60'000'000);
        test::writeAllocatedFile(cache, 60'000'000);
        test::writeAllocatedFile(installer, 3'000'000);
        test::setModificationTime(installer, 1'600'000'000);
        test::writeAllocatedFile(home + "/Videos/trip/raw.mov", 1'000'000);
        AppStateOptions options;
        options.accessProbe = [] { return true; };
        options.quickCleanPacing = {std::chrono::milliseconds(1), std::chrono::milliseconds(1)};
        state = std::make_unique<AppState>(options);
        settle();
        state->startScan(ScanTarget::folder(home));
        ASSERT_TRUE(waitUntil([&] { return !state->isScanning(); }));
        settle();
        ASSERT_TRUE(state->scan());
        state->junk().load();
        ASSERT_TRUE(waitUntil([&] { return !state->junk().isLoading(); }));
    }
    void TearDown() override {
        settle();
        state.reset();
    }

    Recommendation found(std::string_view id) {
        const std::vector<Recommendation> rows = currentRecommendations(*state, Dates::now());
        const auto row = std::ranges::find(rows, std::string(id), &Recommendation::id);
        EXPECT_NE(row, rows.end()) << id;
        return row != rows.end() ? *row : Recommendation{};
    }
};

std::vector<std::string> namesOf(const std::vector<FileNodePtr>& stack) {
    std::vector<std::string> names;
    for (const FileNodePtr& node : stack) {
        names.push_back(node->name);
    }
    return names;
}

TEST_F(OverviewActionsTest, TheStatesJunkAndScanMakeTheRows) {
    std::vector<std::string> ids;
    for (const Recommendation& row : currentRecommendations(*state, Dates::now())) {
        ids.push_back(row.id);
    }
    EXPECT_EQ(ids, (std::vector<std::string>{"junk", "trash", "installers"}));
}

TEST_F(OverviewActionsTest, EachRowDoesWhatItSays) {
    const std::string downloads = home + "/Downloads";
    const struct {
        Recommendation row;
        std::function<void()> check;
    } cases[] = {
        {found("junk"),
         [&] {
             EXPECT_EQ(state->section(), AppSection::smartClean);
             EXPECT_EQ(state->quickClean().phase(), SmartPhase::scanning);
             EXPECT_FALSE(state->removal().plan());
         }},
        {found("trash"),
         [&] {
             ASSERT_TRUE(state->removal().plan());
             const DeletionPlan& plan = *state->removal().plan();
             EXPECT_EQ(plan.title, "Empty the Trash");
             ASSERT_EQ(plan.items.size(), 1u);
             EXPECT_EQ(plan.items[0].path, trashed);
             EXPECT_EQ(plan.items[0].removal, Removal::permanent);
         }},
        {found("installers"),
         [&] {
             ASSERT_TRUE(state->removal().plan());
             const DeletionPlan& plan = *state->removal().plan();
             EXPECT_EQ(plan.title, "Delete installers");
             ASSERT_EQ(plan.items.size(), 1u);
             EXPECT_EQ(plan.items[0].path, installer);
             EXPECT_EQ(plan.items[0].removal, Removal::trash);
         }},
        {{"backups", "", {}, "", "", 2'000'000'000, {}, {}},
         [&] { EXPECT_EQ(state->section(), AppSection::junk); }},
        {{"oldbig", "", {}, "", "", 600'000'000, {}, {}},
         [&] {
             EXPECT_EQ(state->section(), AppSection::large);
             EXPECT_EQ(state->largeFilter(), oldLargeFilesFilter(home));
             EXPECT_EQ(state->largeFilter().pathPrefix, home + "/");
         }},
        {{"dev", "", {}, "", "", 2'000'000'000, {}, {}},
         [&] { EXPECT_EQ(state->section(), AppSection::developer); }},
        {{"downloads", "", {}, "", "", 3'000'000'000, {}, downloads},
         [&] {
             EXPECT_EQ(state->section(), AppSection::explorer);
             EXPECT_EQ(namesOf(state->explorerStack()),
                       (std::vector<std::string>{state->scan()->root->name, "Downloads"}));
         }},
    };
    for (const auto& [row, check] : cases) {
        SCOPED_TRACE(row.id);
        state->setSection(AppSection::overview);
        state->removal().cancelPlan();
        carryOutRecommendation(*state, row);
        check();
        ASSERT_TRUE(waitUntil([&] { return state->quickClean().phase() != SmartPhase::scanning; }));
        state->quickClean().startOver();
    }
}

TEST_F(OverviewActionsTest, AFolderOfTheHistoryOpensInTheExplorerOnlyWhenTheScanHoldsIt) {
    state->setSection(AppSection::trends);
    EXPECT_FALSE(openInExplorer(*state, home + "/Videos/missing"));
    EXPECT_FALSE(openInExplorer(*state, "/elsewhere"));
    EXPECT_EQ(state->section(), AppSection::trends);

    ASSERT_TRUE(openInExplorer(*state, home + "/Videos/trip"));
    EXPECT_EQ(state->section(), AppSection::explorer);
    EXPECT_EQ(namesOf(state->explorerStack()),
              (std::vector<std::string>{state->scan()->root->name, "Videos", "trip"}));

    state->markRemoved({home + "/Videos/trip"});
    state->setSection(AppSection::trends);
    EXPECT_FALSE(openInExplorer(*state, home + "/Videos/trip"));
    EXPECT_EQ(state->section(), AppSection::trends);
}

} // namespace
} // namespace dorvik
