#pragma once

// The guided clean: scan, review, clean, done. Its selection is kept by rule and lives as long as
// the program, so what the user unticks stays unticked until it ends. The run is paced: each
// working stage stays on screen long enough to be read. Leaving the page neither stops nor
// resets a run, since the run lives here. Main thread only.

#include "removal/DeletionRequest.h"

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

#include <chrono>
#include <cstdint>
#include <optional>
#include <set>
#include <string>

namespace dorvik {

class AppState;
class JunkState;

enum class SmartPhase { idle, scanning, review, cleaning, done };

// The least time each working stage stays on screen; tests shorten them.
inline constexpr std::chrono::milliseconds scanningStageMinimum{1600};
inline constexpr std::chrono::milliseconds cleaningStageMinimum{1200};

struct QuickCleanPacing {
    std::chrono::milliseconds scanning = scanningStageMinimum;
    std::chrono::milliseconds cleaning = cleaningStageMinimum;
};

class QuickCleanState : public QObject {
    Q_OBJECT

public:
    // `app` owns it and `junk`, and outlives both.
    QuickCleanState(AppState& app, JunkState& junk, QuickCleanPacing pacing);

    SmartPhase phase() const { return phase_; }
    // The ids of the ticked rules; at first those the catalogue lets Quick Clean take.
    const std::set<std::string>& selection() const { return selection_; }
    // What the last clean did; none before the first.
    const std::optional<DeletionReport>& lastReport() const { return lastReport_; }

    void setRuleSelected(const std::string& ruleID, bool selected);
    // The bytes of every item found by the ticked rules.
    int64_t selectedTotal() const;

    // Looks for junk afresh and, once the scanning stage has had its time, shows the review.
    // Does nothing while a stage is working.
    void start();
    // Skips what is left of a working stage's least time, if its work is done.
    void skipWait();
    // Removes every item of the ticked rules, each the way its rule says, then shows what it did
    // and looks for junk again. Only from the review.
    void clean();
    void startOver();
    // The Junk page, item by item.
    void seeDetails();
    // The Overview, with a scan of the whole disk when there is none.
    void seeWhatElseIsUsingSpace();

signals:
    void phaseChanged();
    void selectionChanged();
    void lastReportChanged();

private:
    void setPhase(SmartPhase phase);
    // Moves to `next` once the stage begun at `stageStarted_` has lasted `minimum`.
    void advanceAfter(std::chrono::milliseconds minimum, SmartPhase next);
    void finishStage();

    AppState& app_;
    JunkState& junk_;
    QuickCleanPacing pacing_;
    SmartPhase phase_ = SmartPhase::idle;
    std::set<std::string> selection_;
    std::optional<DeletionReport> lastReport_;
    QElapsedTimer stageStarted_;
    QTimer wait_;
    SmartPhase afterWait_ = SmartPhase::idle;
};

} // namespace dorvik
