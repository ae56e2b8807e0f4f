#pragma once

// Measuring what the system keeps for itself, place by place (system/SystemDataPlaces.h): the
// scan's size where the scan holds the place, else a walk of it; sorted, largest first.

#include "catalogue/Risk.h"
#include "scanning/FileNode.h"
#include "system/SystemDataPlaces.h"

#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace dorvik {

struct SystemDataPart {
    std::string id;
    std::string title;
    std::string explanation;
    std::string advice;
    int64_t size = 0;                // allocated bytes, those of the places inside it not counted
    std::optional<std::string> path; // the real path measured
    Risk risk = Risk::review;
    std::string symbol;

    bool operator==(const SystemDataPart&) const = default;
};

struct SystemDataOptions {
    // Where the places' absolute paths begin: empty for this computer's own; tests give a
    // temporary folder laid out like one.
    std::string filesystemRoot;
    std::span<const SystemDataPlace> places = systemDataPlaces();
    // How many places are measured at once.
    int concurrency = 8;
};

// The sizes the scan under `root` knows of the places, by the place's id. Reads the tree: run it
// where the tree may be read (the main thread), before measuring.
std::map<std::string, int64_t> sizesInScan(const FileNodePtr& root,
                                           const SystemDataOptions& options = {});

// The real path of `place`: under the data volume's prefix where that exists, else the place's
// own path.
std::string realPlacePath(const SystemDataPlace& place, const std::string& filesystemRoot);

// The parts, largest first, measured concurrently; a place that measures nothing (missing,
// unreadable, empty) is left out. A place that lies inside another is counted once, in its own
// part. Reads nothing of the program's state but `known`. Blocks: call it off the main thread.
std::vector<SystemDataPart> measureSystemData(const std::map<std::string, int64_t>& known,
                                              const SystemDataOptions& options = {});

} // namespace dorvik
