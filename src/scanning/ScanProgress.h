#pragma once

// The running counts of a scan's threads and the reports made from them. Every thread publishes
// its own counts; only the calling thread reports, so the callback is always called there. It
// reports after an entry of its own walk, reading the clock only when its own file count stands
// at a multiple of the stride, and while it waits for work. With one thread the reports are
// exactly those of a single walk.

#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace dorvik {

class ScanProgress {
public:
    // Files counted so far, their bytes, canonical path of the current entry.
    using Callback = std::function<void(int64_t files, int64_t bytes, const std::string& path)>;

    ScanProgress(int threads, const Callback& callback, double interval, int64_t fileStride);

    // Any thread, after each entry it counts.
    void publish(int thread, int64_t files, int64_t bytes) {
        Counts& counts = counts_[static_cast<size_t>(thread)];
        counts.files.store(files, std::memory_order_relaxed);
        counts.bytes.store(bytes, std::memory_order_relaxed);
    }

    // The calling thread, after an entry of its own, with the path of the entry's folder (or
    // of the entry itself, when `name` is empty).
    void afterEntry(int64_t ownFiles, std::string_view folderPath, std::string_view name);

    // The calling thread, while it waits for work: the counts of all with the last path shown.
    void whileWaiting();

private:
    struct alignas(64) Counts {
        std::atomic<int64_t> files{0};
        std::atomic<int64_t> bytes{0};
    };

    bool due();
    void report();

    const Callback& callback_;
    const double interval_;
    const int64_t fileStride_;
    const int threads_;
    std::unique_ptr<Counts[]> counts_;
    std::chrono::steady_clock::time_point lastReport_;
    std::string lastPath_;
};

} // namespace dorvik
