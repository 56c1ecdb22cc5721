#pragma once
// What an import would store, row by row: each statement line becomes a
// purchase, sale, deposit, withdrawal, dividend, dividend tax, bonus shares,
// or a skipped line, with a Chinese reason wherever it is skipped or doubtful.

#include "StatementFile.h"

#include "analysis/CorporateActions.h"

#include <QHash>
#include <QList>
#include <QSet>
#include <QString>
#include <QStringList>

namespace importer {

enum class RowKind { Buy, Sell, Deposit, Withdrawal, Dividend, DividendTax, BonusShares, Skipped };
QString kindTitle(RowKind kind);
// Dividends, their tax and bonus shares: actions of a company, not journal rows.
bool isCorporateAction(RowKind kind);

struct PreviewRow {
    int line = 0; // in the file
    RowKind kind = RowKind::Skipped;
    QDate date;
    QString code;
    QString name;
    double price = 0;
    double quantity = 0; // shares (trades, bonus shares)
    double amount = 0;   // money (cash movements, dividends, tax)
    qint64 feeFen = 0;   // the broker's fees of a trade, in fen
    float feeRate = 0;   // the rate stored with a trade, in percent
    QString key;         // what identifies the row when the statement is imported again
    QString note;        // why it is skipped, or what is doubtful about it
    bool alreadyImported = false;

    bool willStore() const { return kind != RowKind::Skipped && !alreadyImported; }
};

// What the journal holds already, read before the preview.
struct JournalState {
    QSet<QString> importedKeys;
    QHash<QString, double> heldShares; // by code: bought - sold
};

// The rate in percent (single precision) with which price x quantity x rate,
// rounded to whole fen as the trade details round it, gives back `feeFen`
// (or comes as close as a single allows).
float rateForFee(double price, double quantity, qint64 feeFen);

// Classifies the lines of `table` read with the meanings `columns`. Sales of
// more shares than are held (journal plus the statement's earlier rows) and
// fees that the trade details would raise to their minimum are flagged;
// rows whose key is in `journal.importedKeys` are marked as imported before.
QList<PreviewRow> classify(const StatementTable &table, const QList<Column> &columns, const JournalState &journal);

// A dividend, its tax or bonus shares as the analysis stores them: what the
// broker booked on the statement's date, with `note`.
analysis::CorporateAction actionOf(const PreviewRow &row, const QString &note);

struct PreviewCounts {
    int trades = 0, deposits = 0, withdrawals = 0, actions = 0, alreadyImported = 0, skipped = 0;
};
PreviewCounts countRows(const QList<PreviewRow> &rows);
// "买卖 3 笔，存入 1 笔，…" as the window and the tool report it.
QString countsText(const PreviewCounts &counts);

// One row as the preview grid and the dry run show it.
QStringList previewHeadings();
QStringList previewCells(const PreviewRow &row);

} // namespace importer
