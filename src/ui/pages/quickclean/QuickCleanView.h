#pragma once

// Quick Clean, the first page: a guided run of scan, review, clean and done over the junk
// catalogue. The page only shows the run's phase; the run itself lives in the state, so leaving
// the page neither stops nor resets it.

#include "ui/pages/Page.h"

class QStackedWidget;

namespace dorvik {

class AppState;
class DoneStage;
class IdleStage;
class ReviewStage;
class StepIndicator;
class WorkingStage;

class QuickCleanView : public Page {
public:
    explicit QuickCleanView(AppState& state, QWidget* parent = nullptr);

    StepIndicator* steps() const { return steps_; }
    QWidget* currentStage() const;
    IdleStage* idleStage() const { return idle_; }
    WorkingStage* workingStage() const { return working_; }
    ReviewStage* reviewStage() const { return review_; }
    DoneStage* doneStage() const { return done_; }

protected:
    // Escape skips what is left of a working stage's least time.
    void keyPressEvent(QKeyEvent* event) override;

private:
    void showPhase();

    AppState& state_;
    StepIndicator* steps_;
    QStackedWidget* stages_;
    IdleStage* idle_;
    WorkingStage* working_;
    ReviewStage* review_;
    DoneStage* done_;
};

} // namespace dorvik
