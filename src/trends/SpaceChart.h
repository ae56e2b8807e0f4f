#pragma once

// What the chart of used space draws: the history thinned to about 150 points, the dashed
// projection of the forecast, and the range of the value axis. Geometry only; a view draws it.

#include "trends/Forecast.h"
#include "trends/SpaceSample.h"

#include <cstdint>
#include <vector>

namespace dorvik::SpaceChart {

struct Point {
    double date = 0; // seconds since 1970
    double used = 0;

    bool operator==(const Point&) const = default;
};

struct Data {
    std::vector<Point> history;
    std::vector<Point> projection; // none, or its start and its end
    double axisBottom = 0;
    double axisTop = 1;
    // The projection ends at the disk's size: the chart draws a "Disk full" rule at `total`.
    bool reachesDisk = false;
};

inline constexpr size_t pointBudget = 150;

// Every stride-th sample (stride = count / 150 from 150 samples on), and the last one always.
std::vector<Point> thinnedHistory(const std::vector<SpaceSample>& samples);

// From just after the last point to the horizon (daysLeft, but at most the larger of 14 days
// and 1.5 spans), capped at the disk's size. None without daysLeft or points.
std::vector<Point> projection(const std::vector<Point>& history,
                              const std::optional<SpaceForecast>& forecast, int64_t total);

Data chartData(const std::vector<SpaceSample>& samples,
               const std::optional<SpaceForecast>& forecast, int64_t total);

} // namespace dorvik::SpaceChart
