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

// Opens a record set on `sqlText` into `kept` (replacing the previous one),
// clears the grid and, unless the result is empty, shows it: one header row of
// column names and one row per record; result column 0 is never shown and
// grid column 0 stays an empty column of 200 twips; a null or empty value
// shows "--". Row arithmetic is 16-bit. The result is always 0.
int16_t fillGridFromQuery(store::Database &db, ui::FlexGrid &grid, store::Recordset &kept, const QString &sqlText,
                          OnError onError);

// Deletes the record shown in grid row `row` of a grid filled from `kept`:
// first record, then row - 1 forward, delete. Nothing happens when `kept` is
// empty; row 0 leaves no current record and raises the engine's error.
// Tells whether a record was deleted.
bool deleteShownRecord(store::Recordset &kept, int row);

} // namespace reports
