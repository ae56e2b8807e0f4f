#pragma once

// The disks of virtual machines and containers among the scanned files. Deleting files inside
// such a disk doesn't shrink it, and deleting the disk loses the machine, so each comes with the
// tool that owns it and what to do there instead: these are never offered for removal.

#include "scanning/FileNode.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace dorvik {

struct VirtualDisk {
    std::string path;     // canonical: without the data volume's prefix; the disk's identity
    std::string name;     // the file's name
    std::string owner;    // the tool, or "Virtual disk" when none is known
    int64_t size = 0;     // allocated bytes: what it takes now
    int64_t capacity = 0; // its length: what it may grow to
    double modified = 0;  // seconds since 1970
    std::string advice;
    std::optional<std::string> command; // to copy and run

    bool operator==(const VirtualDisk&) const = default;
};

struct DiskOwner {
    std::string_view marker; // looked for anywhere in the lower-cased path
    std::string_view owner;
};

// The owners, searched in this order; the first marker found wins.
std::span<const DiskOwner> diskOwners();

// The owner of a disk that none of the table claims.
inline constexpr std::string_view unknownDiskOwner = "Virtual disk";

// Extensions (lower case) of files that are always disk images.
std::span<const std::string_view> diskImageExtensions();
// Extensions of raw images: a disk only with a known owner or a length of at least
// rawDiskMinimumCapacity.
std::span<const std::string_view> rawImageExtensions();

inline constexpr int64_t diskMinimumSize = 500'000'000;          // allocated bytes
inline constexpr int64_t rawDiskMinimumCapacity = 8'000'000'000; // logical bytes

struct DiskAdvice {
    std::string_view advice;
    std::optional<std::string_view> command;
};

// What to tell the user about a disk of this owner.
DiskAdvice diskAdvice(std::string_view owner);

// The disks among `files` (a scan's file nodes), the largest first; those marked removed are
// left out.
std::vector<VirtualDisk> virtualDisks(const std::vector<FileNodePtr>& files);

} // namespace dorvik
