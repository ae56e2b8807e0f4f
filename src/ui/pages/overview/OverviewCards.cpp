#include "ui/pages/overview/OverviewCards.h"

#include "base/PathNames.h"
#include "base/TextForms.h"
#include "platform/HomeDirectory.h"
#include "scanning/LargestFolders.h"
#include "state/AppState.h"
#include "state/OverviewActions.h"
#include "ui/QtText.h"
#include "ui/Style.h"
#include "ui/widgets/ClearLayout.h"
#include "ui/widgets/ElidedLabel.h"
#include "ui/widgets/RowButton.h"
#include "ui/widgets/StatTile.h"
#include "ui/widgets/SymbolView.h"
#include "ui/widgets/UsageBar.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

namespace dorvik {

namespace {

QVBoxLayout* cardColumn(QFrame* card, const QString& title) {
    Style::makeCard(card);
    auto* layout = new QVBoxLayout(card);
    layout->setContentsMargins(Style::cardPadding, Style::cardPadding, Style::cardPadding,
                               Style::cardPadding - Style::smallGap);
    layout->setSpacing(Style::gap);
    layout->addWidget(Style::label(title, Style::TextRole::headline));
    auto* list = new QVBoxLayout;
    list->setSpacing(0);
    layout->addLayout(list);
    return list;
}

QLabel* sizeLabel(int64_t bytes) {
    auto* label = Style::label(qtText(TextForms::size(bytes)), Style::TextRole::body);
    label->setMinimumWidth(72);
    label->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    return label;
}

RowButton* recommendationRow(const Recommendation& recommendation) {
    auto* row = new RowButton(true);
    auto* icon = new SymbolView(recommendation.symbol, Style::headlineIcon + 4);
    icon->setBadge(true);
    if (recommendation.colour) {
        icon->setColour(Style::hex(*recommendation.colour));
    } else {
        icon->setTint(Style::Tint::warning);
    }
    row->content()->addWidget(icon);
    auto* words = new QVBoxLayout;
    words->setSpacing(1);
    QLabel* title = Style::label(shownText(recommendation.title), Style::TextRole::body);
    QFont bold = title->font();
    bold.setWeight(QFont::DemiBold);
    title->setFont(bold);
    words->addWidget(title);
    // One line each, the list stays even; the whole sentence is in the tool tip when cut.
    auto* detail = new ElidedLabel;
    Style::setTextRole(detail, Style::TextRole::secondary);
    detail->setText(shownText(recommendation.detail));
    words->addWidget(detail);
    row->content()->addLayout(words, 1);
    row->content()->addWidget(sizeLabel(recommendation.size));
    return row;
}

} // namespace

StatsRow::StatsRow(AppState& state, QWidget* parent)
    : QWidget(parent), state_(state),
      used_(new StatTile(tr("Used"), "internaldrive.fill", Style::Tint::accent, {})),
      free_(new StatTile(tr("Free"), "checkmark.circle.fill", Style::Tint::positive, {})),
      purgeable_(new StatTile(tr("Purgeable"), "icloud.and.arrow.down.fill", Style::Tint::accent,
                              shownText("macOS frees this on its own when needed (iCloud "
                                        "copies, caches)"))),
      scanned_(new StatTile(tr("Scanned"), "magnifyingglass", Style::Tint::secondary, {})) {
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(Style::gap + 4);
    for (StatTile* tile : {used_, free_, purgeable_, scanned_}) {
        row->addWidget(tile);
    }
}

std::vector<StatTile*> StatsRow::tiles() const {
    std::vector<StatTile*> shown;
    for (StatTile* tile : {used_, free_, purgeable_, scanned_}) {
        if (tile->isVisibleTo(this)) {
            shown.push_back(tile);
        }
    }
    return shown;
}

void StatsRow::refresh() {
    const std::optional<VolumeInfo>& volume = state_.volume();
    used_->setVisible(volume.has_value());
    free_->setVisible(volume.has_value());
    // statvfs cannot tell what the system would purge: only a volume that knows shows it.
    purgeable_->setVisible(volume && volume->availableForImportantUsage != volume->available);
    if (volume) {
        const int64_t used = volume->total - volume->available;
        used_->setValue(qtText(TextForms::size(used)));
        used_->setCaption(qtText(
            TextForms::percent(static_cast<double>(used), static_cast<double>(volume->total))));
        free_->setValue(qtText(TextForms::size(volume->available)));
        purgeable_->setValue(qtText(TextForms::size(volume->purgeable())));
    }
    if (state_.scan()) {
        scanned_->setValue(qtText(TextForms::size(state_.scan()->root->size)));
        scanned_->setCaption(
            qtText(TextForms::counted(state_.scan()->totalDirectories, "folder", "folders")));
    }
}

RecommendationsCard::RecommendationsCard(AppState& state, QWidget* parent)
    : QFrame(parent), state_(state),
      nothing_(Style::label(tr("Nothing urgent. Nice work!"), Style::TextRole::secondary)) {
    list_ = cardColumn(this, tr("Recommendations"));
    layout()->addWidget(nothing_);
}

void RecommendationsCard::refresh(double now) {
    clearLayout(list_);
    rows_.clear();
    shown_ = currentRecommendations(state_, now);
    nothing_->setVisible(shown_.empty());
    for (const Recommendation& recommendation : shown_) {
        RowButton* row = recommendationRow(recommendation);
        connect(row, &RowButton::clicked, this,
                [this, recommendation] { carryOutRecommendation(state_, recommendation); });
        list_->addWidget(row);
        rows_.push_back(row);
    }
}

BiggestFoldersCard::BiggestFoldersCard(AppState& state, QWidget* parent)
    : QFrame(parent), state_(state) {
    list_ = cardColumn(this, tr("Largest folders"));
}

void BiggestFoldersCard::refresh() {
    clearLayout(list_);
    rows_.clear();
    folders_ = state_.scan() ? largestFolders(state_.scan()->root) : std::vector<FileNodePtr>{};
    const std::string home = platform::homeDirectory();
    const double biggest = folders_.empty() ? 1 : static_cast<double>(folders_.front()->size);
    for (const FileNodePtr& folder : folders_) {
        auto* row = new RowButton;
        auto* icon = new SymbolView("folder.fill", Style::smallIcon + 2);
        icon->setTint(Style::Tint::accent);
        row->content()->addWidget(icon);
        auto* words = new QVBoxLayout;
        words->setSpacing(0);
        words->addWidget(Style::label(nameText(folder->name), Style::TextRole::body));
        auto* path = new ElidedLabel;
        path->setText(nameText(displayPath(canonicalPath(parentPath(folder->path())), home)));
        Style::setTextRole(path, Style::TextRole::captionTertiary);
        words->addWidget(path);
        row->content()->addLayout(words, 2);
        auto* bar = new UsageBar;
        bar->setShare(static_cast<double>(folder->size) / biggest);
        row->content()->addWidget(bar, 1);
        row->content()->addWidget(sizeLabel(folder->size));
        connect(row, &RowButton::clicked, this, [this, node = std::weak_ptr<FileNode>(folder)] {
            if (const FileNodePtr found = node.lock()) {
                state_.revealNode(found);
            }
        });
        list_->addWidget(row);
        rows_.push_back(row);
    }
}

} // namespace dorvik
