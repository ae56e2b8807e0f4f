#include "state/DuplicatesState.h"

#include "base/Uuid.h"
#include "reclaim/DuplicateFinder.h"
#include "reclaim/ShareToast.h"
#include "state/AppState.h"
#include "state/WorkerHandoff.h"

namespace dorvik {

DuplicatesState::DuplicatesState(AppState& app)
    : app_(app), relay_(std::make_shared<MainThreadRelay<DuplicatesState>>(this)) {
    connect(&app_, &AppState::scanChanged, this, &DuplicatesState::forgetOldScan);
}

DuplicatesState::~DuplicatesState() {
    relay_->detach();
}

void DuplicatesState::forgetOldScan() {
    // A removal changes the scan too, but keeps its tree: only a new tree drops the groups.
    const auto& scan = app_.scan();
    if (groups_.empty() || (scan && scan->root == searchedRoot_.lock())) {
        return;
    }
    groups_.clear();
    emit groupsChanged();
}

void DuplicatesState::setProgress(std::optional<double> progress) {
    progress_ = progress;
    emit progressChanged();
}

void DuplicatesState::findDuplicates() {
    const auto& scan = app_.scan();
    if (!scan) {
        return;
    }
    setProgress(0.0);
    searchedRoot_ = scan->root;
    // The candidates are taken here, where removals mark the nodes; the worker reads nothing that
    // a removal or an undo made meanwhile changes.
    startOnWorker(
        [relay = relay_, candidates = duplicateCandidates(scan->files, duplicateMinSize)] {
            auto progress = [&relay](double value) {
                relay->post([value](DuplicatesState& state) { state.setProgress(value); });
            };
            auto groups = dorvik::findDuplicates(candidates, progress);
            relay->post([groups = std::move(groups)](DuplicatesState& state) mutable {
                state.groups_ = std::move(groups);
                state.setProgress(std::nullopt);
                emit state.groupsChanged();
            });
        });
}

bool DuplicatesState::refuseWithoutACopy(const DuplicateSelection& selection) {
    if (keepsOneCopy(groups_, selection)) {
        return false;
    }
    app_.removal().showToast(
        Toast{Uuid::make(), "Keep at least one copy in each group", std::nullopt, {}, true});
    return true;
}

void DuplicatesState::deleteSelected(const DuplicateSelection& selection) {
    if (refuseWithoutACopy(selection)) {
        return;
    }
    app_.removal().propose(duplicatePlanItems(groups_, selection),
                           std::string(PlanTitles::deleteDuplicateCopies));
}

bool DuplicatesState::shareSelected(const DuplicateSelection& selection) {
    if (refuseWithoutACopy(selection)) {
        return false;
    }
    shareSpace(selection);
    return true;
}

void DuplicatesState::shareSpace(const DuplicateSelection& nodes) {
    std::vector<std::pair<std::string, std::string>> pairs;
    for (const auto& [copy, original] : sharingPairs(groups_, nodes)) {
        pairs.emplace_back(copy->path(), original->path());
    }
    if (pairs.empty()) {
        return;
    }
    isSharingSpace_ = true;
    emit isSharingSpaceChanged();
    startOnWorker([relay = relay_, pairs = std::move(pairs), nodes] {
        FileClone::CloneReport report = FileClone::share(pairs);
        relay->post([nodes, report = std::move(report)](DuplicatesState& state) {
            state.finishSharing(nodes, report);
        });
    });
}

void DuplicatesState::finishSharing(const DuplicateSelection& nodes,
                                    const FileClone::CloneReport& report) {
    markShared(groups_, nodes, report.converted);
    emit groupsChanged();
    isSharingSpace_ = false;
    emit isSharingSpaceChanged();
    app_.refreshVolume();
    app_.removal().setFailures(report.failures);
    app_.removal().showToast(shareToast(report));
}

} // namespace dorvik
