#include "trends/SpaceChart.h"

#include <gtest/gtest.h>

#include <vector>

namespace dorvik {
namespace {

using SpaceChart::Point;

constexpr double day = 86400;
constexpr double start = 1742040000;

std::vector<SpaceSample> hourly(size_t count) {
    std::vector<SpaceSample> samples;
    for (size_t i = 0; i < count; ++i) {
        samples.push_back({start + static_cast<double>(i) * 3600, static_cast<int64_t>(i), 0});
    }
    return samples;
}

TEST(SpaceChart, ThinningKeepsAbout150PointsAndTheLast) {
    const struct {
        size_t samples;
        size_t points;
        size_t secondIndex; // which sample the second point is
    } cases[] = {
        {1, 1, 0},     {149, 149, 1}, {150, 150, 1},   {299, 299, 1},
        {300, 151, 2}, {301, 151, 2}, {2880, 153, 19},
    };
    EXPECT_TRUE(SpaceChart::thinnedHistory({}).empty());
    for (const auto& [count, points, secondIndex] : cases) {
        const auto samples = hourly(count);
        const auto thinned = SpaceChart::thinnedHistory(samples);
        ASSERT_EQ(thinned.size(), points) << count;
        EXPECT_EQ(thinned.front(), (Point{samples.front().date, 0}));
        EXPECT_EQ(thinned.back().date, samples.back().date) << count;
        if (count > 1) {
            EXPECT_EQ(thinned[1].date, samples[secondIndex].date) << count;
        }
    }
}

TEST(SpaceChart, ProjectionRunsToTheHorizonAndStopsAtTheDisk) {
    const std::vector<Point> history = {{start - day, 40e9}, {start, 50e9}};
    const double total = 500e9;
    const struct {
        SpaceForecast forecast;
        double horizonDays;
        double endUsed;
    } cases[] = {
        {{1e9, 4, 100.0}, 14, 64e9},   // at least two weeks
        {{1e9, 20, 100.0}, 30, 80e9},  // one and a half spans
        {{1e9, 4, 5.0}, 5, 55e9},      // but never past the day the disk is full
        {{100e9, 4, 20.0}, 14, 500e9}, // capped at the disk's size
    };
    for (const auto& [forecast, horizonDays, endUsed] : cases) {
        const auto projection = SpaceChart::projection(history, forecast, int64_t(total));
        EXPECT_EQ(projection,
                  (std::vector<Point>{{start + 1, 50e9}, {start + horizonDays * day, endUsed}}))
            << horizonDays;
    }
    EXPECT_TRUE(SpaceChart::projection(history, SpaceForecast{1e9, 4, std::nullopt}, 1).empty());
    EXPECT_TRUE(SpaceChart::projection(history, std::nullopt, 1).empty());
    EXPECT_TRUE(SpaceChart::projection({}, SpaceForecast{1e9, 4, 10.0}, 1).empty());
}

TEST(SpaceChart, AxisRange) {
    const std::vector<SpaceSample> flat = {{start, 10'000'000'000, 0},
                                           {start + day, 10'200'000'000, 0}};
    const struct {
        std::vector<SpaceSample> samples;
        std::optional<SpaceForecast> forecast;
        double bottom;
        double top;
        bool reachesDisk;
    } cases[] = {
        // A small spread is padded by 0.35 GB either side.
        {flat, std::nullopt, 9.65e9, 10.55e9, false},
        // No points: 0 to 1 and the same padding, not below 0.
        {{}, std::nullopt, 0, 1 + 0.35e9, false},
        // A projection widens the range: to 10.2 + 14 GB, padded by 35% of 14.2 GB.
        {flat, SpaceForecast{1e9, 1, 100.0}, 10e9 - 4.97e9, 24.2e9 + 4.97e9, false},
        // Reaching the disk puts the top just above it.
        {flat, SpaceForecast{1e9, 1, 5.0}, 10e9 - 0.35 * 5.2e9, 1.03 * 15.2e9, true},
        {{{start, 100'000'000, 0}}, std::nullopt, 0, 0.1e9 + 0.35e9, false},
    };
    for (const auto& [samples, forecast, bottom, top, reachesDisk] : cases) {
        // The disk is as big as the projection can reach in the fourth case.
        const int64_t total = reachesDisk ? 15'200'000'000 : 500'000'000'000;
        const auto data = SpaceChart::chartData(samples, forecast, total);
        EXPECT_NEAR(data.axisBottom, bottom, 1) << samples.size();
        EXPECT_NEAR(data.axisTop, top, 1) << samples.size();
        EXPECT_EQ(data.reachesDisk, reachesDisk) << samples.size();
        for (const Point& point : data.projection) {
            EXPECT_LE(point.used, double(total));
        }
    }
}

} // namespace
} // namespace dorvik
