#pragma once

// How a worker reaches AppState: it holds this relay, not the state, and posts work that runs on
// the main thread only while the state still exists. The state detaches the relay when it goes;
// a post either happened before that, and Qt drops it with the object, or finds nobody.

#include "state/WorkerHandoff.h"

#include <QMetaObject>
#include <QObject>

#include <functional>
#include <memory>
#include <mutex>

namespace dorvik {

template <typename Target> class MainThreadRelay {
public:
    explicit MainThreadRelay(Target* target) : target_(target) {}

    // Runs `work` on the target's thread, later. False when the target is gone.
    bool post(std::function<void(Target&)> work) {
        std::lock_guard guard(lock_);
        if (target_ == nullptr) {
            return false;
        }
        Target* target = target_;
        std::lock_guard handingOver(handoffLock());
        QMetaObject::invokeMethod(
            target,
            [target, work = std::move(work)] {
                takeOver();
                work(*target);
            },
            Qt::QueuedConnection);
        return true;
    }

    void detach() {
        std::lock_guard guard(lock_);
        target_ = nullptr;
    }

private:
    std::mutex lock_;
    Target* target_;
};

} // namespace dorvik
