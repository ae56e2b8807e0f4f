#include "support/Environment.h"
#include "trends/Forecast.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace dorvik {
namespace {

constexpr double hour = 3600;
constexpr double day = 86400;
constexpr double now = 1742040000; // 2025-03-15 12:00 UTC
constexpr int64_t base = 100'000'000'000;

// Samples at the given ages in days, on a line that grows by `perDay` bytes a day.
std::vector<SpaceSample> line(const std::vector<double>& agesInDays, double perDay) {
    std::vector<SpaceSample> samples;
    for (double age : agesInDays) {
        const double date = now - age * day;
        samples.push_back({date, base + static_cast<int64_t>((30 - age) * perDay), 0});
    }
    return samples;
}

TEST(Forecast, NeedsFourRecentSamplesOverTwoDays) {
    const struct {
        std::vector<double> ages;
        bool forecast;
    } cases[] = {
        {{10, 5, 0}, false},             // three over ten days
        {{47.0 / 24, 1, 0.5, 0}, false}, // four within 47 hours
        {{2, 1, 0.5, 0}, true},          // four spanning exactly 48 hours
        {{31, 2, 1, 0}, false},          // the oldest is out of the look-back
        {{30, 2, 1, 0}, true},           // exactly 30 days back is inside
        {{0, 2, 1, 0.5}, true},          // any order
        {{3, 3, 3, 3}, false},           // no span at all
    };
    for (const auto& [ages, expected] : cases) {
        EXPECT_EQ(forecast(line(ages, 1e9), 0, now, 30).has_value(), expected) << ages.front();
    }
}

TEST(Forecast, SlopeAndDaysLeft) {
    const struct {
        double perDay;
        int64_t free;
        std::optional<double> daysLeft;
    } cases[] = {
        {19'999'999, 1'000'000'000, std::nullopt}, // too slow to be filling up
        {20'000'000, 1'000'000'000, 50.0},
        {1e9, 10'000'000'000, 10.0},
        {1e9, 0, 0.0},
        {1e9, -5, 0.0}, // a negative free space counts as none
        {-3e9, 10'000'000'000, std::nullopt},
        {0, 10'000'000'000, std::nullopt},
    };
    for (const auto& [perDay, free, daysLeft] : cases) {
        const auto result = forecast(line({3, 2, 1, 0}, perDay), free, now, 30);
        ASSERT_TRUE(result.has_value());
        EXPECT_DOUBLE_EQ(result->bytesPerDay, perDay);
        EXPECT_DOUBLE_EQ(result->spanDays, 3);
        EXPECT_EQ(result->daysLeft, daysLeft) << perDay;
    }
}

TEST(Forecast, EverySampleWeighsTheSame) {
    // Flat for three days, then a jump of 4 GB: the least-squares slope through
    // (0,0) (1,0) (2,0) (3,4 GB) is 1.2 GB a day.
    std::vector<SpaceSample> samples = {
        {now - 3 * day, base, 0},
        {now - 2 * day, base, 0},
        {now - 1 * day, base, 0},
        {now, base + 4'000'000'000, 0},
    };
    const auto result = forecast(samples, 12'000'000'000, now, 30);
    ASSERT_TRUE(result.has_value());
    EXPECT_NEAR(result->bytesPerDay, 1.2e9, 1e-3);
    EXPECT_NEAR(*result->daysLeft, 10, 1e-9);
}

TEST(Forecast, Summary) {
    test::ScopedEnvironment zone("TZ", "UTC0");
    const std::string growth = "Used space grows by 1.5 GB a day (last 10 days). ";
    const std::string runsOut = "At that pace free space runs out around ";
    const std::string notCounted = ". Purgeable space isn\u2019t counted.";
    const struct {
        SpaceForecast forecast;
        std::string title;
        std::string detail;
        std::string symbol;
        Tint tint;
    } cases[] = {
        {{-1'500'000.7, 2.5, std::nullopt},
         "Your disk isn\u2019t filling up",
         "Used space changed by \u22121.5 MB a day over the last 3 days.",
         "checkmark.seal.fill",
         Tint::green},
        {{19'999'999.9, 2.49, std::nullopt},
         "Your disk isn\u2019t filling up",
         "Used space changed by +20 MB a day over the last 2 days.",
         "checkmark.seal.fill",
         Tint::green},
        {{1.5e9, 10.4, 0.0},
         "Your disk is about to fill up",
         growth + runsOut + "Mar 15, 2025" + notCounted,
         "exclamationmark.triangle.fill",
         Tint::red},
        {{1.5e9, 10.4, 0.99},
         "Your disk is about to fill up",
         growth + runsOut + "Mar 16, 2025" + notCounted,
         "exclamationmark.triangle.fill",
         Tint::red},
        {{1.5e9, 10.4, 1.0},
         "Full in about 1 days",
         growth + runsOut + "Mar 16, 2025" + notCounted,
         "exclamationmark.triangle.fill",
         Tint::red},
        {{1.5e9, 10.4, 13.99},
         "Full in about 14 days",
         growth + runsOut + "Mar 29, 2025" + notCounted,
         "exclamationmark.triangle.fill",
         Tint::red},
        {{1.5e9, 10.4, 14.0},
         "Full in about 14 days",
         growth + runsOut + "Mar 29, 2025" + notCounted,
         "calendar.badge.clock",
         Tint::amber},
        {{1.5e9, 10.4, 20.0},
         "Full in about 20 days",
         growth + runsOut + "Apr 4, 2025" + notCounted,
         "calendar.badge.clock",
         Tint::amber},
        {{1.5e9, 10.4, 59.99},
         "Full in about 60 days",
         growth + runsOut + "May 14, 2025" + notCounted,
         "calendar.badge.clock",
         Tint::amber},
        {{1.5e9, 10.4, 60.0},
         "Full in about 2 months",
         growth + runsOut + "May 14, 2025" + notCounted,
         "calendar.badge.clock",
         Tint::green},
        {{1.5e9, 10.4, 729.99},
         "Full in about 24 months",
         growth + runsOut + "Mar 15, 2027" + notCounted,
         "calendar.badge.clock",
         Tint::green},
        {{1.5e9, 10.5, 730.0},
         "Full in more than 2 years",
         "Used space grows by 1.5 GB a day (last 11 days). At that pace there is room for years.",
         "calendar.badge.clock",
         Tint::green},
    };
    for (const auto& [input, title, detail, symbol, tint] : cases) {
        const auto summary = forecastSummary(input, now);
        ASSERT_TRUE(summary.has_value());
        EXPECT_EQ(*summary, (ForecastSummary{title, detail, symbol, tint}))
            << input.daysLeft.value_or(-1);
    }
    EXPECT_FALSE(forecastSummary(std::nullopt, now).has_value());
}

TEST(Forecast, AFillDateAtTheNeverMarkerIsADash) {
    const auto summary = forecastSummary(SpaceForecast{1e9, 3, 0.5}, 0);
    ASSERT_TRUE(summary.has_value());
    EXPECT_EQ(summary->detail, "Used space grows by 1 GB a day (last 3 days). At that pace free "
                               "space runs out around \u2014. Purgeable space isn\u2019t counted.");
}

TEST(Forecast, LearningDays) {
    EXPECT_EQ(learningDays({}, now), 0);
    EXPECT_DOUBLE_EQ(learningDays({{now - 12 * hour, 1, 2}, {now - hour, 1, 2}}, now), 0.5);
    EXPECT_DOUBLE_EQ(learningDays({{now - 3 * day, 1, 2}}, now), 2.0);
    EXPECT_DOUBLE_EQ(learningDays({{now + day, 1, 2}}, now), 0.0);
}

} // namespace
} // namespace dorvik
