#include "ui/pages/trends/TrendsView.h"

#include "base/Dates.h"
#include "state/AppState.h"
#include "ui/Style.h"
#include "ui/pages/trends/ChangesCard.h"
#include "ui/pages/trends/ForecastCardView.h"
#include "ui/widgets/PageScroll.h"

#include <QScrollArea>
#include <QTimer>
#include <QVBoxLayout>

namespace dorvik {

TrendsView::TrendsView(AppState& state, QWidget* parent)
    : Page(tr("Trends"),
           tr("When your disk would fill up at the current pace, and what grew since an earlier "
              "scan."),
           parent),
      state_(state), forecast_(new ForecastCardView), changes_(new ChangesCard(state)) {
    auto* content = new QWidget;
    auto* column = new QVBoxLayout(content);
    column->setContentsMargins(0, 0, Style::gap, 0);
    column->setSpacing(Style::sectionGap);
    column->addWidget(forecast_);
    column->addWidget(changes_);
    column->addStretch(1);

    body()->addWidget(makePageScroll(content), 1);

    connect(&state, &AppState::scanChanged, this, &TrendsView::refreshSoon);
    connect(&state, &AppState::volumeChanged, this, &TrendsView::refreshSoon);
    connect(&state, &AppState::trendsChanged, this, &TrendsView::refreshSoon);
    refresh();
}

void TrendsView::refresh() {
    refreshPending_ = false;
    const double now = Dates::now();
    forecast_->refresh(state_.trends().samples(), state_.volume(), now);
    changes_->refresh(now);
}

void TrendsView::showEvent(QShowEvent* event) {
    Page::showEvent(event);
    refresh(); // relative dates move on while the page is away
}

void TrendsView::refreshSoon() {
    if (!refreshPending_) {
        refreshPending_ = true;
        QTimer::singleShot(0, this, &TrendsView::refresh);
    }
}

} // namespace dorvik
