#include "background/CleanSchedule.h"

namespace dorvik {

namespace {

struct ScheduleInfo {
    CleanSchedule schedule;
    std::string_view raw;
    std::string_view label;
    double interval; // seconds; 0 for off
};

constexpr std::array<ScheduleInfo, 4> schedules = {{
    {CleanSchedule::off, "off", "Off", 0},
    {CleanSchedule::daily, "daily", "Every day", 86'400},
    {CleanSchedule::weekly, "weekly", "Every week", 604'800},
    {CleanSchedule::monthly, "monthly", "Every month", 2'592'000},
}};

const ScheduleInfo& info(CleanSchedule schedule) {
    return schedules[static_cast<size_t>(schedule)];
}

} // namespace

std::string_view rawValue(CleanSchedule schedule) {
    return info(schedule).raw;
}

CleanSchedule cleanScheduleFromRaw(std::string_view raw) {
    for (const ScheduleInfo& row : schedules) {
        if (row.raw == raw) {
            return row.schedule;
        }
    }
    return CleanSchedule::off;
}

std::string_view label(CleanSchedule schedule) {
    return info(schedule).label;
}

std::optional<double> minimumInterval(CleanSchedule schedule) {
    if (schedule == CleanSchedule::off) {
        return std::nullopt;
    }
    return info(schedule).interval;
}

bool isCleanDue(CleanSchedule schedule, std::optional<double> lastRun, double now) {
    const std::optional<double> interval = minimumInterval(schedule);
    if (!interval) {
        return false;
    }
    return !lastRun || now - *lastRun >= *interval;
}

} // namespace dorvik
