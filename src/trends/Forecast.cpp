#include "trends/Forecast.h"

#include "base/Dates.h"
#include "base/TextForms.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace dorvik {

namespace {

constexpr double redBelowDays = 14;
constexpr double amberBelowDays = 60;
constexpr double yearsFromDays = 730;

// A byte count from a double, truncated towards zero and held inside Int64.
int64_t truncatedBytes(double bytes) {
    constexpr double limit = 9.2e18;
    if (std::isnan(bytes)) {
        return 0;
    }
    return static_cast<int64_t>(std::clamp(std::trunc(bytes), -limit, limit));
}

// The span in whole days, halves away from zero.
std::string spanText(double spanDays) {
    return std::to_string(std::llround(std::clamp(spanDays, -1e15, 1e15)));
}

} // namespace

std::optional<SpaceForecast> forecast(const std::vector<SpaceSample>& samples, int64_t free,
                                      double now, double lookbackDays) {
    std::vector<SpaceSample> recent;
    for (const SpaceSample& sample : samples) {
        if (now - sample.date <= lookbackDays * Dates::secondsPerDay) {
            recent.push_back(sample);
        }
    }
    std::stable_sort(recent.begin(), recent.end(),
                     [](const SpaceSample& a, const SpaceSample& b) { return a.date < b.date; });
    if (recent.size() < ForecastLimits::minimumSamples) {
        return std::nullopt;
    }
    const double first = recent.front().date;
    const double spanDays = (recent.back().date - first) / Dates::secondsPerDay;
    if (spanDays < ForecastLimits::minimumSpanDays) {
        return std::nullopt;
    }
    const auto n = static_cast<double>(recent.size());
    double sumX = 0;
    double sumY = 0;
    for (const SpaceSample& sample : recent) {
        sumX += (sample.date - first) / Dates::secondsPerDay;
        sumY += static_cast<double>(sample.used);
    }
    const double meanX = sumX / n;
    const double meanY = sumY / n;
    double sxx = 0;
    double sxy = 0;
    for (const SpaceSample& sample : recent) {
        const double dx = (sample.date - first) / Dates::secondsPerDay - meanX;
        sxx += dx * dx;
        sxy += dx * (static_cast<double>(sample.used) - meanY);
    }
    if (!(sxx > 0)) {
        return std::nullopt;
    }
    SpaceForecast result{sxy / sxx, spanDays, std::nullopt};
    if (result.bytesPerDay >= ForecastLimits::fillingBytesPerDay) {
        result.daysLeft = static_cast<double>(std::max<int64_t>(free, 0)) / result.bytesPerDay;
    }
    return result;
}

std::optional<ForecastSummary> forecastSummary(const std::optional<SpaceForecast>& forecast,
                                               double now) {
    if (!forecast) {
        return std::nullopt;
    }
    const std::string days = spanText(forecast->spanDays);
    if (!forecast->daysLeft) {
        return ForecastSummary{"Your disk isn\u2019t filling up",
                               "Used space changed by " +
                                   TextForms::signedSize(truncatedBytes(forecast->bytesPerDay)) +
                                   " a day over the last " + days + " days.",
                               "checkmark.seal.fill", Tint::green};
    }
    const double daysLeft = *forecast->daysLeft;
    ForecastSummary summary;
    summary.title = daysLeft < 1 ? "Your disk is about to fill up"
                                 : "Full in " + TextForms::durationPhrase(daysLeft);
    summary.detail = "Used space grows by " +
                     TextForms::size(truncatedBytes(forecast->bytesPerDay)) + " a day (last " +
                     days;
    if (daysLeft < yearsFromDays) {
        const double fillDate = now + daysLeft * Dates::secondsPerDay;
        summary.detail += " days). At that pace free space runs out around " +
                          TextForms::abbreviatedDate(fillDate) +
                          ". Purgeable space isn\u2019t counted.";
    } else {
        summary.detail += " days). At that pace there is room for years.";
    }
    if (daysLeft < redBelowDays) {
        summary.symbol = "exclamationmark.triangle.fill";
        summary.tint = Tint::red;
    } else {
        summary.symbol = "calendar.badge.clock";
        summary.tint = daysLeft < amberBelowDays ? Tint::amber : Tint::green;
    }
    return summary;
}

double learningDays(const std::vector<SpaceSample>& samples, double now) {
    if (samples.empty()) {
        return 0;
    }
    const auto oldest = std::min_element(
        samples.begin(), samples.end(),
        [](const SpaceSample& a, const SpaceSample& b) { return a.date < b.date; });
    return std::clamp((now - oldest->date) / Dates::secondsPerDay, 0.0,
                      ForecastLimits::minimumSpanDays);
}

} // namespace dorvik
