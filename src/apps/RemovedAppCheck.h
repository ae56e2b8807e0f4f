#pragma once

// How the removed-app watcher decides, without its folders and timers: the snapshot of the
// installed applications, which of them have gone between two snapshots, and what a gone one
// left in the Library. Plain functions; the watcher runs them off the main thread.

#include "apps/AppInventory.h"
#include "apps/InstalledApp.h"

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

namespace dorvik::RemovedAppCheck {

// Smaller remains aren't worth interrupting the user for (decimal).
inline constexpr int64_t smallestReport = 5'000'000;

// An application as the last snapshot saw it.
struct Known {
    std::string name;
    std::string bundleID;

    bool operator==(const Known&) const = default;
};

// The applications by bundle path. Apple's, this program's own and those without an identifier
// are left out: their going is never reported.
using Snapshot = std::map<std::string, Known>;

Snapshot takeSnapshot(const std::vector<std::string>& bundlePaths);
// Of the bundles in the application roots.
Snapshot takeSnapshot();

struct GoneApp {
    std::string path; // where the bundle was
    Known app;

    bool operator==(const GoneApp&) const = default;
};

// The applications of `before` that are gone in `after`, in path order: the path is not there any
// more, no application of `after` has the identifier (else it was moved or renamed), and the
// system knows of none elsewhere.
std::vector<GoneApp>
goneApps(const Snapshot& before, const Snapshot& after,
         const std::function<bool(const std::string& bundleID)>& knownToSystem);

// The Library entries of a gone application, sized by `measure`, largest first.
RemovedApp leftBehind(const GoneApp& gone, const std::vector<AppInventory::LibraryEntry>& entries,
                      const std::function<int64_t(const std::string& path)>& measure);

// Whether what an application left is worth a report.
bool isWorthReporting(const RemovedApp& removed);

// The whole comparison: a report for each gone application that left enough, in path order.
// `entries` is read only when something has gone.
struct Probes {
    std::function<bool(const std::string& bundleID)> knownToSystem;
    std::function<std::vector<AppInventory::LibraryEntry>()> libraryEntries;
    std::function<int64_t(const std::string& path)> measure;
};

std::vector<RemovedApp> reports(const Snapshot& before, const Snapshot& after,
                                const Probes& probes);

// The system's answers: the application roots searched for the identifier, this user's Library,
// and the walk of Measure folder.
Probes systemProbes();

} // namespace dorvik::RemovedAppCheck
