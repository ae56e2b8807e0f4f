#include "ui/widgets/ListTable.h"

#include <QHeaderView>
#include <QTableView>

namespace dorvik {

void styleListTable(QTableView* table, int rowHeight) {
    table->setSelectionBehavior(QAbstractItemView::SelectRows);
    table->setSelectionMode(QAbstractItemView::ExtendedSelection);
    table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    table->setShowGrid(false);
    table->setFrameShape(QFrame::NoFrame);
    table->setAlternatingRowColors(true);
    table->setWordWrap(false);
    table->verticalHeader()->hide();
    table->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    table->verticalHeader()->setDefaultSectionSize(rowHeight);
    table->horizontalHeader()->setHighlightSections(false);
}

} // namespace dorvik
