#include "trends/ForecastCard.h"

namespace dorvik {

ForecastCardContent forecastCard(const std::vector<SpaceSample>& samples,
                                 const std::optional<VolumeInfo>& volume, double now) {
    ForecastCardContent content;
    if (volume) {
        content.forecast = forecast(samples, volume->available, now, ForecastLimits::lookbackDays);
    }
    content.summary = forecastSummary(content.forecast, now);
    content.learnedDays = learningDays(samples, now);
    content.showsChart = samples.size() >= 2 && volume.has_value();
    return content;
}

} // namespace dorvik
