#pragma once

// Walks a directory tree once and builds its ScanResult: allocated bytes, each hard-linked file
// once at the first path met, never entering another volume. Runs synchronously on the calling
// thread; cancel() may come from any thread.

#include "scanning/ScanResult.h"

#include <cstdint>
#include <functional>
#include <mutex>
#include <optional>
#include <set>
#include <string>

namespace dorvik {

class Scanner {
public:
    // Files counted so far, bytes of files counted so far, canonical path of the current entry.
    using ProgressCallback =
        std::function<void(int64_t files, int64_t bytes, const std::string& path)>;

    // Progress goes out at most this often, and the clock is read only once per this many files.
    static constexpr double defaultProgressInterval = 0.08;
    static constexpr int64_t progressFileStride = 1024;

    // Tests shorten the interval; the program uses the default.
    explicit Scanner(double progressInterval = defaultProgressInterval)
        : progressInterval_(progressInterval) {}

    void cancel();
    bool isCancelled() const;

    // None when the walk cannot start, the root is no directory, or the scan was cancelled.
    // `excludedPaths` are canonical paths of folders to leave out; the root itself never is.
    // A Scanner serves one scan.
    std::optional<ScanResult> scan(const std::string& rootPath,
                                   const std::set<std::string>& excludedPaths,
                                   const ProgressCallback& progress);

private:
    const double progressInterval_;
    mutable std::mutex lock_;
    bool cancelled_ = false;
};

} // namespace dorvik
