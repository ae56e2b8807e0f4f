#pragma once

// The JSON form of the trend histories: "scans.json" holds an array of snapshots, "space.json"
// an array of samples. Dates are seconds since 2001-01-01 UTC. Every key is required and a
// single bad entry fails the whole file, which then counts as absent.

#include "trends/ScanSnapshot.h"
#include "trends/SpaceSample.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace dorvik::TrendFiles {

inline constexpr std::string_view snapshotsFileName = "scans.json";
inline constexpr std::string_view samplesFileName = "space.json";

// What the files can hold, as the trend store keeps them: a file with more is not ours and is
// refused before a document is built. Snapshots: 10 roots of 30 each, 2,000 folders each. Samples:
// one an hour for 120 days.
inline constexpr size_t maximumSnapshots = 300;
inline constexpr size_t maximumSamples = 120 * 24 + 1;
// A sample is three numbers (under 128 bytes at their longest). A snapshot's folder paths have
// no useful bound in bytes (each may be PATH_MAX long, escaped): its file keeps the old ceiling,
// and the counts bound the memory.
inline constexpr size_t maximumSamplesBytes = maximumSamples * 128;
inline constexpr size_t maximumSnapshotsBytes = size_t{256} << 20;

// Paths (the root, the folders) are written in JsonCoding's escaped form, so that any byte
// string reads back the same; plain text written before reads as it was.
std::string encodeSnapshots(const std::vector<ScanSnapshot>& snapshots);
std::optional<std::vector<ScanSnapshot>> decodeSnapshots(std::string_view text);

std::string encodeSamples(const std::vector<SpaceSample>& samples);
std::optional<std::vector<SpaceSample>> decodeSamples(std::string_view text);

} // namespace dorvik::TrendFiles
