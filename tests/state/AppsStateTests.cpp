// The applications list and uninstall under a real event loop: bundles made in a home and a
// system root of the test's own, the load on a worker, the plan through the removal road to the
// freedesktop Trash, the history and undo, and the refusals of Apple and running applications.

#include "removal/SafetyRules.h"
#include "state/AppState.h"
#include "state/Settings.h"
#include "support/Bundles.h"
#include "support/ChildProcess.h"
#include "support/Environment.h"
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

std::vector<std::string> pathsOf(const std::vector<InstalledApp>& apps) {
    std::vector<std::string> paths;
    for (const InstalledApp& app : apps) {
        paths.push_back(app.path);
    }
    std::ranges::sort(paths);
    return paths;
}

std::vector<std::string> sorted(std::vector<std::string> paths) {
    std::ranges::sort(paths);
    return paths;
}

class AppsStateTest : public testing::Test, protected test::TestHome {
protected:
    test::TempDir system;
    test::ScopedEnvironment systemRoot{"DORVIK_SYSTEM_ROOT", system.path()};
    // Whether an app runs is asked of the whole machine, where other tests run apps too.
    std::string writerID = test::identifierOfThisTest("com.example.writer");
    std::string writer = home + "/Applications/Writer.app";
    std::string notes = system / "Applications/Notes.app";
    std::string library = home + "/Library";
    std::unique_ptr<AppState> state;

    void SetUp() override {
        QSettings(settingsOrganisation, settingsApplication).clear();
        test::writeInfoPlist(writer, {{"CFBundleIdentifier", writerID},
                                      {"CFBundleName", "Writer"},
                                      {"CFBundleExecutable", "writer"}});
        test::writeAllocatedFile(writer + "/Contents/MacOS/writer", 400000);
        test::writeAllocatedFile(library + "/Application Support/" + writerID + "/db", 300000);
        test::writeAllocatedFile(library + "/Preferences/" + writerID + ".plist", 4096);
        test::writeInfoPlist(notes,
                             {{"CFBundleIdentifier", "com.apple.Notes"}, {"CFBundleName", "Notes"}},
                             test::PlistFormat::binary);
        AppStateOptions options;
        options.accessProbe = [] { return true; };
        state = std::make_unique<AppState>(options);
        settle();
    }
    void TearDown() override {
        settle();
        state.reset();
    }

    void loadApps() {
        state->apps().refresh();
        ASSERT_TRUE(waitUntil([&] { return !state->apps().appsLoading(); }));
    }

    InstalledApp loaded(const std::string& path) const {
        const auto& apps = state->apps().apps();
        const auto found = std::ranges::find(apps, path, &InstalledApp::path);
        EXPECT_NE(found, apps.end()) << path;
        return found == apps.end() ? InstalledApp{} : *found;
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
    }
};

TEST_F(AppsStateTest, ALoadRunsOnAWorkerAndRefreshesAreGuarded) {
    int loadingChanges = 0;
    int listChanges = 0;
    QObject::connect(&state->apps(), &AppsState::appsLoadingChanged, [&] { ++loadingChanges; });
    QObject::connect(&state->apps(), &AppsState::appsChanged, [&] { ++listChanges; });

    state->apps().load();
    // The list comes back through the event loop, never during the call.
    EXPECT_TRUE(state->apps().appsLoading());
    EXPECT_TRUE(state->apps().apps().empty());
    state->apps().refresh();
    state->apps().load();
    ASSERT_TRUE(waitUntil([&] { return !state->apps().appsLoading(); }));
    settle();
    EXPECT_EQ(loadingChanges, 2);
    EXPECT_EQ(listChanges, 1);
    EXPECT_EQ(pathsOf(state->apps().apps()), sorted({writer, notes}));
    EXPECT_EQ(state->apps().apps().front().path, writer); // the largest total first
    EXPECT_EQ(loaded(writer).related.size(), 2u);

    // The first visit's load leaves a list that is there; a refresh reads the disk again.
    const std::string painter = home + "/Applications/Painter.app";
    test::writeInfoPlist(painter, {{"CFBundleIdentifier", "com.example.painter"}});
    state->apps().load();
    EXPECT_FALSE(state->apps().appsLoading());
    loadApps();
    EXPECT_EQ(pathsOf(state->apps().apps()), sorted({writer, painter, notes}));
    EXPECT_EQ(listChanges, 2);
}

TEST_F(AppsStateTest, AnAppWithoutRelatedDataIsOnePlanItem) {
    const std::string tool = home + "/Applications/Tool.app";
    test::writeInfoPlist(
        tool, {{"CFBundleIdentifier", "org.example.tool"}, {"CFBundleDisplayName", "Handy Tool"}});
    test::writeAllocatedFile(tool + "/Contents/Resources/data", 8192);
    loadApps();
    const InstalledApp app = loaded(tool);
    EXPECT_TRUE(app.related.empty());
    EXPECT_TRUE(state->apps().uninstall(app));
    ASSERT_TRUE(state->removal().plan());
    const DeletionPlan& plan = *state->removal().plan();
    EXPECT_EQ(plan.title, "Uninstall Handy Tool");
    ASSERT_EQ(plan.items.size(), 1u);
    EXPECT_EQ(plan.items[0].path, tool);
    EXPECT_EQ(plan.items[0].name, "Handy Tool");
    EXPECT_EQ(plan.items[0].size, app.appSize);
    EXPECT_EQ(plan.items[0].removal, Removal::trash);
    EXPECT_EQ(plan.items[0].verdict, SafetyRules::verdict(tool));
}

