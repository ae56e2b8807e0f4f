#include "trends/SpaceChart.h"

#include "base/Dates.h"

#include <algorithm>

namespace dorvik::SpaceChart {

namespace {

constexpr double shortestHorizonDays = 14;
constexpr double horizonSpans = 1.5;
constexpr double minimumPadBytes = 1e9;
constexpr double padShare = 0.35;
constexpr double fullShare = 0.999;
constexpr double topAboveFullDisk = 1.03;

} // namespace

std::vector<Point> thinnedHistory(const std::vector<SpaceSample>& samples) {
    const size_t stride = samples.size() < pointBudget ? 1 : samples.size() / pointBudget;
    std::vector<Point> points;
    for (size_t i = 0; i < samples.size(); i += stride) {
        points.push_back({samples[i].date, static_cast<double>(samples[i].used)});
    }
    if (!samples.empty() && samples.back().date != points.back().date) {
        points.push_back({samples.back().date, static_cast<double>(samples.back().used)});
    }
    return points;
}

std::vector<Point> projection(const std::vector<Point>& history,
                              const std::optional<SpaceForecast>& forecast, int64_t total) {
    if (!forecast || !forecast->daysLeft || history.empty()) {
        return {};
    }
    const Point& last = history.back();
    const double horizon = std::min(
        *forecast->daysLeft, std::max(shortestHorizonDays, horizonSpans * forecast->spanDays));
    return {
        {last.date + 1, last.used},
        {last.date + horizon * Dates::secondsPerDay,
         std::min(last.used + horizon * forecast->bytesPerDay, static_cast<double>(total))},
    };
}

Data chartData(const std::vector<SpaceSample>& samples,
               const std::optional<SpaceForecast>& forecast, int64_t total) {
    Data data;
    data.history = thinnedHistory(samples);
    data.projection = projection(data.history, forecast, total);
    std::vector<double> values;
    for (const auto* series : {&data.history, &data.projection}) {
        for (const Point& point : *series) {
            values.push_back(point.used);
        }
    }
    const auto [lowest, highest] = std::minmax_element(values.begin(), values.end());
    const double low = values.empty() ? 0 : *lowest;
    const double high = values.empty() ? 1 : *highest;
    const double pad = std::max(high - low, minimumPadBytes) * padShare;
    const double diskSize = static_cast<double>(total);
    data.reachesDisk =
        !data.projection.empty() && data.projection.back().used >= fullShare * diskSize;
    data.axisTop = data.reachesDisk ? topAboveFullDisk * diskSize : high + pad;
    data.axisBottom = std::max(low - pad, 0.0);
    return data;
}

} // namespace dorvik::SpaceChart
