#include "state/JunkState.h"

#include "base/PathNames.h"
#include "cleaning/JunkFinder.h"
#include "state/RemovalState.h"
#include "state/WorkerHandoff.h"

namespace dorvik {

JunkState::JunkState(RemovalState& removal)
    : relay_(std::make_shared<MainThreadRelay<JunkState>>(this)) {
    connect(&removal, &RemovalState::removed, this, &JunkState::markRemoved);
}

JunkState::~JunkState() {
    relay_->detach();
}

void JunkState::load(std::function<void()> loaded) {
    if (loaded) {
        waiting_.push_back(std::move(loaded));
    }
    const int generation = ++generation_;
    if (!loading_) {
        loading_ = true;
        emit loadingChanged();
    }
    startOnWorker([relay = relay_, generation] {
        std::vector<JunkFinding> findings = JunkFinder::findAll();
        relay->post([generation, findings = std::move(findings)](JunkState& junk) mutable {
            junk.finishLoad(generation, std::move(findings));
        });
    });
}

void JunkState::finishLoad(int generation, std::vector<JunkFinding> findings) {
    if (generation != generation_) {
        return; // a later load is under way and will answer everyone
    }
    findings_ = std::move(findings);
    loading_ = false;
    emit findingsChanged();
    emit loadingChanged();
    // A waiting caller may start another load; it waits for that one.
    std::vector<std::function<void()>> waiting = std::move(waiting_);
    waiting_.clear();
    for (const auto& loaded : waiting) {
        loaded();
    }
}

void JunkState::markRemoved(const std::set<std::string>& paths) {
    if (paths.empty()) {
        return;
    }
    // An item went with itself or with any folder above it.
    const auto gone = [&paths](const JunkItem& item) {
        for (std::string path = item.id; !path.empty() && path != "/"; path = parentPath(path)) {
            if (paths.contains(path)) {
                return true;
            }
        }
        return false;
    };
    bool changed = false;
    for (JunkFinding& finding : findings_) {
        changed |= std::erase_if(finding.items, gone) > 0;
    }
    std::erase_if(findings_, [](const JunkFinding& finding) { return finding.items.empty(); });
    if (changed) {
        emit findingsChanged();
    }
}

} // namespace dorvik
