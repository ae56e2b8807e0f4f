#pragma once

// How big the disk is and how much of it is free.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace dorvik {

struct VolumeInfo {
    std::string name;
    int64_t total = 0;     // bytes
    int64_t available = 0; // free bytes, purgeable space not counted
    // Free bytes with what the system would purge on demand; Linux purges nothing, so this is
    // `available` there.
    int64_t availableForImportantUsage = 0;

    // May come out negative; the size text form shows that as zero.
    int64_t purgeable() const { return availableForImportantUsage - available; }
};

// The name shown when the volume has no name of its own.
inline constexpr std::string_view fallbackVolumeName = "Macintosh HD";

// The volume that holds `path` (every caller passes "/"); none when it cannot be read.
std::optional<VolumeInfo> volumeInfo(const std::string& path);

} // namespace dorvik
