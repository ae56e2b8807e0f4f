#include "system/LocalSnapshots.h"

#include "base/LocalTime.h"
#include "base/TextForms.h"
#include "platform/Privileged.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace dorvik {

namespace {

constexpr std::string_view timeMachinePrefix = "com.apple.";
constexpr std::string_view blanks = " \t\r\n";

std::string_view trimmed(std::string_view text) {
    const size_t first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

std::vector<std::string_view> split(std::string_view text, char separator, bool dropEmpty) {
    std::vector<std::string_view> pieces;
    size_t start = 0;
    while (start <= text.size()) {
        size_t end = text.find(separator, start);
        if (end == std::string_view::npos) {
            end = text.size();
        }
        const std::string_view piece = text.substr(start, end - start);
        if (!piece.empty() || !dropEmpty) {
            pieces.push_back(piece);
        }
        start = end + 1;
    }
    return pieces;
}

bool allOf(std::string_view text, std::string_view allowed) {
    return !text.empty() && text.find_first_not_of(allowed) == std::string_view::npos;
}

constexpr std::string_view digits = "0123456789";

// Reads `length` digits at `offset`; none when any is not a digit.
std::optional<int> number(std::string_view text, size_t offset, size_t length) {
    if (offset + length > text.size() || !allOf(text.substr(offset, length), digits)) {
        return std::nullopt;
    }
    int value = 0;
    std::from_chars(text.data() + offset, text.data() + offset + length, value);
    return value;
}

// A date in the local time zone from fixed positions of `text`; `at` gives the offsets of year,
// month, day, hour, minute and second, with `separators` (offset, character) in between.
struct DateShape {
    size_t length;
    std::array<size_t, 6> at;
    std::array<std::pair<size_t, char>, 5> separators;
};

// "yyyy-MM-dd-HHmmss", as tmutil names its snapshots.
constexpr DateShape timeMachineShape{17, {0, 5, 8, 11, 13, 15}, {{{4, '-'}, {7, '-'}, {10, '-'}}}};
// "yyyy-MM-dd HH:mm:ss", as snapper writes its dates.
constexpr DateShape snapperShape{
    19, {0, 5, 8, 11, 14, 17}, {{{4, '-'}, {7, '-'}, {10, ' '}, {13, ':'}, {16, ':'}}}};

std::optional<double> parsedDate(std::string_view text, const DateShape& shape) {
    if (text.size() != shape.length) {
        return std::nullopt;
    }
    for (const auto& [offset, character] : shape.separators) {
        if (character != '\0' && text[offset] != character) {
            return std::nullopt;
        }
    }
    const auto year = number(text, shape.at[0], 4);
    const auto month = number(text, shape.at[1], 2);
    const auto day = number(text, shape.at[2], 2);
    const auto hour = number(text, shape.at[3], 2);
    const auto minute = number(text, shape.at[4], 2);
    const auto second = number(text, shape.at[5], 2);
    if (!year || !month || !day || !hour || !minute || !second) {
        return std::nullopt;
    }
    return momentOfLocalDate(LocalDate{*year, *month, *day, *hour, *minute}, *second);
}

// The fourth "."-piece of a Time Machine name, where the tool puts the date.
std::optional<std::string_view> timeMachineDatePart(std::string_view name) {
    const std::vector<std::string_view> pieces = split(name, '.', true);
    if (pieces.size() <= 3) {
        return std::nullopt;
    }
    return pieces[3];
}

std::string_view keeperTool(SnapshotKeeper keeper, const SnapshotTools& tools) {
    return keeper == SnapshotKeeper::timeMachine ? tools.tmutil : tools.snapper;
}

} // namespace

std::string snapshotTitle(const LocalSnapshot& snapshot) {
    const std::string date = snapshot.date ? TextForms::abbreviatedDateTime(*snapshot.date) : "";
    if (snapshot.keeper == SnapshotKeeper::snapper) {
        return "Snapshot " + snapshot.name + (date.empty() ? "" : ", " + date);
    }
    return date.empty() ? snapshot.name : date;
}

void sortNewestFirst(std::vector<LocalSnapshot>& snapshots) {
    std::ranges::stable_sort(snapshots, [](const LocalSnapshot& a, const LocalSnapshot& b) {
        if (!b.date) {
            return a.date.has_value();
        }
        return a.date && *a.date > *b.date;
    });
}

std::vector<LocalSnapshot> parseTimeMachineListing(std::string_view output) {
    std::vector<LocalSnapshot> snapshots;
    for (std::string_view line : split(output, '\n', true)) {
        line = trimmed(line);
        if (!line.starts_with(timeMachinePrefix)) {
            continue;
        }
        std::optional<double> date;
        if (auto part = timeMachineDatePart(line)) {
            date = parsedDate(*part, timeMachineShape);
        }
        snapshots.push_back({std::string(line), date, SnapshotKeeper::timeMachine});
    }
    sortNewestFirst(snapshots);
    return snapshots;
}

std::vector<LocalSnapshot> parseSnapperListing(std::string_view output) {
    std::vector<LocalSnapshot> snapshots;
    for (std::string_view line : split(output, '\n', true)) {
        const std::vector<std::string_view> fields = split(trimmed(line), ',', false);
        const std::string_view number = trimmed(fields[0]);
        if (!allOf(number, digits) || number.find_first_not_of('0') == std::string_view::npos) {
            continue; // the header, or snapshot 0
        }
        std::optional<double> date;
        if (fields.size() > 1) {
            date = parsedDate(trimmed(fields[1]), snapperShape);
        }
        snapshots.push_back({std::string(number), date, SnapshotKeeper::snapper});
    }
    sortNewestFirst(snapshots);
    return snapshots;
}

std::vector<LocalSnapshot> listLocalSnapshots(const SnapshotTools& tools) {
    std::vector<LocalSnapshot> snapshots;
    if (platform::isExecutable(tools.tmutil)) {
        snapshots =
            parseTimeMachineListing(platform::runTool(tools.tmutil, {"listlocalsnapshots", "/"}));
    }
    if (platform::isExecutable(tools.snapper)) {
        std::vector<LocalSnapshot> kept = parseSnapperListing(
            platform::runTool(tools.snapper, {"--csvout", "list", "--columns", "number,date"}));
        snapshots.insert(snapshots.end(), kept.begin(), kept.end());
        sortNewestFirst(snapshots);
    }
    return snapshots;
}

std::optional<std::string> snapshotDeletionCommand(const LocalSnapshot& snapshot,
                                                   const SnapshotTools& tools) {
    const std::string tool(keeperTool(snapshot.keeper, tools));
    if (snapshot.keeper == SnapshotKeeper::timeMachine) {
        const auto part = timeMachineDatePart(snapshot.name);
        if (!part || !allOf(*part, "0123456789-")) {
            return std::nullopt;
        }
        return tool + " deletelocalsnapshots " + std::string(*part);
    }
    if (!allOf(snapshot.name, digits)) {
        return std::nullopt;
    }
    return tool + " delete " + snapshot.name;
}

std::optional<std::string> deleteLocalSnapshot(const LocalSnapshot& snapshot,
                                               const platform::ProcessRunner& run,
                                               const SnapshotTools& tools) {
    const std::optional<std::string> command = snapshotDeletionCommand(snapshot, tools);
    if (!command) {
        return std::string(unrecognisedSnapshotMessage);
    }
    return platform::runPrivileged(*command, snapshotFailureMessage, run);
}

} // namespace dorvik
