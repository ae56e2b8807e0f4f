#pragma once

// The low-space warning, with hysteresis: it warns once when the free space falls below the
// threshold, and may warn again only after the space has risen 2 GB above it, so that a disk
// hovering around the limit does not warn again and again.

#include <cstdint>
#include <optional>

namespace dorvik::LowSpace {

inline constexpr int64_t bytesPerGB = 1'000'000'000;
// How far above the threshold the free space must rise before the next fall warns again.
inline constexpr int64_t resetMargin = 2'000'000'000;

struct Decision {
    bool notified = false; // the flag to store: a warning stands
    bool warn = false;     // post the warning now
};

// `free` is the volume's available space (none when it could not be read); `thresholdGB` below 1
// turns the warning off whatever the flag says.
Decision check(std::optional<int64_t> free, int thresholdGB, bool notified);

// Whether `free` lies below a threshold that is on.
bool isLow(int64_t free, int thresholdGB);

} // namespace dorvik::LowSpace
