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

// What an archive may hold, by what a real disk holds. Anything beyond is refused before the
// memory for it is taken, so that a small file cannot unfold into gigabytes.
struct Limits {
    // Levels of folders below the root. A path of PATH_MAX (4,096) bytes names at most 2,048
    // levels; twice that leaves room for trees made deeper with relative names.
    size_t deepestLevel = 4096;
    // Folders and large files. A well-filled disk of several terabytes holds one or two million;
    // this is a few times more, and about 2 GB once read.
    size_t mostNodes = size_t{1} << 23;
    // The decompressed payload: the most nodes at their 67 bytes and a name of 29 bytes on
    // average, longer than names on real disks are.
    size_t largestPayload = (size_t{1} << 23) * 96;
};

struct ArchivedScan {
    ScanResult scan;
    ScanTarget target;
};

// The uncompressed payload. Deleted nodes are left out with everything below them.
std::vector<uint8_t> encodePayload(const ScanResult& scan, const ScanTarget& target);

// None for anything that is not a whole payload of this version within the limits.
std::optional<ArchivedScan> decodePayload(std::span<const uint8_t> payload,
                                          const Limits& limits = {});

// The same for the compressed bytes of a file.
std::optional<ArchivedScan> decodeArchive(std::span<const uint8_t> file, const Limits& limits = {});

// "last-scan.dvscan" in the application-support folder.
std::string defaultPath();

// Compresses and replaces the file atomically. False on failure; the old file then stays.
bool write(const ScanResult& scan, const ScanTarget& target, const std::string& path);

// The same for a payload already encoded. It reads no node, so that the tree's owner can encode
// on its own thread and leave the slow part to a worker.
bool writePayload(std::span<const uint8_t> payload, const std::string& path);

std::optional<ArchivedScan> read(const std::string& path);

} // namespace dorvik::ScanArchive
