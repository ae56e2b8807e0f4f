#pragma once

// What to do first after a scan: a fixed list of rules over the scan, the junk findings and the
// developer artifacts, each with a size threshold, ordered by what it would free. Plain values in,
// plain values out: the Overview and the terminal show the same list, and the state carries out
// each row's action by its id.

#include "cleaning/JunkFinding.h"
#include "scanning/FileFilter.h"
#include "scanning/ScanResult.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace dorvik {

namespace RecommendationIds {
inline constexpr std::string_view junk = "junk";
inline constexpr std::string_view trash = "trash";
inline constexpr std::string_view installers = "installers";
inline constexpr std::string_view backups = "backups";
inline constexpr std::string_view oldLargeFiles = "oldbig";
inline constexpr std::string_view developer = "dev";
inline constexpr std::string_view downloads = "downloads";
} // namespace RecommendationIds

namespace RecommendationLimits {
inline constexpr int64_t junk = 50'000'000;       // safe junk and the Trash, above this
inline constexpr int64_t backups = 1'000'000'000; // device backups, above this
inline constexpr int64_t developer = 1'000'000'000;
inline constexpr int64_t downloads = 2'000'000'000;
// A file at least this large, unchanged for at least this long, in the home folder.
inline constexpr int64_t oldLargeFileSize = 500'000'000;
inline constexpr int oldLargeFileDays = 180;
} // namespace RecommendationLimits

struct Recommendation {
    std::string id; // one of RecommendationIds
    std::string symbol;
    // "#RRGGBB"; none for the theme's amber status colour.
    std::optional<std::string> colour;
    std::string title;
    std::string detail;
    int64_t size = 0; // bytes at stake; the sort key
    // What the action works on: the items a plan would hold ("trash", "installers"), the folder
    // to open ("downloads").
    std::vector<JunkItem> items;
    std::string folder;
};

struct RecommendationSources {
    const ScanResult* scan = nullptr; // none: the rules that need a scan add nothing
    std::vector<JunkFinding> junk;
    int64_t developerArtifacts = 0; // the bytes of every developer artifact found
    std::string home;               // the home folder, without a trailing slash
    double now = 0;                 // seconds since 1970
};

// The rows whose test passes, largest first; equal sizes keep the rules' order.
std::vector<Recommendation> recommendations(const RecommendationSources& sources);

// The scan's files still there of at least 500 MB, unchanged for at least 180 days, in the home
// folder but not in its Library.
std::vector<FileNodePtr> oldLargeFiles(const ScanResult& scan, std::string_view home, double now);

// The large-files filter that shows those files: the home folder, 500 MB and 180 days.
FileFilter oldLargeFilesFilter(std::string_view home);

} // namespace dorvik
