#pragma once

// How often the safe junk is cleaned without asking: stored under "cleanSchedule" as its raw
// value. A raw value the program does not know, or none, means off.

#include <array>
#include <optional>
#include <string>
#include <string_view>

namespace dorvik {

enum class CleanSchedule { off, daily, weekly, monthly };

inline constexpr std::array allCleanSchedules = {CleanSchedule::off, CleanSchedule::daily,
                                                 CleanSchedule::weekly, CleanSchedule::monthly};

std::string_view rawValue(CleanSchedule schedule);
CleanSchedule cleanScheduleFromRaw(std::string_view raw);

// "Off", "Every day", "Every week", "Every month".
std::string_view label(CleanSchedule schedule);

// The least number of seconds between two runs; none for off.
std::optional<double> minimumInterval(CleanSchedule schedule);

// Whether a clean is due at `now`: never when off, at once when it never ran, else once the
// schedule's interval has passed since `lastRun` (seconds since 1970 both).
bool isCleanDue(CleanSchedule schedule, std::optional<double> lastRun, double now);

} // namespace dorvik
