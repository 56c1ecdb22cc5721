#pragma once
// Shows an analysis table in the program's grid: header in row 0, the
// table's column j in grid column j + 1 (column 0 is the narrow empty one).

#include "analysis/Tables.h"

namespace ui {
class FlexGrid;
}

namespace analysis {

// `twips` gives the widths of the table's columns (missing ones get 1100).
void showTable(ui::FlexGrid &grid, const Table &table, std::initializer_list<int> twips = {});

} // namespace analysis
