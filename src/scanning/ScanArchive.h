#pragma once

// The last scan, kept between runs in "last-scan.dvscan": the tree, the totals and the target,
// as one little-endian payload compressed with LZFSE. It is a cache: any doubt about a file
// means there is none, and nothing is said about it.

#include "scanning/ScanResult.h"
#include "scanning/ScanTarget.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace dorvik::ScanArchive {

inline constexpr uint32_t magic = 0x44565331; // "1SVD" on disk: DVS1 read backwards
inline constexpr uint8_t version = 1;
inline constexpr uint32_t largestTable = 999;
inline constexpr size_t nodeRecordBytes = 63; // after the name
// A payload larger than this is not decompressed: no real scan comes near it.
inline constexpr size_t largestPayload = size_t{4} << 30;

struct ArchivedScan {
    ScanResult scan;
    ScanTarget target;
};

// The uncompressed payload. Deleted nodes are left out with everything below them.
std::vector<uint8_t> encodePayload(const ScanResult& scan, const ScanTarget& target);

// None for anything that is not a whole payload of this version.
std::optional<ArchivedScan> decodePayload(std::span<const uint8_t> payload);

// "last-scan.dvscan" in the application-support folder.
std::string defaultPath();

// Compresses and replaces the file atomically. False on failure; the old file then stays.
bool write(const ScanResult& scan, const ScanTarget& target, const std::string& path);

std::optional<ArchivedScan> read(const std::string& path);

} // namespace dorvik::ScanArchive
