#pragma once

// When a scan no longer tells the disk as it is: a day after it finished. The toolbar, the
// Overview page and the background timer all ask this one test.

#include "scanning/ScanResult.h"

#include <optional>

namespace dorvik {

inline constexpr double staleScanAge = 86400.0; // seconds

// A running rescan is never stale: its result is on the way.
inline bool isScanStale(const std::optional<ScanResult>& scan, bool isScanning, double now) {
    return scan && !isScanning && now - scan->finishedAt > staleScanAge;
}

} // namespace dorvik
