#include "state/QuickCleanState.h"

#include "cleaning/QuickClean.h"
#include "state/AppState.h"
#include "state/JunkState.h"

#include <QPointer>

namespace dorvik {

QuickCleanState::QuickCleanState(AppState& app, JunkState& junk, QuickCleanPacing pacing)
    : app_(app), junk_(junk), pacing_(pacing), selection_(QuickClean::defaultSelection()) {
    wait_.setSingleShot(true);
    connect(&wait_, &QTimer::timeout, this, &QuickCleanState::finishStage);
}

void QuickCleanState::setPhase(SmartPhase phase) {
    if (phase_ != phase) {
        phase_ = phase;
        emit phaseChanged();
    }
}

void QuickCleanState::setRuleSelected(const std::string& ruleID, bool selected) {
    const bool changed = selected ? selection_.insert(ruleID).second : selection_.erase(ruleID) > 0;
    if (changed) {
        emit selectionChanged();
    }
}

int64_t QuickCleanState::selectedTotal() const {
    int64_t total = 0;
    for (const JunkFinding& finding : junk_.findings()) {
        if (selection_.contains(finding.rule.id)) {
            total += totalSize(finding);
        }
    }
    return total;
}

void QuickCleanState::start() {
    if (phase_ == SmartPhase::scanning || phase_ == SmartPhase::cleaning) {
        return;
    }
    setPhase(SmartPhase::scanning);
    stageStarted_.start();
    junk_.load([self = QPointer(this)] {
        if (self && self->phase_ == SmartPhase::scanning) {
            self->advanceAfter(self->pacing_.scanning, SmartPhase::review);
        }
    });
}

void QuickCleanState::clean() {
    if (phase_ != SmartPhase::review) {
        return;
    }
    std::vector<DeletionRequest> requests = QuickClean::requests(junk_.findings(), selection_);
    setPhase(SmartPhase::cleaning);
    stageStarted_.start();
    app_.removal().performDeletion(std::move(requests), false,
                                   [self = QPointer(this)](const DeletionReport& report) {
                                       if (!self) {
                                           return;
                                       }
                                       self->lastReport_ = report;
                                       emit self->lastReportChanged();
                                       self->advanceAfter(self->pacing_.cleaning, SmartPhase::done);
                                   });
}

void QuickCleanState::advanceAfter(std::chrono::milliseconds minimum, SmartPhase next) {
    afterWait_ = next;
    const auto elapsed = std::chrono::milliseconds(stageStarted_.elapsed());
    if (elapsed >= minimum) {
        finishStage();
        return;
    }
    wait_.start(minimum - elapsed);
}

void QuickCleanState::skipWait() {
    if (wait_.isActive()) {
        wait_.stop();
        finishStage();
    }
}

void QuickCleanState::finishStage() {
    setPhase(afterWait_);
    if (afterWait_ == SmartPhase::done) {
        // So that the pages show what is left.
        junk_.load();
    }
}

void QuickCleanState::startOver() {
    if (phase_ == SmartPhase::review || phase_ == SmartPhase::done) {
        setPhase(SmartPhase::idle);
    }
}

void QuickCleanState::seeDetails() {
    app_.setSection(AppSection::junk);
}

void QuickCleanState::seeWhatElseIsUsingSpace() {
    app_.setSection(AppSection::overview);
    if (!app_.scan() && !app_.isScanning()) {
        app_.startScan(ScanTarget::wholeDisk());
    }
}

} // namespace dorvik
