#pragma once

// Moments (seconds since 1970) as the calendar of the user's time zone shows them.

#include <optional>

namespace dorvik {

struct LocalDate {
    int year = 0;
    int month = 0; // 1 to 12
    int day = 0;   // 1 to 31
    int hour = 0;  // 0 to 23
    int minute = 0;
};

// None for a moment the calendar cannot place (not finite, or beyond what time_t holds).
std::optional<LocalDate> localDate(double secondsSince1970);

// The moment the calendar of the user's time zone shows as the given date and time; none when
// a field is out of its range (a 31st of April, a 25th hour) or the moment cannot be placed.
std::optional<double> momentOfLocalDate(const LocalDate& date, int second);

} // namespace dorvik
