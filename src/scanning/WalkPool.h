#pragma once

// Runs the folders of a walk on a few threads, the calling thread among them. The folders wait on
// one shared stack and each thread takes the one added last: a thread mostly goes on below the
// folder it has just listed, the others take what is left higher up, and one thread alone takes
// the folders in the order of a single walk. A job may add more; the run ends when no job waits
// and none runs, or when a job stops it. A job that throws stops the run, and run() throws that
// again on the calling thread.

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <exception>
#include <functional>
#include <mutex>
#include <system_error>
#include <thread>
#include <vector>

namespace dorvik {

template <typename Job> class WalkPool {
public:
    explicit WalkPool(int threads) : threads_(threads < 1 ? 1 : threads) {}

    WalkPool(const WalkPool&) = delete;
    WalkPool& operator=(const WalkPool&) = delete;

    // Runs `first` and all that the jobs add: `work(worker, job)`, where worker 0 is the calling
    // thread. While the calling thread has nothing to do it calls `waiting()` about every
    // `interval` seconds.
    template <typename Work>
    void run(
        Job first, Work&& work, std::function<void()> waiting = [] {}, double interval = 1) {
        jobs_.push_back(std::move(first));
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
    void add(int /*worker*/, std::vector<Job>& jobs) {
        if (jobs.empty()) {
            return;
        }
        std::lock_guard guard(lock_);
        for (auto job = jobs.rbegin(); job != jobs.rend(); ++job) {
            jobs_.push_back(std::move(*job));
        }
        if (idle_ > 0) {
            if (jobs.size() == 1) {
                wake_.notify_one();
            } else {
                wake_.notify_all();
            }
        }
        jobs.clear();
    }

    // From a job: no other job starts.
    void stop() {
        std::lock_guard guard(lock_);
        stopped_ = true;
        wake_.notify_all();
    }

private:
    template <typename Work>
    void loop(int worker, Work& work, std::function<void()>* waiting, double interval) {
        std::unique_lock guard(lock_);
        while (!stopped_) {
            if (jobs_.empty()) {
                if (running_ == 0) {
                    stopped_ = true; // the walk is over
                    wake_.notify_all();
                    break;
                }
                ++idle_;
                if (waiting != nullptr) {
                    // A millisecond at least, so that no interval makes it spin.
                    wake_.wait_for(guard, std::chrono::duration<double>(std::max(interval, 1e-3)));
                    --idle_;
                    guard.unlock();
                    (*waiting)();
                    guard.lock();
                } else {
                    wake_.wait(guard);
                    --idle_;
                }
                continue;
            }
            std::exception_ptr failed;
            {
                Job job = std::move(jobs_.back());
                jobs_.pop_back();
                ++running_;
                guard.unlock();
                try {
                    work(worker, job);
                } catch (...) {
                    failed = std::current_exception();
                }
            } // the job goes before the lock is taken again: letting go of it may close files
            guard.lock();
            --running_;
            if (failed && !failure_) {
                failure_ = failed;
                stopped_ = true;
                wake_.notify_all();
            }
        }
    }

    const int threads_;
    std::mutex lock_;
    std::condition_variable wake_;
    std::vector<Job> jobs_;
    int running_ = 0;
    int idle_ = 0;
    bool stopped_ = false;
    std::exception_ptr failure_;
};

} // namespace dorvik
