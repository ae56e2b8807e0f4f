// The application beside another process writing the same files: what dorvik-cli records while
// the application is open shows in the application, and the application's own writes keep it.
// The other process is real (fork); the event loop is real.

#include "base/Dates.h"
#include "base/Uuid.h"
#include "removal/DeletionHistory.h"
#include "state/AppState.h"
#include "state/Settings.h"
#include "support/EventLoop.h"
#include "support/TestHome.h"
#include "trends/TrendStore.h"

#include <QSettings>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <sys/wait.h>
#include <unistd.h>

namespace dorvik {
namespace {

using test::settle;
using test::waitUntil;

void inOtherProcess(const std::function<void()>& work) {
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        work();
        _exit(0);
    }
    ASSERT_EQ(waitpid(child, nullptr, 0), child);
}

bool holds(const DeletionHistory& history, const std::string& id) {
    return std::ranges::find(history.entries(), id, &HistoryEntry::id) != history.entries().end();
}

class SharedFilesTest : public testing::Test, protected test::TestHome {
protected:
    std::unique_ptr<AppState> state;

    void SetUp() override {
        QSettings(settingsOrganisation, settingsApplication).clear();
        AppStateOptions options;
        options.accessProbe = [] { return true; };
        state = std::make_unique<AppState>(options);
        settle();
    }
    void TearDown() override {
        settle();
        state.reset();
    }
};

TEST_F(SharedFilesTest, WhatAnotherProcessRecordsShowsAndSurvivesTheApplicationsWrites) {
    test::writeText(home + "/Downloads/app.txt", "removed in the application");
    bool removed = false;
    state->removal().performDeletion(
        {makeDeletionRequest(home + "/Downloads/app.txt", 1, Removal::trash)}, true,
        [&](const DeletionReport&) { removed = true; });
    ASSERT_TRUE(waitUntil([&] { return removed; }));
    ASSERT_EQ(state->removal().history().entries().size(), 1u);
    const HistoryEntry mine = state->removal().history().entries()[0];

    int announced = 0;
    QObject::connect(&state->removal(), &RemovalState::historyChanged, [&] { ++announced; });
    const HistoryEntry theirs{Uuid::make(), Dates::now(), home + "/elsewhere", std::nullopt, 5,
                              false};
    inOtherProcess([&] { DeletionHistory(DeletionHistory::defaultPath()).record({theirs}); });
    ASSERT_TRUE(waitUntil([&] { return holds(state->removal().history(), theirs.id); }));
    EXPECT_GE(announced, 1);

    // The application's restore rewrites the file: the other process's entry stays in it.
    state->removal().undo({mine});
    EXPECT_EQ(test::readText(home + "/Downloads/app.txt"), "removed in the application");
    const DeletionHistory onDisk(DeletionHistory::defaultPath());
    EXPECT_TRUE(holds(onDisk, theirs.id));
    ASSERT_TRUE(holds(onDisk, mine.id));
    EXPECT_TRUE(std::ranges::find(onDisk.entries(), mine.id, &HistoryEntry::id)->restored);
}

TEST_F(SharedFilesTest, TrendsWrittenElsewhereAreReadAgain) {
    int announced = 0;
    QObject::connect(state.get(), &AppState::trendsChanged, [&] { ++announced; });
    const ScanSnapshot snapshot{Uuid::make(), Dates::now(), "/srv",
                                10,           {{"1", 10}},  {{"/srv", 10}}};
    inOtherProcess([&] { TrendStore().record(snapshot); });
    ASSERT_TRUE(waitUntil([&] { return announced > 0; }));
    ASSERT_EQ(state->trends().snapshots().size(), 1u);
    EXPECT_EQ(state->trends().snapshots()[0].root, "/srv");
}

} // namespace
} // namespace dorvik
