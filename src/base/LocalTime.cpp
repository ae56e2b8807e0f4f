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

} // namespace dorvik
