#include "ui/pages/large/LargeFilesView.h"

#include "base/Dates.h"
#include "base/TextForms.h"
#include "state/AppState.h"
#include "ui/QtText.h"
#include "ui/files/FileListPanel.h"
#include "ui/files/FilesTable.h"
#include "ui/files/FilterBar.h"

#include <QLabel>
#include <QPushButton>

namespace dorvik {

LargeFilesView::LargeFilesView(AppState& state, QWidget* parent)
    : ScanPage(state, tr("Large & Old"),
               tr("Every scanned file. Sort by any column and combine filters."), tr("Large & Old"),
               tr("Scan your disk to list every file over 512 KB, with filters for size, date, "
                  "type and category."),
               parent),
      list_(new FileListPanel(state, true, [] { return QStringLiteral("Dorvik-files"); })) {
    setContent(list_);
    list_->filterBar()->onChange = [this](const FileFilter& filter) {
        state_.setLargeFilter(filter);
    };
    connect(&state, &AppState::largeFilterChanged, this, &LargeFilesView::refresh);
    connect(&state, &AppState::scanChanged, this, &LargeFilesView::refresh);
    refresh();
}

void LargeFilesView::refresh() {
    list_->filterBar()->setFilter(state_.largeFilter());
    std::vector<FileNodePtr> files;
    if (state_.scan()) {
        files = filterFiles(state_.scan()->files, state_.largeFilter(), Dates::now());
    }
    int64_t total = 0;
    for (const auto& file : files) {
        total += file->size;
    }
    const auto shown = static_cast<int64_t>(files.size());
    list_->footnote()->setText(filesText(shown) + QStringLiteral(" · ") +
                               qtText(TextForms::size(total)));
    list_->exportButton()->setEnabled(!files.empty());
    list_->table()->setEmptyText(
        state_.scan() && files.empty() ? tr("No files match these filters.") : QString());
    list_->table()->setNodes(std::move(files));
}

} // namespace dorvik
