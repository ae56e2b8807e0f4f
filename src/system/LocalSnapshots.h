#pragma once

// The snapshots the system keeps on the startup disk: Time Machine's local snapshots where
// tmutil exists, and on Linux the btrfs snapshots that snapper keeps. Listed afresh on each
// visit, deleted one at a time as the administrator. Deleting passes one strict check of what
// goes into the command line: the command is built only from a name that passes it.

#include "platform/RunTool.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace dorvik {

enum class SnapshotKeeper : uint8_t { timeMachine, snapper };

struct LocalSnapshot {
    // Time Machine: the line tmutil prints, trimmed. Snapper: the snapshot's number.
    std::string name;
    std::optional<double> date; // seconds since 1970; none when the name gives none
    SnapshotKeeper keeper = SnapshotKeeper::timeMachine;

    bool operator==(const LocalSnapshot&) const = default;
};

// How a snapshot is named on the page: its date and time, else its name; snapper's numbered
// ones as "Snapshot 5, " and the date.
std::string snapshotTitle(const LocalSnapshot& snapshot);

// Where the tools lie; tests point them at programs of their own.
struct SnapshotTools {
    std::string tmutil = "/usr/bin/tmutil";
    std::string snapper = "/usr/bin/snapper";
};

inline constexpr std::string_view unrecognisedSnapshotMessage = "Unrecognised snapshot name.";
inline constexpr std::string_view snapshotFailureMessage = "Couldn't delete the snapshot.";

// The snapshots in `tmutil listlocalsnapshots /` output, newest first; lines that do not begin
// "com.apple." (the header among them) are skipped.
std::vector<LocalSnapshot> parseTimeMachineListing(std::string_view output);

// The snapshots in `snapper --csvout list --columns number,date` output, newest first; the header,
// snapshot 0 (the live filesystem, not a snapshot) and lines without a number are skipped.
std::vector<LocalSnapshot> parseSnapperListing(std::string_view output);

// Newest first; those without a date last, in the order they came.
void sortNewestFirst(std::vector<LocalSnapshot>& snapshots);

// Every snapshot the tools that exist report, newest first; empty when neither exists. Runs the
// tools: call it off the main thread.
std::vector<LocalSnapshot> listLocalSnapshots(const SnapshotTools& tools = {});

// The command line that deletes `snapshot`, or none when its name fails the check: for Time
// Machine, the date part (the fourth "."-piece) of digits and "-" only; for snapper, a number of
// digits only.
std::optional<std::string> snapshotDeletionCommand(const LocalSnapshot& snapshot,
                                                   const SnapshotTools& tools = {});

// Deletes `snapshot` as the administrator. None on success; otherwise the text to show.
std::optional<std::string> deleteLocalSnapshot(const LocalSnapshot& snapshot,
                                               const platform::ProcessRunner& run,
                                               const SnapshotTools& tools = {});

} // namespace dorvik
