#include "base/TextForms.h"

#include "base/Dates.h"
#include "base/LocalTime.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <limits>
#include <string_view>

namespace dorvik::TextForms {

namespace {

struct Unit {
    std::string_view name;
    int64_t bytes;
    int decimals;
};

constexpr std::array<Unit, 4> units = {{
    {"KB", 1'000, 0},
    {"MB", 1'000'000, 1},
    {"GB", 1'000'000'000, 2},
    {"TB", 1'000'000'000'000, 2},
}};

constexpr std::array<std::string_view, 12> monthAbbreviations = {
    "Jan", "Feb", "Mar", "Apr", "May", "Jun", "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};

constexpr std::string_view minusSign = "\u2212";
constexpr std::string_view noDate = "\u2014";

int64_t powerOfTen(int exponent) {
    int64_t result = 1;
    for (int i = 0; i < exponent; ++i) {
        result *= 10;
    }
    return result;
}

std::string groupThousands(std::string digits) {
    const size_t firstDigit = (!digits.empty() && digits[0] == '-') ? 1 : 0;
    for (size_t i = digits.size(); i > firstDigit + 3; i -= 3) {
        digits.insert(i - 3, 1, ',');
    }
    return digits;
}

// `bytes` divided by `step`, halves rounded up, in exact integer arithmetic.
int64_t roundedQuotient(int64_t bytes, int64_t step) {
    return bytes / step + ((bytes % step) * 2 >= step ? 1 : 0);
}

// A count of hundredths (say) as "12.3": the whole part grouped, trailing zeros dropped.
std::string fixedPointText(int64_t scaled, int decimals) {
    const int64_t scale = powerOfTen(decimals);
    std::string text = groupThousands(std::to_string(scaled / scale));
    if (decimals == 0) {
        return text;
    }
    std::string fraction = std::to_string(scaled % scale);
    fraction.insert(0, static_cast<size_t>(decimals) - fraction.size(), '0');
    while (!fraction.empty() && fraction.back() == '0') {
        fraction.pop_back();
    }
    return fraction.empty() ? text : text + "." + fraction;
}

// Days since 1970-01-01 of a date in the proleptic Gregorian calendar.
int64_t dayNumber(const LocalDate& date) {
    const int64_t year = date.month <= 2 ? date.year - 1 : date.year;
    const int64_t era = (year >= 0 ? year : year - 399) / 400;
    const int64_t yearOfEra = year - era * 400;
    const int64_t monthFromMarch = date.month > 2 ? date.month - 3 : date.month + 9;
    const int64_t dayOfYear = (153 * monthFromMarch + 2) / 5 + date.day - 1;
    const int64_t dayOfEra = yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear;
    return era * 146097 + dayOfEra - 719468;
}

// "last week", "3 weeks ago", "next week", "in 3 weeks".
std::string relativeCount(int64_t amount, bool past, std::string_view unit) {
    if (amount == 1) {
        return std::string(past ? "last " : "next ") + std::string(unit);
    }
    const std::string counted = std::to_string(amount) + " " + std::string(unit) + "s";
    return past ? counted + " ago" : "in " + counted;
}

} // namespace

std::string size(int64_t bytes) {
    if (bytes <= 0) {
        return "Zero KB";
    }
    for (size_t i = 0; i < units.size(); ++i) {
        const Unit& unit = units[i];
        const int64_t scale = powerOfTen(unit.decimals);
        int64_t scaled = roundedQuotient(bytes, unit.bytes / scale);
        // A size that rounds up to a thousand of one unit is shown in the next.
        if (scaled >= 1000 * scale && i + 1 < units.size()) {
            continue;
        }
        if (scaled == 0) {
            scaled = scale;
        }
        return fixedPointText(scaled, unit.decimals) + " " + std::string(unit.name);
    }
    return {};
}

std::string signedSize(int64_t bytes) {
    if (bytes >= 0) {
        return "+" + size(bytes);
    }
    const int64_t magnitude =
        bytes == std::numeric_limits<int64_t>::min() ? std::numeric_limits<int64_t>::max() : -bytes;
    return std::string(minusSign) + size(magnitude);
}

std::string percent(double part, double whole) {
    if (whole < 1.0) {
        return "0%";
    }
    const double fraction = part / whole;
    if (fraction < 0.001 && part >= 1.0) {
        return "<0.1%";
    }
    char buffer[400];
    std::snprintf(buffer, sizeof buffer, fraction < 0.1 ? "%.1f" : "%.0f", fraction * 100.0);
    std::string number = buffer;
    const size_t point = number.find('.');
    const std::string decimals = point == std::string::npos ? "" : number.substr(point);
    return groupThousands(number.substr(0, point)) + decimals + "%";
}

std::string count(int64_t value) {
    return groupThousands(std::to_string(value));
}

std::string counted(int64_t value, std::string_view one, std::string_view many) {
    return count(value) + " " + std::string(value == 1 ? one : many);
}

std::string relativeDate(double date, double now) {
    if (!(date > Dates::neverMarker)) {
        return std::string(noDate);
    }
    const auto then = localDate(date);
    const auto today = localDate(now);
    if (!then || !today) {
        return std::string(noDate);
    }
    const int64_t days = dayNumber(*then) - dayNumber(*today);
    const bool past = days < 0;
    const int64_t distance = past ? -days : days;
    if (distance == 0) {
        return "today";
    }
    if (distance == 1) {
        return past ? "yesterday" : "tomorrow";
    }
    if (distance < 7) {
        return relativeCount(distance, past, "day");
    }
    if (distance < 30) {
        return relativeCount(distance / 7, past, "week");
    }
    if (distance < 365) {
        // 360 to 364 days are still under a year.
        return relativeCount(std::min<int64_t>(distance / 30, 11), past, "month");
    }
    return relativeCount(distance / 365, past, "year");
}

std::string abbreviatedDate(double date) {
    if (!(date > Dates::neverMarker)) {
        return std::string(noDate);
    }
    const auto local = localDate(date);
    if (!local) {
        return std::string(noDate);
    }
    return std::string(monthAbbreviations[static_cast<size_t>(local->month - 1)]) + " " +
           std::to_string(local->day) + ", " + std::to_string(local->year);
}

std::string abbreviatedDateTime(double date) {
    const std::string day = abbreviatedDate(date);
    const auto local = localDate(date);
    if (day == noDate || !local) {
        return day;
    }
    const int hour = local->hour % 12 == 0 ? 12 : local->hour % 12;
    const std::string minute = (local->minute < 10 ? "0" : "") + std::to_string(local->minute);
    return day + " at " + std::to_string(hour) + ":" + minute + (local->hour < 12 ? " AM" : " PM");
}

std::string iso8601(double date) {
    using namespace std::chrono;
    // Years 1 to 9999, the calendar's four digits; beyond them the nearest end.
    constexpr double first = -62135596800.0;
    constexpr double last = 253402300799.0;
    const double clamped = std::isnan(date) ? 0 : std::clamp(std::floor(date), first, last);
    const sys_seconds seconds(sys_seconds::duration(static_cast<int64_t>(clamped)));
    const auto day = floor<days>(seconds);
    const year_month_day calendar(day);
    const hh_mm_ss<sys_seconds::duration> time(seconds - day);
    char text[40];
    std::snprintf(text, sizeof text, "%04d-%02u-%02uT%02d:%02d:%02dZ", int(calendar.year()),
                  unsigned(calendar.month()), unsigned(calendar.day()), int(time.hours().count()),
                  int(time.minutes().count()), int(time.seconds().count()));
    return text;
}

std::string durationPhrase(double days) {
    if (days < 1) {
        return "less than a day";
    }
    if (days < 60) {
        return "about " + std::to_string(std::llround(days)) + " days";
    }
    if (days < 730) {
        return "about " + std::to_string(std::llround(days / 30)) + " months";
    }
    return "more than 2 years";
}

} // namespace dorvik::TextForms
