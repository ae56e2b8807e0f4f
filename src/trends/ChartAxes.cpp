#include "trends/ChartAxes.h"

#include "base/Dates.h"
#include "base/LocalTime.h"
#include "base/TextForms.h"

#include <algorithm>
#include <cmath>

namespace dorvik::SpaceChart {

namespace {

constexpr int sizeSteps = 4;

// "Mar 5": the abbreviated date without its year.
std::string dayLabel(double moment) {
    const std::string date = TextForms::abbreviatedDate(moment);
    return date.substr(0, date.find(','));
}

// The local midnight that begins the day of `moment`.
std::optional<double> midnightOf(double moment) {
    const auto local = localDate(moment);
    if (!local) {
        return std::nullopt;
    }
    return momentOfLocalDate({local->year, local->month, local->day, 0, 0}, 0);
}

// A day and a half after a midnight is in the next day, whatever the clocks did in between.
constexpr double intoNextDay = 1.5 * Dates::secondsPerDay;

// The first local midnight at or after `moment`.
std::optional<double> midnightFrom(double moment) {
    const auto midnight = midnightOf(moment);
    if (!midnight || *midnight >= moment) {
        return midnight;
    }
    return midnightOf(*midnight + intoNextDay);
}

std::vector<Tick> dayTicks(double start, double end, size_t labels) {
    std::vector<Tick> ticks;
    if (labels == 0) {
        return ticks;
    }
    const double days = (end - start) / Dates::secondsPerDay;
    const double stride = std::max(1.0, std::ceil(days / static_cast<double>(labels)));
    for (auto day = midnightFrom(start); day && *day <= end && ticks.size() < labels;
         day = midnightOf(*day + (stride - 1) * Dates::secondsPerDay + intoNextDay)) {
        ticks.push_back({*day, dayLabel(*day)});
    }
    return ticks;
}

} // namespace

std::vector<double> roundSteps(double bottom, double top, int wanted) {
    std::vector<double> values;
    if (!(top > bottom) || wanted < 1) {
        return values;
    }
    const double rough = (top - bottom) / wanted;
    const double power = std::pow(10.0, std::floor(std::log10(rough)));
    double step = 10 * power;
    for (double factor : {1.0, 2.0, 2.5, 5.0}) {
        if (factor * power >= rough) {
            step = factor * power;
            break;
        }
    }
    for (double value = std::ceil(bottom / step) * step; value <= top; value += step) {
        values.push_back(value);
    }
    return values;
}

Axes axes(const Data& data, size_t dateLabels) {
    Axes result;
    if (!data.history.empty()) {
        result.start = data.history.front().date;
        result.end =
            data.projection.empty() ? data.history.back().date : data.projection.back().date;
        if (!(result.end > result.start)) {
            result.start -= Dates::secondsPerDay;
            result.end += Dates::secondsPerDay;
        }
    }
    result.dates = dayTicks(result.start, result.end, dateLabels);
    for (double size : roundSteps(data.axisBottom, data.axisTop, sizeSteps)) {
        result.sizes.push_back({size, TextForms::size(static_cast<int64_t>(size))});
    }
    return result;
}

} // namespace dorvik::SpaceChart
