#pragma once

// The look every list of rows shares: whole rows selected, no grid, alternate rows shaded, no
// row numbers, rows of one height.

class QTableView;

namespace dorvik {

void styleListTable(QTableView* table, int rowHeight);

} // namespace dorvik
