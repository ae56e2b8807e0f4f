#pragma once

// Work crosses between the main thread and the workers in two ways only: a job started on Qt's
// thread pool (startOnWorker) and a result a worker posts back (MainThreadRelay). Qt orders each
// handoff with a lock inside it that ThreadSanitizer cannot see, Qt not being built with it, so
// that it would take every job's inputs and every result for a race. The sender therefore also
// holds handoffLock while it hands the work to Qt, and the work takes it before it reads anything
// it was given: an order any tool sees, for a lock held a few microseconds at a time.

#include <QThreadPool>

#include <functional>
#include <mutex>

namespace dorvik {

inline std::mutex& handoffLock() {
    static std::mutex lock;
    return lock;
}

// The first thing work that crossed does: whatever the sender did before it let go of the lock
// is seen from here on.
inline void takeOver() {
    std::lock_guard guard(handoffLock());
}

// Runs `work` on Qt's global thread pool.
inline void startOnWorker(std::function<void()> work) {
    std::lock_guard handingOver(handoffLock());
    QThreadPool::globalInstance()->start([work = std::move(work)] {
        takeOver();
        work();
    });
}

} // namespace dorvik
