// What the Trends page's cards and the Overview's teaser say, and where the chart puts its marks:
// plain values in, plain values out, no window.

#include "support/Environment.h"
#include "trends/ChartAxes.h"
#include "trends/ForecastCard.h"
#include "trends/TrendTexts.h"

#include <gtest/gtest.h>

namespace dorvik {
namespace {

constexpr double day = 86400;
// 2025-03-15 12:00:00 UTC.
constexpr double noon = 1742040000;

std::vector<SpaceSample> samplesOver(double days, int count, double bytesPerDay) {
    std::vector<SpaceSample> samples;
    for (int i = 0; i < count; ++i) {
        const double at = count > 1 ? days * i / (count - 1) : 0;
        samples.push_back({noon - days * day + at * day,
                           static_cast<int64_t>(100e9 + at * bytesPerDay), 500'000'000'000});
    }
    return samples;
}

TEST(ForecastCard, ForecastOnlyWithAVolumeAndChartFromTwoSamples) {
    const VolumeInfo volume{"disk", 500'000'000'000, 100'000'000'000, 100'000'000'000};
    const struct {
        const char* name;
        std::vector<SpaceSample> samples;
        std::optional<VolumeInfo> volume;
        std::optional<std::string> title; // none: the learning state
        double learnedDays;
        bool chart;
    } cases[] = {
        {"no samples", {}, volume, std::nullopt, 0, false},
        {"one sample", samplesOver(0, 1, 0), volume, std::nullopt, 0, false},
        {"a day of samples", samplesOver(1, 5, 1e9), volume, std::nullopt, 1, true},
        {"enough, filling", samplesOver(10, 5, 1e9), volume, "Full in about 3 months", 2, true},
        {"enough, but no volume", samplesOver(10, 5, 1e9), std::nullopt, std::nullopt, 2, false},
        {"enough, steady", samplesOver(10, 5, 0), volume, "Your disk isn\u2019t filling up", 2,
         true},
    };
    for (const auto& [name, samples, shownVolume, title, learnedDays, chart] : cases) {
        SCOPED_TRACE(name);
        const ForecastCardContent content = forecastCard(samples, shownVolume, noon);
        EXPECT_EQ(content.summary ? std::optional(content.summary->title) : std::nullopt, title);
        EXPECT_EQ(content.forecast.has_value(), title.has_value());
        EXPECT_DOUBLE_EQ(content.learnedDays, learnedDays);
        EXPECT_EQ(content.showsChart, chart);
    }
}

TEST(TrendTexts, TheTeaserComparesTheTwoNewestScans) {
    test::ScopedEnvironment zone("TZ", "UTC0");
    ScanSnapshot newer{"B", noon, "/", 12'500'000'000, {}, {}};
    ScanSnapshot older{"A", noon - 3 * day, "/", 10'000'000'000, {}, {}};
    EXPECT_EQ(TrendTexts::teaserText({}, noon), std::nullopt);
    EXPECT_EQ(TrendTexts::teaserText({newer}, noon), std::nullopt);
    EXPECT_EQ(TrendTexts::teaserText({newer, older}, noon), "Since the scan 3 days ago: +2.5 GB");
    EXPECT_EQ(TrendTexts::teaserText({older, newer}, noon), "Since the scan today: \u22122.5 GB");
}

TEST(ChartAxes, RoundStepsBetweenTheEnds) {
    const struct {
        double bottom;
        double top;
        std::vector<double> steps;
    } cases[] = {
        {0, 100, {0, 25, 50, 75, 100}},
        {3, 97, {25, 50, 75}},
        {3, 83, {20, 40, 60, 80}},
        {45e9, 62e9, {45e9, 50e9, 55e9, 60e9}},
        {0, 1, {0, 0.25, 0.5, 0.75, 1}},
        {5, 5, {}},
        {6, 5, {}},
    };
    for (const auto& [bottom, top, steps] : cases) {
        SCOPED_TRACE(top);
        EXPECT_EQ(SpaceChart::roundSteps(bottom, top, 4), steps);
    }
}

TEST(ChartAxes, TheDatesRunFromTheFirstPointToTheEndOfTheProjection) {
    test::ScopedEnvironment zone("TZ", "UTC0");
    const std::vector<SpaceSample> samples = samplesOver(10, 11, 2e9);
    const auto forecast = dorvik::forecast(samples, 100'000'000'000, noon, 30);
    ASSERT_TRUE(forecast && forecast->daysLeft);
    const SpaceChart::Data data = SpaceChart::chartData(samples, forecast, 500'000'000'000);
    const SpaceChart::Axes axes = SpaceChart::axes(data, 6);
    EXPECT_EQ(axes.start, noon - 10 * day);
    EXPECT_EQ(axes.end, data.projection.back().date);
    // 10 days and a 15-day projection: every 5th midnight, from Mar 6.
    ASSERT_EQ(axes.dates.size(), 5u);
    EXPECT_EQ(axes.dates[0], (SpaceChart::Tick{noon - 10 * day + day / 2, "Mar 6"}));
    EXPECT_EQ(axes.dates[1].label, "Mar 11");
    EXPECT_EQ(axes.dates[4].label, "Mar 26");
    for (const SpaceChart::Tick& tick : axes.sizes) {
        EXPECT_GE(tick.value, data.axisBottom);
        EXPECT_LE(tick.value, data.axisTop);
    }
    EXPECT_GE(axes.sizes.size(), 3u);

    // One moment alone gets a day either side; no points, the unit span.
    const SpaceChart::Data single = SpaceChart::chartData(samplesOver(0, 1, 0), {}, 500e9);
    const SpaceChart::Axes around = SpaceChart::axes(single, 6);
    EXPECT_EQ(around.start, noon - day);
    EXPECT_EQ(around.end, noon + day);
    ASSERT_EQ(around.dates.size(), 2u);
    EXPECT_EQ(around.dates[0].label, "Mar 15");
    const SpaceChart::Axes none = SpaceChart::axes(SpaceChart::chartData({}, {}, 500e9), 6);
    EXPECT_TRUE(none.sizes.size() >= 1);
}

} // namespace
} // namespace dorvik
