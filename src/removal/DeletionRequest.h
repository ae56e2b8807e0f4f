#pragma once

// What the removal engine is asked to do, and what it answers: one request per item, a report per
// run.

#include "catalogue/Removal.h"

#include <cstdint>
#include <string>
#include <vector>

namespace dorvik {

struct DeletionRequest {
    std::string id;   // a new UUID for each request
    std::string path; // absolute
    // What the item counts for, as the scan measured it; the engine adds these up and never
    // measures anything itself.
    int64_t size = 0;
    Removal removal = Removal::trash;

    bool operator==(const DeletionRequest&) const = default;
};

// A request with a new id.
DeletionRequest makeDeletionRequest(std::string path, int64_t size, Removal removal);

struct DeletionFailure {
    std::string id; // a new UUID for each failure
    std::string path;
    std::string reason; // a sentence for the user

    bool operator==(const DeletionFailure&) const = default;
};

struct DeletionReport {
    int64_t freed = 0;        // the sizes of what was deleted for good
    int64_t movedToTrash = 0; // the sizes of what went to the Trash: not free space yet
    std::vector<std::string> deletedPaths;         // all that went, either way, in request order
    std::vector<DeletionFailure> failures;         // what the file system refused
    std::vector<DeletionFailure> skippedProtected; // what the safety rules refused
    // Failures of which a part went all the same (a folder emptied in part): not "nothing".
    std::vector<std::string> partlyDeletedPaths;

    bool operator==(const DeletionReport&) const = default;
};

} // namespace dorvik
