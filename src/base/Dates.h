#pragma once

// Moments in the program are seconds since 1970-01-01 00:00:00 UTC, as doubles. The JSON files
// count from 2001-01-01 00:00:00 UTC instead, the reference date of the format they share.

#include <chrono>

namespace dorvik::Dates {

inline constexpr double referenceDateSince1970 = 978307200.0;

// Anything up to one day after 1970 marks "never" and is shown as "—".
inline constexpr double neverMarker = 86400.0;

inline constexpr double secondsPerDay = 86400.0;

inline double now() {
    return std::chrono::duration<double>(std::chrono::system_clock::now().time_since_epoch())
        .count();
}

inline constexpr double toReferenceDate(double secondsSince1970) {
    return secondsSince1970 - referenceDateSince1970;
}

inline constexpr double fromReferenceDate(double secondsSince2001) {
    return secondsSince2001 + referenceDateSince1970;
}

} // namespace dorvik::Dates
