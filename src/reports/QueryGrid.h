#pragma once
// The query-to-grid routine of the record windows and their positional
// delete.

#include "store/Database.h"

#include <QString>

#include <cstdint>

namespace ui {
class FlexGrid;
}

namespace reports {

// How the fill treats an error: stop and let it propagate, or drop it and go
// on with the next statement (the fund records window).
enum class OnError { Raise, ResumeNext };

// Which result columns the grid shows. Grid column 0 is always the empty
// narrow column. SkipFirst (the record windows): result column j goes to
// grid column j and result column 0 (userid) is never shown. AllFields (the
// main window's raw view): result column j goes to grid column j + 1.
enum class FieldLayout { SkipFirst, AllFields };

// Opens a record set on `sqlText` into `kept` (replacing the previous one),
// clears the grid and, unless the result is empty, shows it: one header row of
// column names and one row per record, column 0 an empty column of 200
// twips, "--" for a null or empty value. Row arithmetic is 16-bit. The
// result is always 0.
int16_t fillGridFromQuery(store::Database &db, ui::FlexGrid &grid, store::Recordset &kept, const QString &sqlText,
                          OnError onError, FieldLayout layout = FieldLayout::SkipFirst);

// Deletes the record shown in grid row `row` of a grid filled from `kept`:
// first record, then row - 1 forward, delete. Nothing happens when `kept` is
// empty; row 0 leaves no current record and raises the engine's error.
// Tells whether a record was deleted.
bool deleteShownRecord(store::Recordset &kept, int row);

} // namespace reports
