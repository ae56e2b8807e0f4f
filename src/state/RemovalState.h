#pragma once

// The removal road of the application: the plan awaiting confirmation, the message after the
// last removal or undo, what the last run that wasn't quiet refused, and the log of all removals.
// Every page and every feature state that removes anything comes here (`AppState::removal()`).
// After each removal the paths that went are announced once, through `removed`; whatever holds
// nodes or findings takes them out itself. Main thread only.

#include "removal/DeletionEngine.h"
#include "removal/DeletionHistory.h"
#include "removal/DeletionPlan.h"
#include "removal/DeletionRequest.h"
#include "removal/Toast.h"
#include "state/MainThreadRelay.h"

#include <QObject>

#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace dorvik {

class AppState;

class RemovalState : public QObject {
    Q_OBJECT

public:
    // `app` owns it and outlives it.
    explicit RemovalState(AppState& app);
    ~RemovalState() override;

    const std::optional<DeletionPlan>& plan() const { return plan_; }
    const std::optional<Toast>& toast() const { return toast_; }
    const std::vector<DeletionFailure>& failures() const { return failures_; }
    const DeletionHistory& history() const { return history_; }

    // Puts the items before the user as a plan, children of other items left out. No items, no
    // plan. A new plan replaces the old.
    void propose(const std::vector<PlanItem>& items, const std::string& title);
    // The user cancelled the plan: nothing is removed.
    void cancelPlan();
    // Carries out a confirmed plan: its safe items, its review items only with `includeReview`,
    // never its protected ones, each for good if the permanentDelete setting is on.
    void execute(const DeletionPlan& plan, bool includeReview);
    // Carries out the removal on a worker (engine and history, see carryOutRemoval). Back here,
    // announces what went, reads the volume again and, unless `quiet`, sets the toast and
    // `failures`; then hands the report to `done`.
    void performDeletion(std::vector<DeletionRequest> requests, bool quiet,
                         std::function<void(const DeletionReport&)> done = {});
    // Brings back those entries that can be brought back, and says how many did.
    void undo(const std::vector<HistoryEntry>& entries);
    void clearHistory();
    // Reads the history file again after another process changed it.
    void reloadHistory();

    // The refusals of a batch that took another road (copies made to share their space): they
    // replace the last run's on the History page.
    void setFailures(std::vector<DeletionFailure> failures);
    // A new toast replaces the one on show.
    void showToast(Toast toast);
    void closeToast();
    // Closes the toast only if it is still the one with this id: the timer of an old toast
    // leaves a newer one alone.
    void dismissToast(const std::string& id);

signals:
    void planChanged();
    void toastChanged();
    void failuresChanged();
    void historyChanged();
    // The paths a removal took away, once per removal, quiet ones too.
    void removed(const std::set<std::string>& paths);

private:
    void finishDeletion(const DeletionOutcome& outcome, bool quiet);

    AppState& app_;
    DeletionHistory history_;
    std::shared_ptr<MainThreadRelay<RemovalState>> relay_;
    std::optional<DeletionPlan> plan_;
    std::optional<Toast> toast_;
    std::vector<DeletionFailure> failures_;
};

} // namespace dorvik
