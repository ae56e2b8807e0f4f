#include "ui/pages/quickclean/QuickCleanView.h"

#include "state/AppState.h"
#include "ui/pages/quickclean/DoneStage.h"
#include "ui/pages/quickclean/IdleStage.h"
#include "ui/pages/quickclean/ReviewStage.h"
#include "ui/pages/quickclean/StepIndicator.h"
#include "ui/pages/quickclean/WorkingStage.h"

#include <QKeyEvent>
#include <QStackedWidget>
#include <QVBoxLayout>

namespace dorvik {

QuickCleanView::QuickCleanView(AppState& state, QWidget* parent)
    : Page(tr("Quick Clean"), QString(), parent), state_(state), steps_(new StepIndicator),
      stages_(new QStackedWidget), idle_(new IdleStage(state)), working_(new WorkingStage),
      review_(new ReviewStage(state)), done_(new DoneStage(state)) {
    stages_->addWidget(idle_);
    stages_->addWidget(working_);
    stages_->addWidget(review_);
    stages_->addWidget(done_);
    body()->addWidget(steps_, 0, Qt::AlignHCenter);
    body()->addWidget(stages_, 1);
    connect(&state_.quickClean(), &QuickCleanState::phaseChanged, this, &QuickCleanView::showPhase);
    showPhase();
}

QWidget* QuickCleanView::currentStage() const {
    return stages_->currentWidget();
}

void QuickCleanView::showPhase() {
    switch (state_.quickClean().phase()) {
    case SmartPhase::idle:
        steps_->setCurrent(std::nullopt);
        stages_->setCurrentWidget(idle_);
        break;
    case SmartPhase::scanning:
        steps_->setCurrent(0);
        working_->setTexts(tr("Looking for files you don’t need…"),
                           tr("Caches, logs, Trash, Xcode leftovers, Mail attachments…"));
        stages_->setCurrentWidget(working_);
        break;
    case SmartPhase::review:
        steps_->setCurrent(1);
        stages_->setCurrentWidget(review_);
        break;
    case SmartPhase::cleaning:
        steps_->setCurrent(2);
        working_->setTexts(tr("Cleaning…"), tr("Only the safe items you selected are removed."));
        stages_->setCurrentWidget(working_);
        break;
    case SmartPhase::done:
        steps_->setCurrent(2);
        stages_->setCurrentWidget(done_);
        break;
    }
    // Idle has its own picture; the steps belong to a run.
    steps_->setVisible(state_.quickClean().phase() != SmartPhase::idle);
}

void QuickCleanView::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape) {
        state_.quickClean().skipWait();
        return;
    }
    Page::keyPressEvent(event);
}

} // namespace dorvik
