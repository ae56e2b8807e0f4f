#pragma once

// The JSON form of the trend histories: "scans.json" holds an array of snapshots, "space.json"
// an array of samples. Dates are seconds since 2001-01-01 UTC. Every key is required and a
// single bad entry fails the whole file, which then counts as absent.

#include "trends/ScanSnapshot.h"
#include "trends/SpaceSample.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace dorvik::TrendFiles {

inline constexpr std::string_view snapshotsFileName = "scans.json";
inline constexpr std::string_view samplesFileName = "space.json";

// Paths that are not valid UTF-8 have their bad bytes replaced, as JSON holds only text.
std::string encodeSnapshots(const std::vector<ScanSnapshot>& snapshots);
std::optional<std::vector<ScanSnapshot>> decodeSnapshots(std::string_view text);

std::string encodeSamples(const std::vector<SpaceSample>& samples);
std::optional<std::vector<SpaceSample>> decodeSamples(std::string_view text);

} // namespace dorvik::TrendFiles
