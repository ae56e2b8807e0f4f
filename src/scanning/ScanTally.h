#pragma once

// What one thread of a scan has counted: the totals by bucket and kind and the counters of a
// ScanResult. The threads' tallies add up to the scan's, in any order.

#include "scanning/FileNode.h"

#include <array>
#include <cstdint>
#include <map>

namespace dorvik {

// Totals kept in fixed arrays during the walk; a key exists only for what was met.
template <typename Enum, size_t N> struct EnumTotals {
    std::array<int64_t, N> values{};
    std::array<bool, N> present{};

    void add(Enum key, int64_t amount) {
        const auto index = static_cast<size_t>(key);
        values[index] += amount;
        present[index] = true;
    }

    void add(const EnumTotals& other) {
        for (size_t i = 0; i < N; ++i) {
            values[i] += other.values[i];
            present[i] = present[i] || other.present[i];
        }
    }

    std::map<Enum, int64_t> toMap() const {
        std::map<Enum, int64_t> result;
        for (size_t i = 0; i < N; ++i) {
            if (present[i]) {
                result.emplace(static_cast<Enum>(i), values[i]);
            }
        }
        return result;
    }
};

struct ScanTally {
    EnumTotals<StorageBucket, allStorageBuckets.size()> bucketTotals;
    EnumTotals<FileKind, allFileKinds.size()> kindTotals;
    EnumTotals<FileKind, allFileKinds.size()> kindCounts;
    int64_t files = 0;
    int64_t directories = 0;
    int64_t unreadable = 0;
    int64_t skippedLinks = 0;
    int64_t bytes = 0; // of the files counted, for progress

    // A folder's own blocks.
    void countFolder(const FileNode& folder) {
        ++directories;
        bucketTotals.add(folder.bucket, folder.size);
    }

    // A file into its folder's sums and the totals. One under largeFileThreshold is a counter on
    // the folder; a larger one has a node of its own among the folder's children.
    void countFile(FileNode& folder, int64_t allocated, int64_t logicalSize, FileKind kind,
                   StorageBucket bucket) {
        folder.size += allocated;
        folder.logicalSize += logicalSize;
        folder.fileCount += 1;
        if (allocated < largeFileThreshold) {
            folder.smallFilesSize += allocated;
            folder.smallFilesCount += 1;
        }
        ++files;
        bucketTotals.add(bucket, allocated);
        kindTotals.add(kind, allocated);
        kindCounts.add(kind, 1);
        bytes += allocated;
    }

    void add(const ScanTally& other) {
        bucketTotals.add(other.bucketTotals);
        kindTotals.add(other.kindTotals);
        kindCounts.add(other.kindCounts);
        files += other.files;
        directories += other.directories;
        unreadable += other.unreadable;
        skippedLinks += other.skippedLinks;
        bytes += other.bytes;
    }
};

} // namespace dorvik
