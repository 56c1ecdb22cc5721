#pragma once
// Reading a broker's statement (交割单 or 资金流水) exported as text: the
// encoding, the separator, the heading line and what each column means are
// found from the bytes alone. Nothing here touches the journal.

#include <QByteArray>
#include <QDate>
#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

namespace importer {

// What a column of a statement holds. The fee columns are added up.
enum class Column {
    None,
    Date,
    Code,
    Name,
    Operation,
    Quantity,
    Price,
    Amount,     // 成交金额: price x quantity
    Commission, // fee columns from here ...
    StampDuty,
    TransferFee,
    OtherFee,  // ... to here
    NetAmount, // 发生金额: what the row did to the cash, fees included
    Balance,
    Contract,
};
constexpr int kColumnKinds = int(Column::Contract) + 1;

// The name shown for a meaning in the mapping controls ("（不用）" for None).
QString columnTitle(Column c);
// The meaning of a heading text, from the usual names and their variants.
Column columnFor(const QString &heading);
bool isFeeColumn(Column c);

struct StatementLine {
    int number = 0; // line number in the file, from 1
    QStringList cells;
};

struct StatementTable {
    QString error;    // not empty: the file cannot be read as a statement (why, in Chinese)
    QString encoding; // "GBK", "UTF-8", "UTF-8 BOM", "UTF-16"
    QChar separator;  // tab, comma or semicolon
    int headingLine = 0;
    QStringList headings;
    QList<Column> columns;      // the meaning found for each heading
    QList<StatementLine> lines; // the lines below the heading, blank ones left out
};

// Reads any bytes; never throws. A table with an error has no lines.
StatementTable readStatement(const QByteArray &bytes);
// The same for a file (a missing or oversized file is an error of the table).
StatementTable readStatementFile(const QString &path);

// The reason a mapping cannot serve (no date or no operation column), or an
// empty text.
QString mappingProblem(const QList<Column> &columns);

// Cell values as brokers write them: full-width digits, thousands
// separators, a spreadsheet's ="..." wrapper, a currency sign. An empty
// cell is 0; nullopt when the text is not a number.
std::optional<double> cellNumber(const QString &cell);
// 20240105, 2024-01-05, 2024/1/5, 2024.1.5, 2024年1月5日, with or without a
// time after a blank; an invalid date otherwise.
QDate cellDate(const QString &cell);
// The text of a cell without the ="..." wrapper, full-width forms folded.
QString cellText(const QString &cell);

} // namespace importer
