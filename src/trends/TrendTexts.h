#pragma once

// The words of the trends, shared by the page and the terminal.

#include "trends/SnapshotChanges.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace dorvik::TrendTexts {

inline constexpr std::string_view learningTitle = "Learning how your disk fills up";
inline constexpr std::string_view learningText =
    "Dorvik notes your free space about once an hour while it\u2019s open or in the menu bar. "
    "After two days it can estimate when the disk would fill up.";

inline constexpr std::string_view changesTitle = "What changed";
inline constexpr std::string_view noHistoryText =
    "Dorvik remembers each scan. After the second one you\u2019ll see exactly which folders grew "
    "in between.";
inline constexpr std::string_view noFolderChangeText =
    "No folder changed by more than 100 MB between these two scans.";

// For a root with a single snapshot, taken at `date`.
std::string firstMeasurementText(double date, double now);

// "Since yesterday": the baseline of the comparison.
std::string sinceText(double olderDate, double now);

// "from 120.5 GB to 123.7 GB scanned", after the signed change of the total.
std::string scannedRangeText(const ScanSnapshot& older, const ScanSnapshot& newer);

// The folder's last component ("/" for the root); "Other items in " before it for a remainder.
std::string folderRowTitle(const FolderChange& change);

// "New" for a folder that was not there, "Removed" for one that is gone; remainders have none.
std::optional<std::string> folderRowBadge(const FolderChange& change);

inline constexpr std::string_view teaserAction = "See what changed";

// The Overview's line about the last two scans of a root (`history` newest first): "Since the
// scan 3 days ago: +1.2 GB". None with fewer than two.
std::optional<std::string> teaserText(const std::vector<ScanSnapshot>& history, double now);

} // namespace dorvik::TrendTexts
