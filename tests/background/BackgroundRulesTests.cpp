// The decisions of the background, one table each: when a schedule is due, when space is low and
// when a warning stands, and which cleans are announced.

#include "background/BackgroundTexts.h"
#include "background/CleanSchedule.h"
#include "background/LowSpace.h"

#include <gtest/gtest.h>

namespace dorvik {
namespace {

TEST(CleanSchedule, RawValuesLabelsAndIntervals) {
    struct Row {
        std::string_view raw;
        CleanSchedule schedule;
        std::string_view label;
        std::optional<double> interval;
    };
    const Row rows[] = {
        {"off", CleanSchedule::off, "Off", std::nullopt},
        {"daily", CleanSchedule::daily, "Every day", 86'400},
        {"weekly", CleanSchedule::weekly, "Every week", 604'800},
        {"monthly", CleanSchedule::monthly, "Every month", 2'592'000},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(cleanScheduleFromRaw(row.raw), row.schedule) << row.raw;
        EXPECT_EQ(rawValue(row.schedule), row.raw);
        EXPECT_EQ(label(row.schedule), row.label);
        EXPECT_EQ(minimumInterval(row.schedule), row.interval) << row.raw;
    }
    for (const std::string_view unknown : {"", "Daily", "hourly", "off "}) {
        EXPECT_EQ(cleanScheduleFromRaw(unknown), CleanSchedule::off) << unknown;
    }
}

TEST(CleanSchedule, ACleanIsDueOnceItsIntervalHasPassed) {
    constexpr double now = 1'800'000'000;
    struct Row {
        CleanSchedule schedule;
        std::optional<double> lastRun;
        bool due;
    };
    const Row rows[] = {
        {CleanSchedule::off, std::nullopt, false},
        {CleanSchedule::off, now - 10'000'000, false},
        {CleanSchedule::daily, std::nullopt, true}, // never ran: at once
        {CleanSchedule::daily, now - 86'399, false},
        {CleanSchedule::daily, now - 86'400, true},
        {CleanSchedule::weekly, now - 604'799, false},
        {CleanSchedule::weekly, now - 604'800, true},
        {CleanSchedule::monthly, now - 2'591'999, false},
        {CleanSchedule::monthly, now - 2'592'000, true},
        {CleanSchedule::weekly, now + 3600, false}, // a run dated ahead of the clock
    };
    for (const Row& row : rows) {
        EXPECT_EQ(isCleanDue(row.schedule, row.lastRun, now), row.due)
            << rawValue(row.schedule) << " " << (row.lastRun ? now - *row.lastRun : -1);
    }
}

TEST(LowSpace, TheWarningStandsUntilTheSpaceRisesTwoGigabytesAboveTheThreshold) {
    struct Row {
        std::optional<int64_t> free;
        int thresholdGB;
        bool notified;
        LowSpace::Decision expected;
    };
    const Row rows[] = {
        {9'900'000'000, 10, false, {true, true}},    // falls below: warn
        {9'900'000'000, 10, true, {true, false}},    // already warned
        {10'000'000'000, 10, false, {false, false}}, // at the threshold is not below
        {11'000'000'000, 10, true, {true, false}},   // within the margin: the flag stands
        {12'000'000'000, 10, true, {true, false}},   // exactly 2 GB above: still
        {12'000'000'001, 10, true, {false, false}},  // above the margin: reset
        {12'100'000'000, 10, true, {false, false}},
        {-5, 10, false, {true, true}},             // a negative reading is below too
        {1'000'000'000, 0, false, {false, false}}, // threshold 0: off
        {1'000'000'000, 0, true, {true, false}},   // off leaves the flag as it is
        {1'000'000'000, -3, false, {false, false}},
        {std::nullopt, 10, true, {true, false}}, // no volume: nothing
        {std::nullopt, 10, false, {false, false}},
        {4'999'999'999, 5, false, {true, true}},
    };
    for (const Row& row : rows) {
        const LowSpace::Decision decision =
            LowSpace::check(row.free, row.thresholdGB, row.notified);
        EXPECT_EQ(decision.notified, row.expected.notified)
            << row.free.value_or(-1) << " " << row.thresholdGB << " " << row.notified;
        EXPECT_EQ(decision.warn, row.expected.warn)
            << row.free.value_or(-1) << " " << row.thresholdGB << " " << row.notified;
    }
    EXPECT_TRUE(LowSpace::isLow(9'999'999'999, 10));
    EXPECT_FALSE(LowSpace::isLow(10'000'000'000, 10));
    EXPECT_FALSE(LowSpace::isLow(0, 0));
}

TEST(BackgroundTexts, OnlyCleansAboveFiftyMegabytesAreAnnounced) {
    EXPECT_FALSE(BackgroundTexts::announcesClean(0));
    EXPECT_FALSE(BackgroundTexts::announcesClean(50'000'000));
    EXPECT_TRUE(BackgroundTexts::announcesClean(50'000'001));
    EXPECT_EQ(BackgroundTexts::cleanedTitle(1'234'000'000), "Dorvik cleaned 1.23 GB");
    EXPECT_EQ(BackgroundTexts::lowSpaceBody(-1),
              "Only Zero KB free. Open Dorvik to see what's taking up space.");
}

} // namespace
} // namespace dorvik
