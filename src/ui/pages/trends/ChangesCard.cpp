#include "ui/pages/trends/ChangesCard.h"

#include "base/PathNames.h"
#include "base/TextForms.h"
#include "state/AppState.h"
#include "state/OverviewActions.h"
#include "trends/TrendTexts.h"
#include "ui/QtText.h"
#include "ui/Style.h"
#include "ui/Symbols.h"
#include "ui/files/NodeActions.h"
#include "ui/widgets/ClearLayout.h"
#include "ui/widgets/RowButton.h"
#include "ui/widgets/SymbolView.h"
#include "ui/widgets/UsageBar.h"

#include <QFile>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QScrollArea>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>
#include <cstdlib>

namespace dorvik {

namespace {

QWidget* bucketChip(const BucketChange& change) {
    auto* chip = new QFrame;
    Style::makeCard(chip);
    auto* layout = new QHBoxLayout(chip);
    layout->setContentsMargins(Style::gap + 2, Style::smallGap, Style::gap + 2, Style::smallGap);
    layout->setSpacing(Style::gap - 2);
    auto* dot = new SymbolView("circle.fill", 8);
    dot->setColour(Style::hex(info(change.bucket).colour));
    layout->addWidget(dot);
    layout->addWidget(
        Style::label(shownText(info(change.bucket).displayName), Style::TextRole::body));
    layout->addWidget(
        Style::label(qtText(TextForms::signedSize(change.delta)), Style::TextRole::secondary));
    return chip;
}

} // namespace

ChangesCard::ChangesCard(AppState& state, QWidget* parent)
    : QFrame(parent), state_(state), baselineMenu_(new QToolButton),
      message_(Style::label({}, Style::TextRole::secondary)),
      scanButton_(new QPushButton(tr("Scan Entire Disk"))), comparison_(new QWidget),
      summary_(Style::label({}, Style::TextRole::body)), chips_(new QWidget),
      list_(new QVBoxLayout) {
    Style::makeCard(this);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(Style::cardPadding, Style::cardPadding, Style::cardPadding,
                               Style::cardPadding);
    layout->setSpacing(Style::gap + 4);

    auto* header = new QHBoxLayout;
    header->addWidget(Style::label(shownText(TrendTexts::changesTitle), Style::TextRole::headline));
    header->addStretch(1);
    baselineMenu_->setIcon(Symbols::icon("calendar"));
    baselineMenu_->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    baselineMenu_->setPopupMode(QToolButton::InstantPopup);
    baselineMenu_->setToolTip(tr("Choose the earlier scan to compare with"));
    baselineMenu_->setMenu(new QMenu(baselineMenu_));
    header->addWidget(baselineMenu_);
    layout->addLayout(header);

    auto* empty = new QHBoxLayout;
    empty->setSpacing(Style::gap + 4);
    message_->setWordWrap(true);
    empty->addWidget(message_, 1);
    empty->addWidget(scanButton_, 0, Qt::AlignVCenter);
    layout->addLayout(empty);
    connect(scanButton_, &QPushButton::clicked, this,
            [this] { state_.startScan(ScanTarget::wholeDisk()); });

    auto* column = new QVBoxLayout(comparison_);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(Style::gap + 4);
    summary_->setTextFormat(Qt::RichText);
    column->addWidget(summary_);
    auto* chipScroll = new QScrollArea;
    chipScroll->setFrameShape(QFrame::NoFrame);
    chipScroll->setWidgetResizable(true);
    chipScroll->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    chipScroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    chipScroll->setWidget(chips_);
    chipScroll->setFixedHeight(40);
    // The chips lie on the card: nothing of the scroll area shows but them.
    chipScroll->setStyleSheet(QStringLiteral("QScrollArea { background: transparent; }"));
    chipScroll->viewport()->setAutoFillBackground(false);
    chips_->setAutoFillBackground(false);
    chips_->setObjectName(QStringLiteral("chips"));
    chips_->setStyleSheet(QStringLiteral("#chips { background: transparent; }"));
    new QHBoxLayout(chips_);
    chips_->layout()->setContentsMargins(0, 0, 0, 0);
    chips_->layout()->setSpacing(Style::gap);
    chipStrip_ = chipScroll;
    column->addWidget(chipScroll);
    list_->setSpacing(0);
    column->addLayout(list_);
    layout->addWidget(comparison_);
}

void ChangesCard::setBaseline(std::optional<std::string> id) {
    baselineId_ = std::move(id);
    refresh(now_);
}

void ChangesCard::refresh(double now) {
    now_ = now;
    std::optional<std::string> root;
    if (state_.scan()) {
        root = canonicalPath(state_.scan()->root->name);
    } else {
        root = state_.trends().latestRoot();
    }
    const std::vector<ScanSnapshot> history =
        root ? state_.trends().history(*root) : std::vector<ScanSnapshot>{};
    const bool compares = history.size() >= 2;
    message_->setVisible(!compares);
    scanButton_->setVisible(history.empty());
    baselineMenu_->setVisible(compares);
    comparison_->setVisible(compares);
    if (history.empty()) {
        message_->setText(shownText(TrendTexts::noHistoryText));
    } else if (history.size() == 1) {
        message_->setText(qtText(TrendTexts::firstMeasurementText(history.front().date, now)));
    }
    clearLayout(list_);
    rows_.clear();
    changes_.clear();
    if (compares) {
        showComparison(history, now);
    }
}

void ChangesCard::showComparison(const std::vector<ScanSnapshot>& history, double now) {
    const std::optional<ComparedSnapshots> compared = comparedSnapshots(history, baselineId_);
    const ScanSnapshot& older = compared->older;
    const ScanSnapshot& newer = compared->newer;

    baselineMenu_->setText(qtText(TrendTexts::sinceText(older.date, now)));
    QMenu* menu = baselineMenu_->menu();
    menu->clear();
    for (size_t i = 1; i < history.size(); ++i) {
        QAction* item = menu->addAction(qtText(TextForms::abbreviatedDateTime(history[i].date)));
        item->setCheckable(true);
        item->setChecked(history[i].id == older.id);
        connect(item, &QAction::triggered, this, [this, id = history[i].id] { setBaseline(id); });
    }

    const int64_t change = sizeChange(older.total, newer.total);
    const QColor tint = change > 0 ? Style::warning(palette()) : Style::positive(palette());
    summary_->setText(QStringLiteral("<b style=\"color:%1\">%2</b> %3")
                          .arg(tint.name(), qtText(TextForms::signedSize(change)).toHtmlEscaped(),
                               qtText(TrendTexts::scannedRangeText(older, newer)).toHtmlEscaped()));

    clearLayout(chips_->layout());
    const std::vector<BucketChange> buckets =
        bucketChanges(older, newer, ChangeLimits::bucketThreshold);
    chipStrip_->setVisible(!buckets.empty());
    addChips(buckets);

    changes_ =
        folderChanges(older, newer, ChangeLimits::folderThreshold, ChangeLimits::folderRowLimit);
    if (changes_.empty()) {
        auto* none = new QWidget;
        auto* row = new QHBoxLayout(none);
        row->setContentsMargins(0, Style::smallGap, 0, 0);
        auto* icon = new SymbolView("equal.circle", Style::smallIcon);
        icon->setTint(Style::Tint::secondary);
        row->addWidget(icon);
        row->addWidget(
            Style::label(shownText(TrendTexts::noFolderChangeText), Style::TextRole::secondary), 1);
        list_->addWidget(none);
        return;
    }
    int64_t largest = 1;
    for (const FolderChange& folder : changes_) {
        largest = std::max(largest, std::abs(folder.change()));
    }
    for (const FolderChange& folder : changes_) {
        RowButton* row = makeRow(folder, largest);
        list_->addWidget(row);
        rows_.push_back(row);
    }
}

void ChangesCard::addChips(const std::vector<BucketChange>& changes) {
    auto* chips = static_cast<QHBoxLayout*>(chips_->layout());
    for (const BucketChange& change : changes) {
        chips->addWidget(bucketChip(change));
    }
    chips->addStretch(1);
}

RowButton* ChangesCard::makeRow(const FolderChange& change, int64_t largest) {
    auto* row = new RowButton;
    row->setToolTip(shownText("Show in Explorer"));
    const bool grew = change.change() > 0;
    auto* icon = new SymbolView(grew ? "arrow.up.right" : "arrow.down.right", Style::smallIcon);
    icon->setTint(grew ? Style::Tint::warning : Style::Tint::positive);
    row->content()->addWidget(icon);

    auto* title = Style::label(qtText(TrendTexts::folderRowTitle(change)), Style::TextRole::body);
    title->setToolTip(qtText(change.path));
    title->setMinimumWidth(120);
    row->content()->addWidget(title, 2);
    if (const auto badge = TrendTexts::folderRowBadge(change)) {
        auto* label = Style::label(shownText(*badge), Style::TextRole::caption);
        const QColor colour =
            change.before == 0 ? Style::accent(palette()) : Style::positive(palette());
        label->setStyleSheet(QStringLiteral("color:%1; border:1px solid %1; border-radius:4px; "
                                            "padding:0 4px;")
                                 .arg(colour.name()));
        row->content()->addWidget(label);
    }
    auto* bar = new UsageBar;
    bar->setShare(static_cast<double>(std::abs(change.change())) / static_cast<double>(largest));
    bar->setTint(grew ? Style::Tint::warning : Style::Tint::positive);
    bar->setMaximumWidth(160);
    row->content()->addWidget(bar, 1);
    auto* amount =
        Style::label(qtText(TextForms::signedSize(change.change())), Style::TextRole::body);
    amount->setMinimumWidth(80);
    amount->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    row->content()->addWidget(amount);
    auto* after =
        Style::label(change.isRemainder ? QString() : qtText(TextForms::size(change.after)),
                     Style::TextRole::secondary);
    after->setMinimumWidth(72);
    after->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    row->content()->addWidget(after);
    connect(row, &RowButton::clicked, this, [this, path = change.path] { openFolder(path); });
    return row;
}

void ChangesCard::openFolder(const std::string& path) {
    if (openInExplorer(state_, path)) {
        return;
    }
    if (QFileInfo::exists(QFile::decodeName(path.c_str()))) {
        revealPaths(state_, {path});
    }
}

} // namespace dorvik
