#include "scanning/MeasureFolder.h"
#include "state/AppState.h"
#include "support/EventLoop.h"
#include "support/TempDir.h"

#include <QSettings>
#include <gtest/gtest.h>

#include <sys/stat.h>

namespace dorvik {
namespace {

using test::settle;
using test::waitUntil;

class SystemDataStateTest : public testing::Test {
protected:
    void SetUp() override {
        QSettings(settingsOrganisation, settingsApplication).clear();
        sources.measuring.filesystemRoot = root.path();
        sources.tools = {root / "usr/bin/tmutil", root / "usr/bin/snapper"};
    }
    void TearDown() override { settle(); }

    static AppStateOptions options() {
        AppStateOptions result;
        result.accessProbe = [] { return true; };
        return result;
    }

    void refreshAndWait(AppState& state) {
        state.systemData().refresh();
        EXPECT_TRUE(state.systemData().isLoading());
        ASSERT_TRUE(waitUntil([&] { return !state.systemData().isLoading(); }));
    }

    const SystemDataPart* part(AppState& state, std::string_view id) {
        for (const SystemDataPart& found : state.systemData().parts()) {
            if (found.id == id) {
                return &found;
            }
        }
        return nullptr;
    }

    test::TempDir root;
    SystemDataSources sources;
};

TEST_F(SystemDataStateTest, RefreshTakesTheScansSizesAndWalksTheRest) {
    test::writeFile(root / "Library/Caches/a", 600000);
    test::writeFile(root / "var/log/syslog", 300000);
    AppState state(options());
    state.systemData().setSources(sources);
    refreshAndWait(state);
    ASSERT_NE(part(state, "caches"), nullptr);
    EXPECT_EQ(part(state, "caches")->size, measureFolder(root / "Library/Caches").bytes);
    EXPECT_EQ(state.systemData().parts().size(), 2u);
    EXPECT_EQ(state.systemData().measuredSize(),
              measureFolder(root / "Library/Caches").bytes + measureFolder(root / "var/log").bytes);
    EXPECT_TRUE(state.systemData().snapshots().empty());

    state.startScan(ScanTarget::folder(root / "Library"));
    ASSERT_TRUE(waitUntil([&] { return !state.isScanning(); }));
    const int64_t scanned = measureFolder(root / "Library/Caches").bytes;
    test::writeFile(root / "Library/Caches/b", 2000000);
    test::writeFile(root / "var/log/later", 2000000);
    refreshAndWait(state);
    EXPECT_EQ(part(state, "caches")->size, scanned);
    EXPECT_EQ(part(state, "logs.linux")->size, measureFolder(root / "var/log").bytes);
}

TEST_F(SystemDataStateTest, DeletingASnapshotRunsOnePrivilegedCommandThenListsAgain) {
    // snapper here reads its list from a file that the stand-in for pkexec rewrites.
    const std::string list = root / "snapshots.csv";
    test::writeText(list, "number,date\n0,\n4,2024-03-01 08:00:00\n5,2024-03-02 08:00:00\n");
    test::writeText(sources.tools.snapper, "#!/bin/sh\ncat '" + list + "'\n");
    chmod(sources.tools.snapper.c_str(), 0755);
    std::vector<std::vector<std::string>> commands;
    platform::ToolRun answer{true, 0, "", ""};
    sources.privileged = [&](const std::vector<std::string>& argv) {
        commands.push_back(argv);
        if (answer.exitStatus == 0) {
            test::writeText(list, "number,date\n0,\n4,2024-03-01 08:00:00\n");
        }
        return answer;
    };

    AppState state(options());
    state.systemData().setSources(sources);
    refreshAndWait(state);
    ASSERT_EQ(state.systemData().snapshots().size(), 2u);
    const LocalSnapshot newest = state.systemData().snapshots()[0];
    EXPECT_EQ(newest.name, "5");

    answer = {true, 126, "", ""};
    state.systemData().deleteSnapshot(newest);
    EXPECT_TRUE(state.systemData().isDeleting());
    ASSERT_TRUE(waitUntil([&] { return !state.systemData().isDeleting(); }));
    EXPECT_EQ(state.systemData().snapshotMessage(), "Cancelled.");
    EXPECT_EQ(state.systemData().snapshots().size(), 2u);

    answer = {true, 0, "", ""};
    state.systemData().deleteSnapshot(newest);
    ASSERT_TRUE(waitUntil([&] { return !state.systemData().isDeleting(); }));
    EXPECT_EQ(state.systemData().snapshotMessage(), std::nullopt);
    ASSERT_EQ(state.systemData().snapshots().size(), 1u);
    EXPECT_EQ(state.systemData().snapshots()[0].name, "4");

    const std::vector<std::string> expected = {"/usr/bin/pkexec", "/bin/sh", "-c",
                                               sources.tools.snapper + " delete 5"};
    EXPECT_EQ(commands, (std::vector<std::vector<std::string>>{expected, expected}));
}

} // namespace
} // namespace dorvik
