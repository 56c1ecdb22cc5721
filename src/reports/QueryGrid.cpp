#include "QueryGrid.h"

#include "base/ErrorGuard.h"
#include "base/Numbers.h"
#include "ui/FlexGrid.h"

namespace reports {

namespace {
constexpr int kNarrowColumn = 200; // twips

QString cellText(const QVariant &value)
{
    if (value.isNull())
        return QStringLiteral("--");
    const QString text = base::variantText(value);
    return text.isEmpty() ? QStringLiteral("--") : text;
}
} // namespace

int16_t fillGridFromQuery(store::Database &db, ui::FlexGrid &grid, store::Recordset &kept, const QString &sqlText,
                          OnError onError, FieldLayout layout)
{
    // Each statement goes through `run`; in continue-on-error mode a failing
    // one is skipped and the next runs.
    const auto run = [onError](auto &&statement) {
        if (onError == OnError::ResumeNext)
            base::resumeNext(statement);
        else
            statement();
    };

    // One change notice for the whole fill, not one per cell.
    const ui::FlexGrid::BulkUpdate bulk(grid);
    run([&] { kept = db.openRecordset(sqlText); });
    run([&] { grid.clear(); });
    bool empty = false;
    run([&] { empty = kept.BOF() && kept.EOF_(); });
    if (empty)
        return 0;

    int16_t n = 0;
    int cols = 0;
    run([&] { kept.MoveFirst(); });
    run([&] { kept.MoveLast(); });
    run([&] { n = base::toInt16(kept.RecordCount()); });
    run([&] { cols = kept.fieldCount(); });
    // Result column j is shown in grid column j + shift, from result column `first` on.
    const int first = layout == FieldLayout::SkipFirst ? 1 : 0;
    const int shift = layout == FieldLayout::SkipFirst ? 0 : 1;
    run([&] { grid.setCols(cols + shift); });
    run([&] { grid.setRows(base::add16(n, 1)); });
    run([&] { grid.setColWidth(0, kNarrowColumn); });
    grid.setValueFormat(cellText);
    for (int j = first; j < cols; ++j)
        run([&] { grid.setTextMatrix(0, j + shift, kept.fieldName(j)); });

    run([&] { kept.MoveFirst(); });
    if (n <= 0)
        return 0;
    // Row r shows the record set's row r - 1. The grid asks for the values of
    // the rows it shows, and the record set reads them then, so a fill costs
    // the rows on screen, not the rows of the query. A row that cannot be
    // read (deleted meanwhile, its handle closed) shows empty cells; a value
    // the engine cannot convert ends the program as it would have in a fill
    // that read every row.
    run([&] {
        grid.setValueSource(n, first + shift, cols - 1 + shift, [rows = kept.rows(), shift](int r, int c) {
            QVariant v;
            try {
                v = rows.value(r - 1, c - shift);
            } catch (const base::RuntimeError &e) {
                if (e.number() == store::ErrConversion)
                    base::reportFatal(e);
            }
            return v;
        });
    });
    // Where a fill row by row leaves the record set: after its last row.
    run([&] {
        kept.MoveLast();
        kept.MoveNext();
    });
    return 0;
}

bool deleteShownRecord(store::Recordset &kept, int row)
{
    if (kept.BOF() && kept.EOF_())
        return false;
    kept.MoveFirst();
    kept.Move(row - 1);
    kept.Delete();
    return true;
}

} // namespace reports
