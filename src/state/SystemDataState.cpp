#include "state/SystemDataState.h"

#include "state/AppState.h"
#include "state/WorkerHandoff.h"

#include <numeric>

namespace dorvik {

SystemDataState::SystemDataState(AppState& app)
    : app_(app), relay_(std::make_shared<MainThreadRelay<SystemDataState>>(this)) {}

SystemDataState::~SystemDataState() {
    relay_->detach();
}

int64_t SystemDataState::measuredSize() const {
    return std::accumulate(parts_.begin(), parts_.end(), int64_t{0},
                           [](int64_t sum, const SystemDataPart& part) { return sum + part.size; });
}

void SystemDataState::refresh() {
    const int generation = ++generation_;
    measuredParts_.reset();
    listedSnapshots_.reset();
    if (!loading_) {
        loading_ = true;
        emit changed();
    }
    // The scan is read here, on the main thread; the workers get only its figures.
    const std::optional<ScanResult>& scan = app_.scan();
    std::map<std::string, int64_t> known =
        scan ? sizesInScan(scan->root, sources_.measuring) : std::map<std::string, int64_t>{};
    startOnWorker(
        [relay = relay_, generation, known = std::move(known), options = sources_.measuring] {
            std::vector<SystemDataPart> parts = measureSystemData(known, options);
            relay->post([generation, parts = std::move(parts)](SystemDataState& state) mutable {
                if (generation == state.generation_) {
                    state.measuredParts_ = std::move(parts);
                    state.finishRefreshIfDone(generation);
                }
            });
        });
    startOnWorker([relay = relay_, generation, tools = sources_.tools] {
        std::vector<LocalSnapshot> snapshots = listLocalSnapshots(tools);
        relay->post([generation, snapshots = std::move(snapshots)](SystemDataState& state) mutable {
            if (generation == state.generation_) {
                state.listedSnapshots_ = std::move(snapshots);
                state.finishRefreshIfDone(generation);
            }
        });
    });
}

void SystemDataState::finishRefreshIfDone(int generation) {
    if (generation != generation_ || !measuredParts_ || !listedSnapshots_) {
        return;
    }
    parts_ = std::move(*measuredParts_);
    snapshots_ = std::move(*listedSnapshots_);
    measuredParts_.reset();
    listedSnapshots_.reset();
    loading_ = false;
    emit changed();
}

void SystemDataState::deleteSnapshot(const LocalSnapshot& snapshot) {
    if (deleting_) {
        return;
    }
    deleting_ = true;
    emit changed();
    // The prompt is the desktop's own, in another process: the main thread goes on meanwhile.
    startOnWorker([relay = relay_, snapshot, run = sources_.privileged, tools = sources_.tools] {
        std::optional<std::string> message = deleteLocalSnapshot(snapshot, run, tools);
        relay->post([message = std::move(message)](SystemDataState& state) mutable {
            state.snapshotMessage_ = std::move(message);
            emit state.snapshotMessageChanged();
            state.listSnapshotsAgain();
        });
    });
}

void SystemDataState::listSnapshotsAgain() {
    startOnWorker([relay = relay_, tools = sources_.tools] {
        std::vector<LocalSnapshot> snapshots = listLocalSnapshots(tools);
        relay->post([snapshots = std::move(snapshots)](SystemDataState& state) mutable {
            state.snapshots_ = std::move(snapshots);
            state.deleting_ = false;
            // Space may have come back.
            state.app_.refreshVolume();
            emit state.changed();
        });
    });
}

} // namespace dorvik
