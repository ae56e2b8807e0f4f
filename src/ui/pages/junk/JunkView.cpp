#include "ui/pages/junk/JunkView.h"

#include "base/TextForms.h"
#include "removal/DeletionPlan.h"
#include "state/AppState.h"
#include "ui/QtText.h"
#include "ui/Style.h"
#include "ui/Symbols.h"
#include "ui/pages/junk/JunkGroupCard.h"
#include "ui/pages/junk/JunkRuleRow.h"
#include "ui/widgets/PageHeader.h"
#include "ui/widgets/ScanningRing.h"

#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QScrollArea>
#include <QStackedLayout>
#include <QVBoxLayout>

#include <optional>

namespace dorvik {

namespace {

constexpr int spinnerDiameter = 28;

QWidget* makeSearching() {
    auto* searching = new QWidget;
    auto* layout = new QVBoxLayout(searching);
    layout->addStretch();
    layout->addWidget(new ScanningRing(spinnerDiameter), 0, Qt::AlignHCenter);
    auto* text = Style::label(QObject::tr("Searching…"), Style::TextRole::secondary);
    layout->addWidget(text, 0, Qt::AlignHCenter);
    layout->addStretch();
    return searching;
}

QWidget* makeNothingFound() {
    auto* nothing = new QWidget;
    auto* layout = new QVBoxLayout(nothing);
    auto* text = Style::label(QObject::tr("No junk found."), Style::TextRole::tertiary);
    layout->addWidget(text, 0, Qt::AlignCenter);
    return nothing;
}

} // namespace

JunkView::JunkView(AppState& state, QWidget* parent)
    : Page(tr("Junk"), tr("Everything Quick Clean checks, item by item."), parent), state_(state),
      scanAgain_(new QPushButton(Symbols::icon("arrow.clockwise"), tr("Scan Again"))),
      stack_(new QStackedLayout), searching_(makeSearching()), nothingFound_(makeNothingFound()),
      list_(new QWidget), groups_(new QVBoxLayout(list_)),
      summary_(Style::label({}, Style::TextRole::secondary)),
      clean_(new QPushButton(tr("Clean Junk"))) {
    header()->addTrailing(scanAgain_);
    connect(scanAgain_, &QPushButton::clicked, this, [this] { state_.junk().load(); });

    groups_->setContentsMargins(0, 0, Style::gap, 0);
    groups_->setSpacing(Style::sectionGap);
    auto* scroll = new QScrollArea;
    scroll->setProperty("page", true);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setWidgetResizable(true);
    scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll->setWidget(list_);

    stack_->addWidget(searching_);
    stack_->addWidget(nothingFound_);
    stack_->addWidget(scroll);
    body()->addLayout(stack_, 1);

    Style::setProminent(clean_, true);
    connect(clean_, &QPushButton::clicked, this, &JunkView::proposeCleaning);
    auto* footer = new QHBoxLayout;
    footer->addWidget(summary_, 1);
    footer->addWidget(clean_);
    body()->addLayout(footer);

    JunkState& junk = state_.junk();
    connect(&junk, &JunkState::findingsChanged, this, &JunkView::rebuildList);
    connect(&junk, &JunkState::loadingChanged, this, &JunkView::refreshLoading);
    rebuildList();
}

bool JunkView::showsSearching() const {
    return stack_->currentWidget() == searching_;
}

void JunkView::showEvent(QShowEvent* event) {
    Page::showEvent(event);
    if (state_.junk().findings().empty() && !state_.junk().isLoading()) {
        state_.junk().load([page = QPointer<JunkView>(this)] {
            if (page) {
                page->selectEverything();
            }
        });
    }
}

void JunkView::refreshLoading() {
    if (state_.junk().isLoading()) {
        stack_->setCurrentWidget(searching_);
    } else {
        stack_->setCurrentIndex(state_.junk().findings().empty() ? 1 : 2);
    }
}

void JunkView::rebuildList() {
    rows_.clear();
    std::set<std::string> found;
    fillJunkGroupCards(groups_, state_.junk().findings(),
                       [this, &found](const JunkFinding& finding, QVBoxLayout* card) {
                           auto* row = new JunkRuleRow(state_, finding);
                           row->onSelect = [this](const std::vector<std::string>& ids,
                                                  bool selected) { select(ids, selected); };
                           row->onExpand = [this, id = finding.rule.id](bool expanded) {
                               if (expanded) {
                                   expanded_.insert(id);
                               } else {
                                   expanded_.erase(id);
                               }
                           };
                           row->setExpanded(expanded_.contains(finding.rule.id));
                           card->addWidget(row);
                           rows_.push_back(row);
                           for (const JunkItem& item : finding.items) {
                               found.insert(item.id);
                           }
                       });
    // What went, or was not found again, is no longer selected.
    std::erase_if(selected_, [&found](const std::string& id) { return !found.contains(id); });
    refreshSelection();
    refreshLoading();
}

void JunkView::select(const std::vector<std::string>& ids, bool selected) {
    for (const std::string& id : ids) {
        if (selected) {
            selected_.insert(id);
        } else {
            selected_.erase(id);
        }
    }
    refreshSelection();
}

void JunkView::selectEverything() {
    selected_.clear();
    for (const JunkFinding& finding : state_.junk().findings()) {
        for (const JunkItem& item : finding.items) {
            selected_.insert(item.id);
        }
    }
    refreshSelection();
}

void JunkView::refreshSelection() {
    int64_t bytes = 0;
    for (const JunkFinding& finding : state_.junk().findings()) {
        for (const JunkItem& item : finding.items) {
            if (selected_.contains(item.id)) {
                bytes += item.size;
            }
        }
    }
    for (JunkRuleRow* row : rows_) {
        row->showSelection(selected_);
    }
    const auto count = static_cast<int64_t>(selected_.size());
    summary_->setText(count == 0 ? tr("Nothing selected")
                                 : tr("%1 selected").arg(qtText(TextForms::count(count))) +
                                       QStringLiteral(" · ") + qtText(TextForms::size(bytes)));
    clean_->setEnabled(count > 0);
}

void JunkView::proposeCleaning() {
    std::vector<PlanItem> items;
    for (const JunkFinding& finding : state_.junk().findings()) {
        for (const JunkItem& item : finding.items) {
            if (selected_.contains(item.id)) {
                items.push_back(makePlanItem(item.url, item.size, finding.rule.removal));
            }
        }
    }
    state_.removal().propose(items, std::string(PlanTitles::cleanJunk));
}

} // namespace dorvik
