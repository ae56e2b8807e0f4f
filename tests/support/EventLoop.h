#pragma once

// Running a real Qt event loop from a test until something has happened.

#include <QCoreApplication>
#include <QThreadPool>

#include <chrono>
#include <functional>

namespace dorvik::test {

// Runs the event loop until `done` holds or the time is up; false when the time ran out.
inline bool waitUntil(const std::function<bool()>& done,
                      std::chrono::milliseconds limit = std::chrono::seconds(20)) {
    const auto until = std::chrono::steady_clock::now() + limit;
    while (!done()) {
        if (std::chrono::steady_clock::now() > until) {
            return false;
        }
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    }
    return true;
}

// Lets every worker end and every posted result land. Workers wait for the main thread to take
// their results, so the loop keeps running while they finish.
inline void settle() {
    while (!QThreadPool::globalInstance()->waitForDone(10)) {
        QCoreApplication::processEvents();
    }
    QCoreApplication::processEvents();
}

} // namespace dorvik::test
