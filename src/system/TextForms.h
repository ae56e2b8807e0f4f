#pragma once

// The text forms every page and the terminal share. One formatter serves every size shown.

#include <cstdint>
#include <string>

namespace dorvik::TextForms {

// Decimal units, KB to TB: "Zero KB", whole KB, one decimal for MB, two for GB and TB, trailing
// zeros dropped ("1.5 MB", "2 GB"). A negative size is shown as zero.
std::string size(int64_t bytes);

// The share of `part` in `whole`: "0%" for a whole below 1, "<0.1%" for a sliver, one decimal
// below 10%, none above.
std::string percent(double part, double whole);

// "1,234,567": whole numbers with thousands separators.
std::string count(int64_t value);

} // namespace dorvik::TextForms
