#include "state/CloudState.h"

#include "state/AppState.h"
#include "state/WorkerHandoff.h"

namespace dorvik {

CloudState::CloudState(AppState& app)
    : app_(app), relay_(std::make_shared<MainThreadRelay<CloudState>>(this)) {}

CloudState::~CloudState() {
    relay_->detach();
}

void CloudState::refresh() {
    if (loading_) {
        return;
    }
    loading_ = true;
    emit changed();
    startOnWorker([relay = relay_, build = sources_.build] {
        CloudReport report = build();
        relay->post([report = std::move(report)](CloudState& state) mutable {
            state.report_ = std::move(report);
            state.loading_ = false;
            emit state.changed();
        });
    });
}

void CloudState::removeDownloads(const std::vector<CloudItem>& items) {
    if (items.empty() || loading_) {
        return;
    }
    loading_ = true;
    emit changed();
    startOnWorker([relay = relay_, items, build = sources_.build, evict = sources_.evict] {
        EvictionReport eviction = evictDownloads(items, evict);
        CloudReport report = build();
        relay->post([eviction = std::move(eviction),
                     report = std::move(report)](CloudState& state) mutable {
            state.app_.removal().setFailures(eviction.failures);
            state.report_ = std::move(report);
            state.loading_ = false;
            state.app_.refreshVolume();
            emit state.changed();
            state.app_.removal().showToast(evictionToast(eviction));
        });
    });
}

} // namespace dorvik
