#include "ui/widgets/ListTable.h"

#include <QHeaderView>
#include <QTableView>

namespace dorvik {

void styleListTable(QTableView* table, int rowHeight) {
    table->setSelectionBehavior(QAbstractItemView::SelectRows);
    table->setSelectionMode(QAbstractItemView::ExtendedSelection);
    table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    // Tab leaves the table for the next control; only the arrows move the current row, so no
    // key meant for the window changes what a deletion would take.
    table->setTabKeyNavigation(false);
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
