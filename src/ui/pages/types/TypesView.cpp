#include "ui/pages/types/TypesView.h"

#include "base/Dates.h"
#include "base/TextForms.h"
#include "state/AppState.h"
#include "ui/QtText.h"
#include "ui/Style.h"
#include "ui/files/FileListPanel.h"
#include "ui/files/FilesTable.h"
#include "ui/files/FilterBar.h"
#include "ui/pages/types/KindTile.h"

#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>

namespace dorvik {

namespace {

constexpr int tileColumns = 4;

} // namespace

TypesView::TypesView(AppState& state, QWidget* parent)
    : ScanPage(state, tr("By File Type"), tr("Based on each file’s extension, wherever it is."),
               tr("Files by type"),
               tr("Videos, photos, documents, installers, archives… Scan your disk to see them "
                  "grouped."),
               parent),
      grid_(new QGridLayout), list_(new FileListPanel(state, false, [this] {
          const QString kind = filter_.kinds.size() == 1
                                   ? shownText(info(*filter_.kinds.begin()).displayName)
                                   : QString();
          return QStringLiteral("Dorvik-") + kind;
      })) {
    grid_->setSpacing(Style::gap + 2);
    list_->hide();

    auto* content = new QWidget;
    auto* layout = new QVBoxLayout(content);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(Style::sectionGap);
    layout->addLayout(grid_);
    pickHint_ = Style::label(tr("Pick a type to list its files."), Style::TextRole::secondary);
    layout->addWidget(pickHint_);
    layout->addWidget(list_, 1);
    layout->addStretch();
    setContent(content);

    list_->filterBar()->onChange = [this](const FileFilter& filter) {
        filter_ = filter;
        refreshList();
    };
    connect(&state, &AppState::scanChanged, this, [this] {
        rebuildTiles();
        refreshList();
    });
    rebuildTiles();
    refreshList();
}

void TypesView::pickKind(FileKind kind) {
    filter_.kinds = {kind};
    list_->filterBar()->setFilter(filter_);
    for (KindTile* tile : tiles_) {
        tile->setChecked(tile->kind() == kind);
    }
    list_->show();
    refreshList();
}

void TypesView::rebuildTiles() {
    for (KindTile* tile : tiles_) {
        delete tile;
    }
    tiles_.clear();
    if (!state_.scan()) {
        return;
    }
    const ScanResult& scan = *state_.scan();
    int index = 0;
    for (FileKind kind : allFileKinds) {
        const auto total = scan.kindTotals.find(kind);
        if (total == scan.kindTotals.end() || total->second <= 0) {
            continue;
        }
        const auto count = scan.kindCounts.find(kind);
        auto* tile =
            new KindTile(kind, total->second, count == scan.kindCounts.end() ? 0 : count->second);
        tile->setChecked(filter_.kinds.contains(kind));
        connect(tile, &KindTile::clicked, this, [this, kind] { pickKind(kind); });
        grid_->addWidget(tile, index / tileColumns, index % tileColumns);
        tiles_.push_back(tile);
        ++index;
    }
}

void TypesView::refreshList() {
    pickHint_->setVisible(filter_.kinds.empty() && !tiles_.empty());
    if (filter_.kinds.empty() || !state_.scan()) {
        list_->hide();
        list_->table()->setNodes({});
        return;
    }
    const ScanResult& scan = *state_.scan();
    list_->table()->setNodes(filterFiles(scan.files, filter_, Dates::now()));

    // The kind's files below the list's threshold have no node; they show only in the totals.
    const FileKind kind = *filter_.kinds.begin();
    const auto counted = scan.kindCounts.find(kind);
    const int64_t all = counted == scan.kindCounts.end() ? 0 : counted->second;
    const auto listed =
        std::count_if(scan.files.begin(), scan.files.end(),
                      [kind](const FileNodePtr& file) { return file->kind == kind; });
    const int64_t smaller = std::max<int64_t>(0, all - static_cast<int64_t>(listed));
    list_->footnote()->setText(
        tr("Only files over 512 KB are listed. The remaining %1 smaller files "
           "still count toward the totals.")
            .arg(qtText(TextForms::count(smaller))));
    const bool anyRow = list_->table()->nodeModel()->rowCount() > 0;
    list_->exportButton()->setEnabled(anyRow);
    list_->table()->setEmptyText(anyRow ? QString() : tr("No files match these filters."));
}

} // namespace dorvik
