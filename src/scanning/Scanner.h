#pragma once

// Walks a directory tree once and builds its ScanResult: allocated bytes, each hard-linked file
// once at the first path met, never entering another volume. The walk runs on the calling thread
// and, unless told otherwise, on helper threads beside it, one for each processor; the result is
// the same whatever the number of threads, node for node, and progress is always reported on the
// calling thread. cancel() may come from any thread.

#include "scanning/ScanResult.h"
#include "scanning/WalkThreads.h"

#include <cstdint>
#include <functional>
#include <mutex>
#include <optional>
#include <set>
#include <string>

namespace dorvik {

struct ScanOptions {
    // Progress goes out at most this often; tests shorten it.
    static constexpr double defaultProgressInterval = 0.08;

    // oneThread walks on the calling thread alone, folder after folder in a single walk's order.
    int threads = machineThreads();
    double progressInterval = defaultProgressInterval;
};

class Scanner {
public:
    // Files counted so far, bytes of files counted so far, canonical path of the current entry.
    using ProgressCallback =
        std::function<void(int64_t files, int64_t bytes, const std::string& path)>;

    // The clock is read only once per this many files of the calling thread's walk.
    static constexpr int64_t progressFileStride = 1024;

    explicit Scanner(ScanOptions options = {});

    // The threads a scan takes, at least one.
    int threads() const { return threads_; }

    void cancel();
    bool isCancelled() const;

    // None when the walk cannot start, the root is no directory, or the scan was cancelled.
    // `excludedPaths` are canonical paths of folders to leave out; the root itself never is.
    // A Scanner serves one scan.
    std::optional<ScanResult> scan(const std::string& rootPath,
                                   const std::set<std::string>& excludedPaths,
                                   const ProgressCallback& progress);

private:
    const int threads_;
    const double progressInterval_;
    mutable std::mutex lock_;
    bool cancelled_ = false;
};

} // namespace dorvik
