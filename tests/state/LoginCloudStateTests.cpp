// The Login Items and iCloud Drive states over a home of the test's own: a user's autostart entry
// removed through the removal road and brought back by undo, a system entry turned off, and the
// downloads given back with their toast and failures.

#include "state/AppState.h"
#include "support/EventLoop.h"
#include "support/RecordingRunner.h"
#include "support/TempDir.h"
#include "support/TestHome.h"

#include <QSettings>
#include <gtest/gtest.h>

#include <algorithm>

namespace dorvik {
namespace {

using test::settle;
using test::waitUntil;

class LoginCloudStateTest : public testing::Test {
protected:
    void SetUp() override {
        QSettings(settingsOrganisation, settingsApplication).clear();
        places.home = home.home;
        places.configHome = home.home + "/.config";
        places.dataHome = home.dataHome;
        places.systemRoot = root.path();
        AppStateOptions options;
        options.accessProbe = [] { return true; };
        state = std::make_unique<AppState>(options);
        settle();
        state->loginItems().setSources({places, runner.runner(), {}});
    }
    void TearDown() override { settle(); }

    void listAndWait() {
        state->loginItems().refresh();
        ASSERT_TRUE(waitUntil([&] { return !state->loginItems().isLoading(); }));
    }

    const LaunchItem* item(const std::string& label) const {
        const auto& items = state->loginItems().items();
        const auto found = std::ranges::find(items, label, &LaunchItem::label);
        return found == items.end() ? nullptr : &*found;
    }

    test::TestHome home;
    test::TempDir root;
    LaunchPlaces places;
    test::RecordingRunner runner;
    std::unique_ptr<AppState> state;
};

TEST_F(LoginCloudStateTest, AUserEntryGoesToTheTrashAndUndoBringsItBack) {
    const std::string entry = places.configHome + "/autostart/notes.desktop";
    test::writeText(entry, "[Desktop Entry]\nType=Application\nName=Notes\nExec=/bin/sh\n");
    listAndWait();
    ASSERT_NE(item("notes"), nullptr);

    state->loginItems().remove(*item("notes"));
    EXPECT_TRUE(state->loginItems().isRemoving());
    ASSERT_TRUE(waitUntil(
        [&] { return !state->loginItems().isRemoving() && !state->loginItems().isLoading(); }));
    EXPECT_FALSE(test::entryExists(entry));
    EXPECT_TRUE(test::entryExists(home.trashFiles + "/notes.desktop"));
    EXPECT_EQ(item("notes"), nullptr);
    EXPECT_FALSE(state->loginItems().message().has_value());
    ASSERT_TRUE(state->removal().toast().has_value());
    ASSERT_EQ(state->removal().toast()->undoable.size(), 1u);
    EXPECT_TRUE(runner.calls.empty());

    state->removal().undo(state->removal().toast()->undoable);
    ASSERT_TRUE(waitUntil([&] { return item("notes") != nullptr; }));
    EXPECT_TRUE(test::entryExists(entry));
}

TEST_F(LoginCloudStateTest, ASystemEntryIsTurnedOffAndARefusalIsShown) {
    test::writeText(root / "etc/xdg/autostart/indexer.desktop",
                    "[Desktop Entry]\nType=Application\nName=Indexer\nExec=/bin/sh\n");
    test::writeText(home.home + "/Library/LaunchAgents/it's.plist",
                    "<plist><dict><key>Label</key><string>org.quote</string></dict></plist>");
    listAndWait();
    ASSERT_NE(item("indexer"), nullptr);
    ASSERT_NE(item("org.quote"), nullptr);

    state->loginItems().remove(*item("indexer"));
    ASSERT_TRUE(waitUntil(
        [&] { return !state->loginItems().isRemoving() && !state->loginItems().isLoading(); }));
    ASSERT_NE(item("indexer"), nullptr);
    EXPECT_TRUE(item("indexer")->isTurnedOff);
    EXPECT_TRUE(test::entryExists(root / "etc/xdg/autostart/indexer.desktop"));
    EXPECT_FALSE(state->loginItems().message().has_value());

    state->loginItems().remove(*item("org.quote"));
    ASSERT_TRUE(waitUntil(
        [&] { return !state->loginItems().isRemoving() && !state->loginItems().isLoading(); }));
    EXPECT_EQ(state->loginItems().message(), "Unsupported file name.");
    EXPECT_NE(item("org.quote"), nullptr);
    EXPECT_TRUE(runner.calls.empty());
}

TEST_F(LoginCloudStateTest, RemovingDownloadsKeepsTheFailuresAndSaysWhatWasFreed) {
    int builds = 0;
    CloudSources sources;
    sources.build = [&builds] {
        ++builds;
        CloudReport report;
        report.isAvailable = true;
        CloudFolder folder;
        folder.path = "/c";
        folder.title = "Films";
        folder.localSize = 5'000'000;
        folder.items = {{"/c/a.mov", "a.mov", 3'000'000, true},
                        {"/c/b.mov", "b.mov", 2'000'000, false}};
        report.folders.push_back(folder);
        return report;
    };
    // Linux evicts nothing: a stand-in answers as a Mac does.
    sources.evict = [](const std::string&) { return std::optional<std::string>(); };
    state->cloud().setSources(sources);
    state->cloud().refresh();
    state->cloud().refresh(); // a second one while the first runs does nothing
    ASSERT_TRUE(waitUntil([&] { return !state->cloud().isLoading(); }));
    EXPECT_EQ(builds, 1);
    ASSERT_TRUE(state->cloud().report().has_value());

    const std::vector<CloudItem> items = state->cloud().report()->folders[0].items;
    state->cloud().removeDownloads(items);
    EXPECT_TRUE(state->cloud().isLoading());
    ASSERT_TRUE(waitUntil([&] { return !state->cloud().isLoading(); }));
    EXPECT_EQ(builds, 2);
    ASSERT_TRUE(state->removal().toast().has_value());
    EXPECT_EQ(state->removal().toast()->message, "3 MB freed");
    EXPECT_TRUE(state->removal().toast()->undoable.empty());
    ASSERT_EQ(state->removal().failures().size(), 1u);
    EXPECT_EQ(state->removal().failures()[0].reason, "Not uploaded to iCloud yet.");
    EXPECT_TRUE(state->removal().history().entries().empty());
}

} // namespace
} // namespace dorvik
