#include "ui/files/FileListPanel.h"

#include "ui/Style.h"
#include "ui/Symbols.h"
#include "ui/files/CsvExport.h"
#include "ui/files/FilesTable.h"
#include "ui/files/FilterBar.h"
#include "ui/widgets/SelectionBar.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace dorvik {

FileListPanel::FileListPanel(AppState& state, bool showKind, std::function<QString()> exportName,
                             QWidget* parent)
    : QWidget(parent), filterBar_(new FilterBar),
      table_(new FilesTable(state, FilesTable::fileListColumns(showKind))),
      footnote_(Style::label({}, Style::TextRole::caption)),
      export_(new QPushButton(Symbols::icon("square.and.arrow.up"), tr("Export to CSV"))) {
    // The files of a list come from all over the disk, and names repeat.
    table_->showFolderLines();
    footnote_->setWordWrap(true);
    connect(export_, &QPushButton::clicked, this, [this, name = std::move(exportName)] {
        exportCSV(this, table_->nodeModel()->nodes(), name());
    });
    auto* footer = new QHBoxLayout;
    footer->setSpacing(Style::gap);
    footer->addWidget(footnote_, 1);
    footer->addWidget(export_);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(Style::gap + 2);
    layout->addWidget(filterBar_);
    layout->addWidget(table_, 1);
    layout->addLayout(footer);
    layout->addWidget(table_->makeSelectionBar());
}

} // namespace dorvik
