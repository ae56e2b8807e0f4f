#pragma once

// The program's long memory: one snapshot per finished scan and one sample of used space per
// hour, kept in "scans.json" and "space.json", which the application, dorvik-cli and the
// background tick share. Every change is made under the file's lock to what the file holds at
// that moment, then the file is rewritten whole and atomically and the list in memory becomes
// what was written; every file error is swallowed, leaving the lists in memory as they are.

#include "system/VolumeInfo.h"
#include "trends/ScanSnapshot.h"
#include "trends/SpaceSample.h"
#include "trends/TrendFiles.h"

#include <optional>
#include <string>
#include <vector>

namespace dorvik {

class TrendStore {
public:
    // Two snapshots of one root closer than this count as one: the newer replaces the older.
    static constexpr double replaceInterval = 3600;
    static constexpr size_t snapshotsPerRoot = 30;
    // A sample is taken only when the last one is at least this old.
    static constexpr double sampleSpacing = 3600;
    static constexpr double sampleAgeLimit = 10'368'000; // 120 days
    // Beyond this many snapshots of all roots, the oldest go.
    static constexpr size_t maximumSnapshots = TrendFiles::maximumSnapshots;

    // Keeps its files in `directory`, by default the application-support folder. Makes the
    // folder and loads both files; a file that is missing or fails to decode leaves its list
    // empty.
    explicit TrendStore(std::optional<std::string> directory = std::nullopt);

    // All snapshots of all roots, in the order they were added.
    const std::vector<ScanSnapshot>& snapshots() const { return snapshots_; }
    // All samples, oldest first.
    const std::vector<SpaceSample>& samples() const { return samples_; }
    const std::string& directory() const { return directory_; }

    // Reads both files again, as another process may have changed them. True when a list
    // changed.
    bool reload();

    // Adds the snapshot (a rescan within the hour replaces the root's newest, a root keeps its
    // newest 30, and all roots together the newest 300), then writes "scans.json".
    void record(ScanSnapshot snapshot);

    // Adds a sample of `volume` at `now` unless the last is less than an hour old, drops those
    // older than 120 days, then writes "space.json". No volume, no sample.
    void recordSample(const std::optional<VolumeInfo>& volume, double now);

    // The snapshots of `root` (a canonical path), newest first.
    std::vector<ScanSnapshot> history(const std::string& root) const;

    // The root of the newest snapshot of any root; none without snapshots.
    std::optional<std::string> latestRoot() const;

private:
    void removeSnapshots(const std::vector<std::string>& ids);
    std::string snapshotsPath() const;
    std::string samplesPath() const;

    std::string directory_;
    std::vector<ScanSnapshot> snapshots_;
    std::vector<SpaceSample> samples_;
};

} // namespace dorvik
