#pragma once

// Runs the folders of a walk on a few threads, the calling thread among them. Each thread keeps
// its own stack of folders: it adds the subfolders of the folder it lists there and takes the one
// added last, so it goes on below the folder it has just listed, as a single walk would. A thread
// with nothing left takes the oldest folder of another thread's stack, the one highest in the
// tree and so the most work for one taking. (A stack shared by all threads was 6% slower on two
// processors: the threads kept working side by side in the same folders.) A job may add more; the
// run ends when no job waits and none runs, or when a job stops it. A job that throws stops the
// run, and run() throws that again on the calling thread.

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <exception>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <system_error>
#include <thread>
#include <vector>

namespace dorvik {

template <typename Job> class WalkPool {
public:
    explicit WalkPool(int threads)
        : threads_(threads < 1 ? 1 : threads),
          stacks_(std::make_unique<Stack[]>(static_cast<size_t>(threads_))) {}

    WalkPool(const WalkPool&) = delete;
    WalkPool& operator=(const WalkPool&) = delete;

    // Runs `first` and all that the jobs add: `work(worker, job)`, where worker 0 is the calling
    // thread. While the calling thread has nothing to do it calls `waiting()` about every
    // `interval` seconds.
    template <typename Work>
    void run(
        Job first, Work&& work, std::function<void()> waiting = [] {}, double interval = 1) {
        unfinished_ = 1;
        waitingJobs_ = 1;
        stacks_[0].jobs.push_back(std::move(first));
        std::vector<std::thread> helpers;
        for (int worker = 1; worker < threads_; ++worker) {
            try {
                helpers.emplace_back([this, worker, &work] { loop(worker, work, nullptr, 0); });
            } catch (const std::system_error&) {
                break; // fewer threads, the same walk
            }
        }
        loop(0, work, &waiting, interval);
        for (std::thread& helper : helpers) {
            helper.join();
        }
        if (failure_) {
            std::rethrow_exception(failure_);
        }
    }

    // From a job on `worker`: adds `jobs` so that the first of them is taken next, and empties
    // the vector.
    void add(int worker, std::vector<Job>& jobs) {
        if (jobs.empty()) {
            return;
        }
        const auto count = static_cast<int64_t>(jobs.size());
        unfinished_ += count; // before they can be taken, so that the count never reaches 0 early
        {
            Stack& stack = stacks_[static_cast<size_t>(worker)];
            std::lock_guard guard(stack.lock);
            for (auto job = jobs.rbegin(); job != jobs.rend(); ++job) {
                stack.jobs.push_back(std::move(*job));
            }
        }
        jobs.clear();
        // A thread going to sleep counts itself idle, then looks at the waiting jobs; this adds
        // the jobs, then looks at the idle count. One of the two sees the other.
        waitingJobs_ += count;
        if (idle_ > 0) {
            std::lock_guard guard(sleepLock_);
            wake_.notify_all();
        }
    }

    // From a job: no other job starts.
    void stop() {
        stopped_ = true;
        std::lock_guard guard(sleepLock_);
        wake_.notify_all();
    }

private:
    struct alignas(64) Stack {
        std::mutex lock;
        std::deque<Job> jobs;
    };

    std::optional<Job> take(int worker) {
        {
            Stack& own = stacks_[static_cast<size_t>(worker)];
            std::lock_guard guard(own.lock);
            if (!own.jobs.empty()) {
                std::optional<Job> job(std::move(own.jobs.back()));
                own.jobs.pop_back();
                --waitingJobs_;
                return job;
            }
        }
        for (int step = 1; step < threads_; ++step) {
            Stack& other = stacks_[static_cast<size_t>((worker + step) % threads_)];
            std::lock_guard guard(other.lock);
            if (!other.jobs.empty()) {
                std::optional<Job> job(std::move(other.jobs.front()));
                other.jobs.pop_front();
                --waitingJobs_;
                return job;
            }
        }
        return std::nullopt;
    }

    template <typename Work>
    void loop(int worker, Work& work, std::function<void()>* waiting, double interval) {
        while (!stopped_) {
            if (std::optional<Job> job = take(worker)) {
                try {
                    work(worker, *job);
                } catch (...) {
                    std::lock_guard guard(sleepLock_);
                    if (!failure_) {
                        failure_ = std::current_exception();
                    }
                    stopped_ = true;
                    wake_.notify_all();
                }
                job.reset(); // letting go of a job may close folders: not in anyone's way
                if (--unfinished_ == 0) {
                    stop(); // the walk is over
                }
                continue;
            }
            {
                std::unique_lock guard(sleepLock_);
                ++idle_;
                if (!stopped_ && waitingJobs_ == 0) {
                    if (waiting != nullptr) {
                        // A millisecond at least, so that no interval makes it spin.
                        wake_.wait_for(guard,
                                       std::chrono::duration<double>(std::max(interval, 1e-3)));
                    } else {
                        wake_.wait(guard);
                    }
                }
                --idle_;
            }
            if (waiting != nullptr) {
                (*waiting)();
            }
        }
    }

    const int threads_;
    std::unique_ptr<Stack[]> stacks_;
    std::atomic<int64_t> unfinished_ = 0; // waiting or running
    std::atomic<int64_t> waitingJobs_ = 0;
    std::atomic<int> idle_ = 0;
    std::atomic<bool> stopped_ = false;
    std::mutex sleepLock_;
    std::condition_variable wake_;
    std::exception_ptr failure_;
};

} // namespace dorvik
