#include "state/RemovalState.h"

#include "removal/RemovalTransaction.h"
#include "state/AppState.h"
#include "state/WorkerHandoff.h"

namespace dorvik {

RemovalState::RemovalState(AppState& app)
    : app_(app), history_(DeletionHistory::defaultPath()),
      relay_(std::make_shared<MainThreadRelay<RemovalState>>(this)) {}

RemovalState::~RemovalState() {
    relay_->detach();
}

void RemovalState::propose(const std::vector<PlanItem>& items, const std::string& title) {
    if (auto made = makePlan(items, title)) {
        plan_ = std::move(made);
        emit planChanged();
    }
}

void RemovalState::cancelPlan() {
    if (plan_) {
        plan_.reset();
        emit planChanged();
    }
}

void RemovalState::execute(const DeletionPlan& plan, bool includeReview) {
    std::vector<DeletionRequest> requests =
        planRequests(plan, includeReview, app_.settings().permanentDelete());
    cancelPlan();
    performDeletion(std::move(requests), false);
}

void RemovalState::performDeletion(std::vector<DeletionRequest> requests, bool quiet,
                                   std::function<void(const DeletionReport&)> done) {
    startOnWorker([relay = relay_, requests = std::move(requests), quiet, done = std::move(done),
                   historyFile = history_.fileURL()] {
        DeletionOutcome outcome = carryOutRemoval(requests, historyFile);
        relay->post([outcome = std::move(outcome), quiet, done](RemovalState& removal) {
            removal.finishDeletion(outcome, quiet);
            if (done) {
                done(outcome.report);
            }
        });
    });
}

void RemovalState::finishDeletion(const DeletionOutcome& outcome, bool quiet) {
    // The worker recorded the batch in the file; the log here catches up with it, unless the
    // watcher of the shared files was quicker.
    reloadHistory();
    const DeletionReport& report = outcome.report;
    emit removed(std::set<std::string>(report.deletedPaths.begin(), report.deletedPaths.end()));
    app_.refreshVolume();
    if (quiet) {
        return;
    }
    showToast(deletionToast(report, outcome.entries));
    failures_ = report.failures;
    failures_.insert(failures_.end(), report.skippedProtected.begin(),
                     report.skippedProtected.end());
    emit failuresChanged();
}

void RemovalState::undo(const std::vector<HistoryEntry>& entries) {
    const UndoReport report = dorvik::undo(history_, entries);
    emit historyChanged();
    Toast toast = undoToast(report.restored);
    const std::set<std::string> restored(report.restoredPaths.begin(), report.restoredPaths.end());
    if (const size_t missing = app_.markRestored(restored); missing > 0) {
        toast.detail = std::to_string(missing) +
                       " restored item(s) were not in this scan. Scan again to list them.";
    }
    showToast(std::move(toast));
    app_.refreshVolume();
}

void RemovalState::clearHistory() {
    history_.clear();
    emit historyChanged();
}

void RemovalState::reloadHistory() {
    if (history_.reload()) {
        emit historyChanged();
    }
}

void RemovalState::setFailures(std::vector<DeletionFailure> failures) {
    failures_ = std::move(failures);
    emit failuresChanged();
}

void RemovalState::showToast(Toast toast) {
    toast_ = std::move(toast);
    emit toastChanged();
}

void RemovalState::closeToast() {
    if (toast_) {
        toast_.reset();
        emit toastChanged();
    }
}

void RemovalState::dismissToast(const std::string& id) {
    if (toast_ && toast_->id == id) {
        closeToast();
    }
}

} // namespace dorvik
