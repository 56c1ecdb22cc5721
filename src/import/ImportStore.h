#pragma once
// Storing an import: the purchases and sales as the trade windows store them,
// the bank transfers as the deposit and withdrawal windows do, all in one
// transaction together with what identifies each imported row, so that the
// same statement (or an overlapping one) never adds a row twice.

#include "ImportPreview.h"

#include "store/Database.h"

namespace importer {

// The table that remembers imported rows: user, key, file, time of import.
inline const QString kImportedTable = QStringLiteral("导入记录");

// The keys imported before for `user` and the shares the journal holds per
// code (purchases minus sales). An account that never imported has no keys.
JournalState readJournalState(store::Database &db, const QString &user);

struct StoreResult {
    PreviewCounts stored;    // rows added now, by kind
    int alreadyImported = 0; // rows left out because they were imported before
    int skipped = 0;         // rows the preview skips
};

// Stores the rows of `rows` that willStore() (after checking their keys once
// more inside the transaction) for `user`, with the reason "导入 <fileName>".
// Everything or nothing: an error rolls back whatever was written and
// propagates. Opens and closes its own handle on the user database.
StoreResult storeImport(const QList<PreviewRow> &rows, const QString &user, const QString &fileName);

} // namespace importer
