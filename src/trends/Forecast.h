#pragma once

// When the disk would fill up at the current pace: a least-squares line through the recent
// samples of used space, and the words that tell it.

#include "trends/SpaceSample.h"

#include <optional>
#include <string>
#include <vector>

namespace dorvik {

struct SpaceForecast {
    double bytesPerDay = 0;         // slope of the line; may be zero or negative
    double spanDays = 0;            // between the first and the last sample fitted
    std::optional<double> daysLeft; // none when the disk is not filling up

    bool operator==(const SpaceForecast&) const = default;
};

enum class Tint { green, amber, red };

struct ForecastSummary {
    std::string title;
    std::string detail;
    std::string symbol; // a system icon name
    Tint tint = Tint::green;

    bool operator==(const ForecastSummary&) const = default;
};

namespace ForecastLimits {
inline constexpr double lookbackDays = 30;
inline constexpr size_t minimumSamples = 4;
inline constexpr double minimumSpanDays = 2.0;
// A slower growth than this means the disk is not filling up.
inline constexpr double fillingBytesPerDay = 20'000'000;
} // namespace ForecastLimits

// None with fewer than 4 samples in the look-back or a span under 2 days. `free` is the volume's
// `available` (purgeable space is not free); a negative one counts as 0.
std::optional<SpaceForecast> forecast(const std::vector<SpaceSample>& samples, int64_t free,
                                      double now, double lookbackDays);

// The forecast in words; `now` dates the day the disk would be full. None without a forecast.
std::optional<ForecastSummary> forecastSummary(const std::optional<SpaceForecast>& forecast,
                                               double now);

// How far the learning has come before there is a forecast: days since the oldest sample, at
// most the 2 a forecast needs; 0 without samples.
double learningDays(const std::vector<SpaceSample>& samples, double now);

} // namespace dorvik
