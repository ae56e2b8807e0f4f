#include "support/EventLoop.h"

#include <QCoreApplication>
#include <QThreadPool>

namespace dorvik::test {

bool waitUntil(const std::function<bool()>& done, std::chrono::milliseconds limit) {
    const auto until = std::chrono::steady_clock::now() + limit;
    while (!done()) {
        if (std::chrono::steady_clock::now() > until) {
            return false;
        }
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    }
    return true;
}

void settle() {
    while (!QThreadPool::globalInstance()->waitForDone(10)) {
        QCoreApplication::processEvents();
    }
    QCoreApplication::processEvents();
}

} // namespace dorvik::test
