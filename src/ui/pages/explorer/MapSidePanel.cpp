#include "ui/pages/explorer/MapSidePanel.h"

#include "base/TextForms.h"
#include "ui/QtText.h"
#include "ui/Style.h"
#include "ui/Symbols.h"
#include "ui/files/NodeTitle.h"
#include "ui/pages/explorer/SunburstLayout.h"
#include "ui/widgets/ElidedLabel.h"
#include "ui/widgets/UsageBar.h"

#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace dorvik {

namespace {

constexpr int panelWidth = 260;

} // namespace

MapSidePanel::MapSidePanel(QWidget* parent)
    : QWidget(parent), folderName_(new ElidedLabel), folderSize_(new QLabel),
      reveal_(new QPushButton(tr("Show in Finder"))) {
    setFixedWidth(panelWidth);
    Style::makeCard(this);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(Style::cardPadding, Style::cardPadding, Style::cardPadding,
                               Style::cardPadding);
    layout->setSpacing(Style::smallGap);
    layout->addWidget(Style::label(tr("Largest items"), Style::TextRole::headline));

    auto* folder = new QHBoxLayout;
    folder->setSpacing(Style::gap);
    Style::setTextRole(folderName_, Style::TextRole::secondary);
    Style::setTextRole(folderSize_, Style::TextRole::secondary);
    folderSize_->setTextFormat(Qt::PlainText);
    folder->addWidget(folderName_, 1);
    folder->addWidget(folderSize_);
    layout->addLayout(folder);
    layout->addSpacing(Style::gap);

    for (Row& row : rows_) {
        row = makeRow();
        layout->addWidget(row.widget);
    }
    layout->addStretch(1);
    reveal_->setIcon(Symbols::icon("arrow.up.forward.app"));
    connect(reveal_, &QPushButton::clicked, this, [this] {
        if (listed() != nullptr && onReveal) {
            onReveal(listed());
        }
    });
    layout->addWidget(reveal_);
    refresh();
}

MapSidePanel::Row MapSidePanel::makeRow() {
    Row row{new QWidget, new ElidedLabel, new QLabel, new UsageBar, new QLabel};
    for (QLabel* text : {row.size, row.share}) {
        text->setTextFormat(Qt::PlainText);
        text->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    }
    Style::setTextRole(row.share, Style::TextRole::caption);
    // As wide as the widest share, so that the bars of all rows end together.
    const QFontMetrics metrics = row.share->fontMetrics();
    row.share->setFixedWidth(std::max(metrics.horizontalAdvance(QStringLiteral("100%")),
                                      metrics.horizontalAdvance(QStringLiteral("<0.1%"))) +
                             2);
    auto* grid = new QGridLayout(row.widget);
    grid->setContentsMargins(0, Style::smallGap, 0, Style::smallGap);
    grid->setHorizontalSpacing(Style::gap);
    grid->setVerticalSpacing(Style::smallGap);
    grid->addWidget(row.name, 0, 0);
    grid->addWidget(row.size, 0, 1);
    grid->addWidget(row.bar, 1, 0, Qt::AlignVCenter);
    grid->addWidget(row.share, 1, 1);
    grid->setColumnStretch(0, 1);
    return row;
}

void MapSidePanel::setCurrent(FileNodePtr current) {
    current_ = std::move(current);
    refresh();
}

void MapSidePanel::setFocusNode(FileNodePtr focus) {
    focus_ = std::move(focus);
    refresh();
}

void MapSidePanel::refresh() {
    const FileNodePtr& folder = listed();
    items_.clear();
    if (folder != nullptr) {
        items_ = Sunburst::largestChildren(*folder);
        items_.resize(std::min(items_.size(), shownItems));
    }
    folderName_->setText(folder != nullptr ? nodeTitle(*folder) : QString());
    folderSize_->setText(folder != nullptr ? qtText(TextForms::size(folder->size)) : QString());
    reveal_->setEnabled(folder != nullptr);

    const double whole = folder != nullptr ? static_cast<double>(folder->size) : 0;
    for (size_t i = 0; i < rows_.size(); ++i) {
        const Row& row = rows_[i];
        row.widget->setVisible(i < items_.size());
        if (i >= items_.size()) {
            continue;
        }
        const FileNode& item = *items_[i];
        row.name->setText(nameText(item.name));
        row.size->setText(qtText(TextForms::size(item.size)));
        row.share->setText(qtText(TextForms::percent(static_cast<double>(item.size), whole)));
        row.bar->setShare(whole >= 1 ? static_cast<double>(item.size) / whole : 0);
    }
}

} // namespace dorvik