TEST_F(AppsStateTest, AppleAndRunningAppsAreRefused) {
    const std::string sleeper = test::installExecutable(writer, "/bin/sleep", "writer");
    // An Apple application that runs, from a bundle of its own.
    const std::string appleSleeper = test::installExecutable(notes, "/bin/sleep", "Notes");
    loadApps();
    const InstalledApp app = loaded(writer);
    const InstalledApp apple = loaded(notes);
    {
        test::ChildProcess running(sleeper, {"30"});
        test::ChildProcess appleRunning(appleSleeper, {"30"});
        EXPECT_FALSE(state->apps().uninstall(app));
        EXPECT_FALSE(state->apps().uninstall(apple));
        EXPECT_FALSE(state->removal().plan());
        // The safety rules stand behind the page: a plan made anyway would keep the bundle.
        const SafetyVerdict verdict = SafetyRules::verdict(writer);
        EXPECT_EQ(verdict.risk, Risk::protected_);
        EXPECT_EQ(verdict.reason, "The app is open. Quit it before removing it.");
    }
    EXPECT_FALSE(state->apps().uninstall(apple));
    EXPECT_FALSE(state->removal().plan());
    // Quit, it may go.
    EXPECT_TRUE(state->apps().uninstall(app));
    ASSERT_TRUE(state->removal().plan());
    EXPECT_EQ(state->removal().plan()->title, "Uninstall Writer");
}

TEST_F(AppsStateTest, AnUninstallGoesToTheTrashWithHistoryAndUndo) {
    const std::string painter = home + "/Applications/Painter.app";
    test::writeInfoPlist(painter, {{"CFBundleIdentifier", "com.example.painter"}});
    loadApps();
    const InstalledApp app = loaded(writer);
    ASSERT_EQ(app.related.size(), 2u);
    ASSERT_TRUE(state->apps().uninstall(app));
    const DeletionPlan plan = *state->removal().plan();
    ASSERT_EQ(plan.items.size(), 3u);
    EXPECT_EQ(plan.items[1].name, "Application Support · " + writerID);
    EXPECT_EQ(plan.items[2].name, "Preferences · " + writerID + ".plist");

    int listChanges = 0;
    QObject::connect(&state->apps(), &AppsState::appsChanged, [&] { ++listChanges; });
    executePlan();
    // The row goes at once; the list is then read again from the disk.
    EXPECT_EQ(pathsOf(state->apps().apps()), sorted({painter, notes}));
    ASSERT_TRUE(waitUntil([&] { return listChanges >= 2 && !state->apps().appsLoading(); }));
    EXPECT_EQ(pathsOf(state->apps().apps()), sorted({painter, notes}));

    for (const PlanItem& item : plan.items) {
        EXPECT_FALSE(test::entryExists(item.path)) << item.path;
    }
    EXPECT_TRUE(test::entryExists(trashFiles + "/Writer.app/Contents/MacOS/writer"));
    EXPECT_TRUE(test::entryExists(trashFiles + "/" + writerID + "/db"));
    EXPECT_TRUE(test::entryExists(trashFiles + "/" + writerID + ".plist"));
    const auto& entries = state->removal().history().entries();
    ASSERT_EQ(entries.size(), 3u);
    for (const HistoryEntry& entry : entries) {
        EXPECT_TRUE(entry.trashPath.has_value()) << entry.originalPath;
    }
    const auto& toast = state->removal().toast();
    ASSERT_TRUE(toast);
    ASSERT_EQ(toast->undoable.size(), 3u);

    state->removal().undo(toast->undoable);
    for (const PlanItem& item : plan.items) {
        EXPECT_TRUE(test::entryExists(item.path)) << item.path;
    }
    loadApps();
    EXPECT_EQ(loaded(writer).related.size(), 2u);
}

TEST_F(AppsStateTest, RemovalsElsewhereLeaveTheListAlone) {
    loadApps();
    const std::string download = home + "/Downloads/film.mkv";
    test::writeAllocatedFile(download, 4096);
    int listChanges = 0;
    QObject::connect(&state->apps(), &AppsState::appsChanged, [&] { ++listChanges; });
    state->removal().propose({makePlanItem(download, 4096, Removal::trash)}, "Delete Items");
    executePlan();
    settle();
    EXPECT_FALSE(test::entryExists(download));
    EXPECT_EQ(listChanges, 0);
    EXPECT_FALSE(state->apps().appsLoading());
}

} // namespace
} // namespace dorvik
