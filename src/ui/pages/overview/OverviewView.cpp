#include "ui/pages/overview/OverviewView.h"

#include "base/Dates.h"
#include "base/TextForms.h"
#include "state/AppState.h"
#include "ui/QtText.h"
#include "ui/Style.h"
#include "ui/pages/overview/CompositionCard.h"
#include "ui/pages/overview/OverviewCards.h"
#include "ui/pages/trends/TrendTeaser.h"
#include "ui/widgets/PageHeader.h"
#include "ui/widgets/PageScroll.h"

#include <QLabel>
#include <QScrollArea>
#include <QTimer>
#include <QVBoxLayout>

#include <cmath>

namespace dorvik {

namespace {

// "4.2 seconds", "3 min 5 s": how long the walk took.
QString durationText(double seconds) {
    if (seconds < 60) {
        return QObject::tr("%1 seconds").arg(seconds, 0, 'f', seconds < 10 ? 1 : 0);
    }
    const auto whole = static_cast<int64_t>(std::lround(seconds));
    return QObject::tr("%1 min %2 s").arg(whole / 60).arg(whole % 60);
}

} // namespace

OverviewView::OverviewView(AppState& state, QWidget* parent)
    : ScanPage(state, tr("Overview"), {}, shownText("What’s taking up your disk?"),
               shownText("Dorvik measures your whole disk (real size on APFS, without counting "
                         "hard links twice) and breaks it down by category, folder and file "
                         "type."),
               parent),
      restoredNote_(Style::label(tr("Dorvik keeps the last scan between sessions. Rescan to see "
                                    "the latest sizes."),
                                 Style::TextRole::caption)),
      stats_(new StatsRow(state)), teaser_(new TrendTeaser(state)),
      composition_(new CompositionCard(state)), recommendations_(new RecommendationsCard(state)),
      biggestFolders_(new BiggestFoldersCard(state)) {
    auto* content = new QWidget;
    auto* column = new QVBoxLayout(content);
    column->setContentsMargins(0, 0, Style::gap, 0);
    column->setSpacing(Style::sectionGap);
    restoredNote_->setWordWrap(true);
    column->addWidget(restoredNote_);
    column->addWidget(stats_);
    column->addWidget(teaser_);
    column->addWidget(composition_);
    column->addWidget(recommendations_);
    column->addWidget(biggestFolders_);
    column->addStretch(1);

    setContent(makePageScroll(content));

    for (auto signal : {&AppState::scanChanged, &AppState::revisionChanged,
                        &AppState::volumeChanged, &AppState::trendsChanged}) {
        connect(&state, signal, this, &OverviewView::refreshSoon);
    }
    connect(&state.junk(), &JunkState::findingsChanged, this, &OverviewView::refreshSoon);
    connect(&state.developer(), &DeveloperState::changed, this, &OverviewView::refreshSoon);
    refresh();
}

void OverviewView::refresh() {
    refreshPending_ = false;
    const double now = Dates::now();
    if (!state_.scan()) {
        header()->setSubtitle({});
        return;
    }
    const ScanResult& scan = *state_.scan();
    header()->setSubtitle(tr("%1 files in %2 · Scanned %3")
                              .arg(qtText(TextForms::count(scan.totalFiles)),
                                   durationText(scan.duration),
                                   qtText(TextForms::relativeDate(scan.finishedAt, now))));
    restoredNote_->setVisible(state_.scanWasRestored());
    stats_->refresh();
    teaser_->refresh(now);
    composition_->refresh();
    recommendations_->refresh(now);
    biggestFolders_->refresh();
}

void OverviewView::showEvent(QShowEvent* event) {
    ScanPage::showEvent(event);
    // The recommendations read the junk the finder last found: look once if nobody has yet.
    if (state_.junk().findings().empty() && !state_.junk().isLoading()) {
        state_.junk().load();
    }
    refresh();
}

void OverviewView::refreshSoon() {
    if (!refreshPending_) {
        refreshPending_ = true;
        QTimer::singleShot(0, this, &OverviewView::refresh);
    }
}

} // namespace dorvik
