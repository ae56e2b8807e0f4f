#include "support/RecordingRunner.h"
#include "support/TempDir.h"
#include "system/LocalSnapshots.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

namespace dorvik {
namespace {

// The moment the system's own `date` gives for a local date and time.
double localMoment(const std::string& text) {
    return std::stod(test::commandOutput("date -d '" + text + "' +%s"));
}

// Captured from `tmutil listlocalsnapshots /`, with lines a listing must survive.
constexpr std::string_view timeMachineOutput =
    "Snapshots for disk /:\n"
    "com.apple.TimeMachine.2024-01-15-103000.local\n"
    "\n"
    "   com.apple.TimeMachine.2024-01-16-091500.local  \n"
    "com.apple.os.update-AB12\n"
    "not.a.snapshot.2024-01-17-000000\n"
    "com.apple.TimeMachine.2024-13-40-999999.local\n";

TEST(LocalSnapshots, TimeMachineListingSkipsTheHeaderAndSortsUndatedLastInTheirOrder) {
    const std::vector<LocalSnapshot> snapshots = parseTimeMachineListing(timeMachineOutput);
    ASSERT_EQ(snapshots.size(), 4u);
    EXPECT_EQ(snapshots[0].name, "com.apple.TimeMachine.2024-01-16-091500.local");
    EXPECT_EQ(snapshots[0].date, localMoment("2024-01-16 09:15:00"));
    EXPECT_EQ(snapshots[1].name, "com.apple.TimeMachine.2024-01-15-103000.local");
    EXPECT_EQ(snapshots[1].date, localMoment("2024-01-15 10:30:00"));
    // Three pieces only, then a date that is no date: listed under their names, as they came.
    EXPECT_EQ(snapshots[2].name, "com.apple.os.update-AB12");
    EXPECT_FALSE(snapshots[2].date.has_value());
    EXPECT_EQ(snapshots[3].name, "com.apple.TimeMachine.2024-13-40-999999.local");
    EXPECT_FALSE(snapshots[3].date.has_value());
    for (const LocalSnapshot& snapshot : snapshots) {
        EXPECT_EQ(snapshot.keeper, SnapshotKeeper::timeMachine);
    }
    EXPECT_TRUE(parseTimeMachineListing("").empty());
}

TEST(LocalSnapshots, SnapperListingKeepsNumberedSnapshotsButNotTheLiveFilesystem) {
    // Captured from `snapper --csvout list --columns number,date`.
    const std::vector<LocalSnapshot> snapshots = parseSnapperListing("number,date\n"
                                                                     "0,\n"
                                                                     "1,2024-03-01 08:00:05\n"
                                                                     "12,\n"
                                                                     "2,2024-03-02 21:45:00\n"
                                                                     "7,not a date\n");
    ASSERT_EQ(snapshots.size(), 4u);
    EXPECT_EQ(snapshots[0].name, "2");
    EXPECT_EQ(snapshots[0].date, localMoment("2024-03-02 21:45:00"));
    EXPECT_EQ(snapshots[1].name, "1");
    EXPECT_EQ(snapshots[1].date, localMoment("2024-03-01 08:00:05"));
    EXPECT_EQ(snapshots[2].name, "12");
    EXPECT_EQ(snapshots[3].name, "7");
    EXPECT_FALSE(snapshots[3].date.has_value());
    for (const LocalSnapshot& snapshot : snapshots) {
        EXPECT_EQ(snapshot.keeper, SnapshotKeeper::snapper);
    }
}

TEST(LocalSnapshots, DeletionRefusesAnyNameOutsideTheStrictShapeBeforeBuildingACommand) {
    const struct {
        LocalSnapshot snapshot;
        std::optional<std::string> command; // none: refused
    } cases[] = {
        {{"com.apple.TimeMachine.2024-01-15-103000.local", {}, SnapshotKeeper::timeMachine},
         "/usr/bin/tmutil deletelocalsnapshots 2024-01-15-103000"},
        // The date part need not parse, only hold digits and "-".
        {{"com.apple.TimeMachine.2024-99.local", {}, SnapshotKeeper::timeMachine},
         "/usr/bin/tmutil deletelocalsnapshots 2024-99"},
        {{"com.apple.TimeMachine.2024-01-15-103000'.local", {}, SnapshotKeeper::timeMachine}, {}},
        {{"com.apple.TimeMachine.2024-01-15 103000.local", {}, SnapshotKeeper::timeMachine}, {}},
        {{"com.apple.TimeMachine.2024;reboot.local", {}, SnapshotKeeper::timeMachine}, {}},
        {{"com.apple.TimeMachine", {}, SnapshotKeeper::timeMachine}, {}},
        {{"com.apple.os.update-AB12", {}, SnapshotKeeper::timeMachine}, {}},
        {{"42", {}, SnapshotKeeper::snapper}, "/usr/bin/snapper delete 42"},
        {{"4'2", {}, SnapshotKeeper::snapper}, {}},
        {{"4 2", {}, SnapshotKeeper::snapper}, {}},
        {{"42;reboot", {}, SnapshotKeeper::snapper}, {}},
        {{"-1", {}, SnapshotKeeper::snapper}, {}},
        {{"", {}, SnapshotKeeper::snapper}, {}},
    };
    for (const auto& [snapshot, command] : cases) {
        EXPECT_EQ(snapshotDeletionCommand(snapshot), command) << snapshot.name;
        test::RecordingRunner recorder;
        const std::optional<std::string> message = deleteLocalSnapshot(snapshot, recorder.runner());
        if (!command) {
            EXPECT_EQ(message, "Unrecognised snapshot name.") << snapshot.name;
            EXPECT_TRUE(recorder.calls.empty()) << snapshot.name;
            continue;
        }
        EXPECT_EQ(message, std::nullopt);
        ASSERT_EQ(recorder.calls.size(), 1u);
        EXPECT_EQ(recorder.calls[0],
                  (std::vector<std::string>{"/usr/bin/pkexec", "/bin/sh", "-c", *command}));
    }
}

TEST(LocalSnapshots, DeletionReportsTheCancelledPromptAndTheToolsFailure) {
    const LocalSnapshot snapshot{"42", {}, SnapshotKeeper::snapper};
    test::RecordingRunner cancelled{{true, 126, "", ""}, {}};
    EXPECT_EQ(deleteLocalSnapshot(snapshot, cancelled.runner()), "Cancelled.");
    test::RecordingRunner failed{{true, 1, "", ""}, {}};
    EXPECT_EQ(deleteLocalSnapshot(snapshot, failed.runner()), "Couldn't delete the snapshot.");
}

void writeTool(const std::string& path, std::string_view output) {
    test::writeText(path, "#!/bin/sh\ncat <<'END'\n" + std::string(output) + "END\n");
    chmod(path.c_str(), 0755);
}

TEST(LocalSnapshots, ListingAsksTheToolsThatExistAndNothingWhenNoneDoes) {
    test::TempDir temp;
    SnapshotTools tools{temp / "tmutil", temp / "snapper"};
    EXPECT_TRUE(listLocalSnapshots(tools).empty());

    writeTool(tools.snapper, "number,date\n0,\n3,2024-03-02 21:45:00\n");
    std::vector<LocalSnapshot> snapshots = listLocalSnapshots(tools);
    ASSERT_EQ(snapshots.size(), 1u);
    EXPECT_EQ(snapshots[0].name, "3");

    writeTool(tools.tmutil, timeMachineOutput);
    snapshots = listLocalSnapshots(tools);
    ASSERT_EQ(snapshots.size(), 5u);
    EXPECT_EQ(snapshots[0].name, "3"); // March comes before January, newest first
    EXPECT_EQ(snapshots[1].name, "com.apple.TimeMachine.2024-01-16-091500.local");
    EXPECT_FALSE(snapshots[4].date.has_value());
}

} // namespace
} // namespace dorvik
