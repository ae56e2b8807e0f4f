#pragma once

// What the forecast card says, decided in one place for every place that shows it (the Trends
// page, the tray's panel, the terminal): the forecast in words when there is one, else how far
// the learning has come.

#include "system/VolumeInfo.h"
#include "trends/Forecast.h"
#include "trends/SpaceSample.h"

#include <optional>
#include <string>
#include <vector>

namespace dorvik {

struct ForecastCardContent {
    std::optional<SpaceForecast> forecast;
    // The forecast in words; none in the learning state.
    std::optional<ForecastSummary> summary;
    // In the learning state: the days learned, out of the 2 a forecast needs.
    double learnedDays = 0;
    // The chart of used space is worth drawing: two samples at least and a known volume.
    bool showsChart = false;
};

// `volume` is the volume of "/" now; without it there is no forecast, however many samples.
ForecastCardContent forecastCard(const std::vector<SpaceSample>& samples,
                                 const std::optional<VolumeInfo>& volume, double now);

} // namespace dorvik
