#include "base/LocalTime.h"

#include <cmath>
#include <ctime>

namespace dorvik {

std::optional<LocalDate> localDate(double secondsSince1970) {
    // A year-10000 limit keeps the conversion to time_t defined and the year in an int.
    constexpr double latest = 253402300799.0; // 9999-12-31 23:59:59 UTC
    if (!std::isfinite(secondsSince1970) || std::fabs(secondsSince1970) > latest) {
        return std::nullopt;
    }
    const auto moment = static_cast<time_t>(std::floor(secondsSince1970));
    struct tm fields {};
    if (localtime_r(&moment, &fields) == nullptr) {
        return std::nullopt;
    }
    return LocalDate{fields.tm_year + 1900, fields.tm_mon + 1, fields.tm_mday, fields.tm_hour,
                     fields.tm_min};
}

std::optional<double> momentOfLocalDate(const LocalDate& date, int second) {
    struct tm fields {};
    fields.tm_year = date.year - 1900;
    fields.tm_mon = date.month - 1;
    fields.tm_mday = date.day;
    fields.tm_hour = date.hour;
    fields.tm_min = date.minute;
    fields.tm_sec = second;
    fields.tm_isdst = -1; // the zone's rules decide
    const struct tm asked = fields;
    const time_t moment = mktime(&fields);
    // mktime carries an out-of-range field into the next one; a date that moved was not valid.
    // (A time skipped by a change to summer time moves too, and is refused with them.)
    if (moment == static_cast<time_t>(-1) || fields.tm_year != asked.tm_year ||
        fields.tm_mon != asked.tm_mon || fields.tm_mday != asked.tm_mday ||
        fields.tm_hour != asked.tm_hour || fields.tm_min != asked.tm_min ||
        fields.tm_sec != asked.tm_sec) {
        return std::nullopt;
    }
    return static_cast<double>(moment);
}

} // namespace dorvik
