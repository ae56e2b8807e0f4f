#pragma once

// The text forms every page and the terminal share. One formatter serves every size shown.

#include <cstdint>
#include <string>
#include <string_view>

namespace dorvik::TextForms {

// Decimal units, KB to TB: "Zero KB", whole KB, one decimal for MB, two for GB and TB, trailing
// zeros dropped ("1.5 MB", "2 GB"), halves rounded up. Anything above zero shows at least
// "1 KB"; a negative size is shown as zero.
std::string size(int64_t bytes);

// "+" or "−" (U+2212) before the size of the magnitude; zero is "+Zero KB".
std::string signedSize(int64_t bytes);

// The share of `part` in `whole`: "0%" for a whole below 1, "<0.1%" for a sliver of at least one
// byte, one decimal below 10%, none from there on.
std::string percent(double part, double whole);

// "1,234,567": whole numbers with thousands separators.
std::string count(int64_t value);

// The count with its noun: "1 file", "0 files", "2,345 files".
std::string counted(int64_t value, std::string_view one, std::string_view many);

// `date` against `now` (both seconds since 1970) in calendar days of the local time zone:
// "today", "yesterday", "tomorrow", "3 days ago", "in 3 days", "last week", "in 2 weeks",
// "last month", "5 months ago", "next year", "2 years ago". Weeks from 7 days, months (of 30
// days) from 30, years (of 365 days) from 365. "—" for a date up to one day after 1970, the
// program's marker for "never".
std::string relativeDate(double date, double now);

// "Mar 5, 2025" in the local time zone; "—" for the "never" marker or a date beyond the calendar.
std::string abbreviatedDate(double date);

// "Mar 5, 2025 at 3:07 PM" in the local time zone; "—" as for the date alone.
std::string abbreviatedDateTime(double date);

// "2025-03-05T14:07:09Z": the moment in UTC to the second, as data files and exports write it.
// Fractions of a second are dropped.
std::string iso8601(double date);

// A span of days in words: "less than a day", "about 12 days", "about 5 months", "more than 2
// years".
std::string durationPhrase(double days);

} // namespace dorvik::TextForms
