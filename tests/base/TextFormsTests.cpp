#include "base/TextForms.h"
#include "support/Environment.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

namespace dorvik {
namespace {

using namespace TextForms;

constexpr double day = 86400;
// Saturday 2025-03-15 12:00:00 UTC.
constexpr double noonMarch15 = 1742040000;

TEST(TextForms, SizeInDecimalUnits) {
    const struct {
        int64_t bytes;
        std::string text;
    } cases[] = {
        {0, "Zero KB"},
        {-5, "Zero KB"},
        {1, "1 KB"}, // anything above zero shows at least one kilobyte
        {1'000, "1 KB"},
        {1'499, "1 KB"},
        {1'500, "2 KB"},
        {999'499, "999 KB"},
        {999'500, "1 MB"}, // a thousand kilobytes is a megabyte
        {1'500'000, "1.5 MB"},
        {2'000'000, "2 MB"},
        {123'456'789, "123.5 MB"},
        {999'949'999, "999.9 MB"},
        {999'950'000, "1 GB"},
        {1'005'000'000, "1.01 GB"}, // halves round up, exactly
        {1'255'000'000, "1.26 GB"},
        {1'234'567'890, "1.23 GB"},
        {2'100'000'000, "2.1 GB"},
        {12'345'678'901, "12.35 GB"},
        {999'995'000'000, "1 TB"},
        {1'005'000'000'000, "1.01 TB"},
        {1'234'567'000'000'000, "1,234.57 TB"},
        {std::numeric_limits<int64_t>::max(), "9,223,372.04 TB"},
    };
    for (const auto& [bytes, text] : cases) {
        EXPECT_EQ(size(bytes), text) << bytes;
    }
}

TEST(TextForms, SignedSize) {
    const struct {
        int64_t bytes;
        std::string text;
    } cases[] = {
        {0, "+Zero KB"},
        {1'500'000, "+1.5 MB"},
        {-1'500'000, "\u22121.5 MB"},
        {-1, "\u22121 KB"},
        {std::numeric_limits<int64_t>::min(), "\u22129,223,372.04 TB"},
    };
    for (const auto& [bytes, text] : cases) {
        EXPECT_EQ(signedSize(bytes), text) << bytes;
    }
}

TEST(TextForms, Percent) {
    const struct {
        double part;
        double whole;
        std::string text;
    } cases[] = {
        {5, 0.5, "0%"},              // no whole to speak of
        {0, 100, "0.0%"},            //
        {0.4, 1000, "0.0%"},         // below one byte: no "<"
        {1, 10'000, "<0.1%"},        // a sliver
        {10, 10'000, "0.1%"},        // a thousandth is no sliver
        {5, 100, "5.0%"},            // one decimal below a tenth
        {99.9, 1000, "10.0%"},       // still below a tenth before rounding
        {10, 100, "10%"},            // none from a tenth on
        {1, 3, "33%"},               //
        {100, 100, "100%"},          //
        {123'456, 10, "1,234,560%"}, // grouped like every number
    };
    for (const auto& [part, whole, text] : cases) {
        EXPECT_EQ(percent(part, whole), text) << part << " of " << whole;
    }
}

TEST(TextForms, Count) {
    EXPECT_EQ(count(0), "0");
    EXPECT_EQ(count(999), "999");
    EXPECT_EQ(count(1000), "1,000");
    EXPECT_EQ(count(-1'234'567), "-1,234,567");
    EXPECT_EQ(counted(1, "file", "files"), "1 file");
    EXPECT_EQ(counted(0, "file", "files"), "0 files");
    EXPECT_EQ(counted(2345, "entry", "entries"), "2,345 entries");
}

TEST(TextForms, DurationPhrase) {
    const struct {
        double days;
        std::string text;
    } cases[] = {
        {-3, "less than a day"},    {0, "less than a day"},     {0.99, "less than a day"},
        {1, "about 1 days"},        {2.5, "about 3 days"},      {59.4, "about 59 days"},
        {59.6, "about 60 days"},    {60, "about 2 months"},     {104, "about 3 months"},
        {105, "about 4 months"},    {729.9, "about 24 months"}, {730, "more than 2 years"},
        {1e9, "more than 2 years"},
    };
    for (const auto& [days, text] : cases) {
        EXPECT_EQ(durationPhrase(days), text) << days;
    }
}

TEST(TextForms, RelativeDateCountsCalendarDays) {
    test::ScopedEnvironment zone("TZ", "UTC0");
    const struct {
        double offset; // seconds from now
        std::string text;
    } cases[] = {
        {0, "today"},
        {-11 * 3600, "today"},     // one in the morning, same day
        {-13 * 3600, "yesterday"}, // eleven last night: only hours ago, but another day
        {11.9 * 3600, "today"},
        {12.1 * 3600, "tomorrow"},
        {-2 * day, "2 days ago"},
        {-6 * day, "6 days ago"},
        {-7 * day, "last week"},
        {-13 * day, "last week"},
        {-14 * day, "2 weeks ago"},
        {-29 * day, "4 weeks ago"},
        {-30 * day, "last month"},
        {-59 * day, "last month"},
        {-60 * day, "2 months ago"},
        {-364 * day, "11 months ago"},
        {-365 * day, "last year"},
        {-730 * day, "2 years ago"},
        {3 * day, "in 3 days"},
        {7 * day, "next week"},
        {21 * day, "in 3 weeks"},
        {45 * day, "next month"},
        {90 * day, "in 3 months"},
        {400 * day, "next year"},
        {1100 * day, "in 3 years"},
    };
    for (const auto& [offset, text] : cases) {
        EXPECT_EQ(relativeDate(noonMarch15 + offset, noonMarch15), text) << offset;
    }
}

TEST(TextForms, RelativeDateOfNeverIsADash) {
    const struct {
        double date;
        std::string text;
    } cases[] = {
        {0, "\u2014"},     {-5, "\u2014"},          {86400, "\u2014"}, {std::nan(""), "\u2014"},
        {1e300, "\u2014"}, {86401, "55 years ago"},
    };
    test::ScopedEnvironment zone("TZ", "UTC0");
    for (const auto& [date, text] : cases) {
        EXPECT_EQ(relativeDate(date, noonMarch15), text) << date;
    }
}

TEST(TextForms, DatesFollowTheLocalTimeZone) {
    // 20:00 and 22:30 UTC on March 15 are 23:00 on the 15th and 01:30 on the 16th three hours
    // east of Greenwich.
    const double evening = noonMarch15 + 8 * 3600;
    const double lateEvening = noonMarch15 + 10.5 * 3600;
    const double newYearsEve = 1767218400; // 2025-12-31 22:00 UTC
    {
        test::ScopedEnvironment zone("TZ", "UTC0");
        EXPECT_EQ(relativeDate(evening, lateEvening), "today");
        EXPECT_EQ(abbreviatedDate(newYearsEve), "Dec 31, 2025");
    }
    {
        test::ScopedEnvironment zone("TZ", "EAST-3");
        EXPECT_EQ(relativeDate(evening, lateEvening), "yesterday");
        EXPECT_EQ(abbreviatedDate(newYearsEve), "Jan 1, 2026");
    }
}

TEST(TextForms, Iso8601IsUtcWhateverTheZone) {
    test::ScopedEnvironment zone("TZ", "EAST-3");
    const struct {
        double date;
        std::string text;
    } cases[] = {
        {noonMarch15, "2025-03-15T12:00:00Z"}, {noonMarch15 + 0.999, "2025-03-15T12:00:00Z"},
        {0, "1970-01-01T00:00:00Z"},           {-1, "1969-12-31T23:59:59Z"},
        {951782400, "2000-02-29T00:00:00Z"},   {1e300, "9999-12-31T23:59:59Z"},
        {-1e300, "0001-01-01T00:00:00Z"},      {std::nan(""), "1970-01-01T00:00:00Z"},
    };
    for (const auto& [date, text] : cases) {
        EXPECT_EQ(iso8601(date), text) << date;
    }
}

TEST(TextForms, AbbreviatedDate) {
    test::ScopedEnvironment zone("TZ", "UTC0");
    EXPECT_EQ(abbreviatedDate(noonMarch15), "Mar 15, 2025");
    EXPECT_EQ(abbreviatedDate(86401), "Jan 2, 1970");
    EXPECT_EQ(abbreviatedDate(86400), "\u2014");
    EXPECT_EQ(abbreviatedDate(1e300), "\u2014");
    EXPECT_EQ(abbreviatedDate(-1e300), "\u2014");
}

TEST(TextForms, AbbreviatedDateTime) {
    test::ScopedEnvironment zone("TZ", "UTC0");
    const struct {
        double date;
        std::string text;
    } cases[] = {
        {noonMarch15, "Mar 15, 2025 at 12:00 PM"},
        {noonMarch15 - 12 * 3600, "Mar 15, 2025 at 12:00 AM"},
        {noonMarch15 + 3 * 3600 + 7 * 60 + 59, "Mar 15, 2025 at 3:07 PM"},
        {noonMarch15 - 60, "Mar 15, 2025 at 11:59 AM"},
        {86400, "\u2014"},
        {1e300, "\u2014"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(abbreviatedDateTime(c.date), c.text) << c.date;
    }
}

} // namespace
} // namespace dorvik
