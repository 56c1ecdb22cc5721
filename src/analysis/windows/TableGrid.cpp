#include "TableGrid.h"

#include "ui/FlexGrid.h"

namespace analysis {

void showTable(ui::FlexGrid &grid, const Table &table, std::initializer_list<int> twips)
{
    const ui::FlexGrid::BulkUpdate bulk(grid);
    grid.clear();
    const int cols = int(table.headers.size()) + 1;
    grid.setCols(cols);
    grid.setRows(int(table.rows.size()) + 1);
    grid.setColWidth(0, 200);
    for (int c = 1; c < cols; ++c) {
        const size_t k = size_t(c - 1);
        grid.setColWidth(c, k < twips.size() ? twips.begin()[k] : 1100);
        grid.setTextMatrix(0, c, table.headers[c - 1]);
    }
    for (size_t r = 0; r < table.rows.size(); ++r)
        for (int c = 1; c < cols && c - 1 < table.rows[r].size(); ++c)
            grid.setTextMatrix(int(r) + 1, c, table.rows[r][c - 1]);
}

} // namespace analysis
