// The Developer page's lists under a real event loop: computed from a real scan and a real junk
// search, and what a removal through the plans takes leaves them. Each test has its own home.

#include "removal/SafetyRules.h"
#include "state/AppState.h"
#include "state/Settings.h"
#include "support/EventLoop.h"
#include "support/TempDir.h"
#include "support/TestHome.h"

#include <QSettings>
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>

namespace dorvik {
namespace {

using test::settle;
using test::waitUntil;

std::vector<std::string> pathsOf(const auto& list) {
    std::vector<std::string> paths;
    for (const auto& entry : list) {
        paths.push_back(entry.path);
    }
    std::ranges::sort(paths);
    return paths;
}

class DeveloperStateTest : public testing::Test, protected test::TestHome {
protected:
    std::unique_ptr<AppState> state;
    std::string modules = home + "/Projects/web/node_modules";
    std::string npmCache = home + "/.npm/_cacache/content";
    std::string disk = home + "/VMs/fedora.qcow2";

    void SetUp() override {
        QSettings(settingsOrganisation, settingsApplication).clear();
        test::writeAllocatedFile(modules + "/react/blob", 21'000'000);
        test::writeAllocatedFile(npmCache + "/blob", 1'000'000);
        test::writeAllocatedFile(disk, 600'000'000, 40'000'000'000);
        AppStateOptions options;
        options.accessProbe = [] { return true; };
        state = std::make_unique<AppState>(options);
        settle();
    }
    void TearDown() override {
        settle();
        state.reset();
    }

    void scanHome() {
        state->startScan(ScanTarget::folder(home));
        ASSERT_TRUE(waitUntil([&] { return !state->isScanning(); }));
        settle();
        ASSERT_TRUE(state->scan());
    }

    void loadJunk() {
        state->developer().loadJunk();
        EXPECT_TRUE(state->developer().isLoadingJunk());
        ASSERT_TRUE(waitUntil([&] { return !state->developer().isLoadingJunk(); }));
        ASSERT_TRUE(state->developer().junk());
    }

    // Confirms the plan on show, review items too, and waits for the removal's toast.
    void executePlan() {
        ASSERT_TRUE(state->removal().plan());
        int toasts = 0;
        const auto connection =
            QObject::connect(&state->removal(), &RemovalState::toastChanged, [&] { ++toasts; });
        state->removal().execute(*state->removal().plan(), true);
        ASSERT_TRUE(waitUntil([&] { return toasts > 0; }));
        QObject::disconnect(connection);
        settle();
    }
};

TEST_F(DeveloperStateTest, WithoutAScanOnlyTheRulesItemsOnceTheJunkIsLoaded) {
    EXPECT_TRUE(state->developer().developerItems().empty());
    EXPECT_TRUE(state->developer().virtualDisks().empty());
    loadJunk();
    EXPECT_EQ(pathsOf(state->developer().developerItems()), std::vector<std::string>{npmCache});
    EXPECT_TRUE(state->developer().virtualDisks().empty());

    int changes = 0;
    QObject::connect(&state->developer(), &DeveloperState::changed, [&] { ++changes; });
    scanHome();
    EXPECT_GE(changes, 1);
    EXPECT_EQ(pathsOf(state->developer().developerItems()),
              (std::vector<std::string>{npmCache, modules}));
    EXPECT_EQ(pathsOf(state->developer().virtualDisks()), std::vector<std::string>{disk});
}

TEST_F(DeveloperStateTest, TheCleaningPlanCarriesEachItemsRemovalAndVerdict) {
    scanHome();
    loadJunk();
    const std::vector<DevItem> items = state->developer().developerItems();
    ASSERT_EQ(items.size(), 2u);
    state->developer().proposeCleaning(items);
    ASSERT_TRUE(state->removal().plan());
    const DeletionPlan& plan = *state->removal().plan();
    EXPECT_EQ(plan.title, "Clean Developer Artifacts");
    ASSERT_EQ(plan.items.size(), 2u);
    for (size_t i = 0; i < items.size(); ++i) {
        SCOPED_TRACE(items[i].path);
        EXPECT_EQ(plan.items[i].path, items[i].path);
        EXPECT_EQ(plan.items[i].size, items[i].size);
        EXPECT_EQ(plan.items[i].removal, items[i].removal);
        EXPECT_EQ(plan.items[i].verdict, SafetyRules::verdict(items[i].path));
    }
    state->removal().cancelPlan();
    state->developer().proposeCleaning({});
    EXPECT_FALSE(state->removal().plan());
}

TEST_F(DeveloperStateTest, WhatARemovalTookLeavesBothLists) {
    scanHome();
    loadJunk();
    ASSERT_EQ(state->developer().developerItems().size(), 2u);
    ASSERT_EQ(state->developer().virtualDisks().size(), 1u);

    // The artifact and the rule's item through the page's plan: gone from disk, from the tree and
    // from the list.
    state->developer().proposeCleaning(state->developer().developerItems());
    executePlan();
    EXPECT_FALSE(test::entryExists(modules));
    EXPECT_FALSE(test::entryExists(npmCache));
    EXPECT_TRUE(state->developer().developerItems().empty());
    // A new search of the junk, set off by the removal, finds nothing to bring back.
    ASSERT_TRUE(waitUntil([&] { return !state->developer().isLoadingJunk(); }));
    EXPECT_TRUE(state->developer().developerItems().empty());

    // The disk through the file lists' plan, to the Trash: gone from its list, and back with an
    // undo.
    const int64_t diskSize = state->developer().virtualDisks().front().size;
    state->removal().propose({makePlanItem(disk, diskSize, Removal::trash)}, "Delete Items");
    executePlan();
    EXPECT_FALSE(test::entryExists(disk));
    EXPECT_TRUE(state->developer().virtualDisks().empty());
    state->removal().undo({state->removal().history().entries().front()});
    settle();
    EXPECT_EQ(pathsOf(state->developer().virtualDisks()), std::vector<std::string>{disk});
}

} // namespace
} // namespace dorvik
