#include "scanning/ScanProgress.h"

#include "base/PathNames.h"

namespace dorvik {

ScanProgress::ScanProgress(int threads, const Callback& callback, double interval,
                           int64_t fileStride)
    : callback_(callback), interval_(interval), fileStride_(fileStride), threads_(threads),
      counts_(std::make_unique<Counts[]>(static_cast<size_t>(threads))),
      lastReport_(std::chrono::steady_clock::now()) {}

void ScanProgress::afterEntry(int64_t ownFiles, std::string_view folderPath,
                              std::string_view name) {
    if (!callback_ || ownFiles % fileStride_ != 0 || !due()) {
        return;
    }
    std::string path(folderPath);
    if (!name.empty()) {
        if (path.empty() || path.back() != '/') {
            path += '/';
        }
        path += name;
    }
    lastPath_ = canonicalPath(path);
    report();
}

void ScanProgress::whileWaiting() {
    if (callback_ && due()) {
        report();
    }
}

bool ScanProgress::due() {
    const auto now = std::chrono::steady_clock::now();
    if (std::chrono::duration<double>(now - lastReport_).count() <= interval_) {
        return false;
    }
    lastReport_ = now;
    return true;
}

void ScanProgress::report() {
    int64_t files = 0;
    int64_t bytes = 0;
    for (int thread = 0; thread < threads_; ++thread) {
        files += counts_[static_cast<size_t>(thread)].files.load(std::memory_order_relaxed);
        bytes += counts_[static_cast<size_t>(thread)].bytes.load(std::memory_order_relaxed);
    }
    callback_(files, bytes, lastPath_);
}

} // namespace dorvik
