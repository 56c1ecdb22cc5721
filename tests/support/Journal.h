#pragma once
// Rows put into and read back from a test journal through the record-set
// API, by position, the way the entry windows store them.

#include "store/Database.h"

#include <QDate>
#include <QList>
#include <QString>
#include <QVariant>

namespace testjournal {

// Appends the rows to `table`; an invalid value leaves its field unassigned.
inline void addRows(store::Database &db, const QString &table, const QList<QVariantList> &rows)
{
    store::Recordset rs = db.openRecordset(QStringLiteral("select * from ") + table);
    for (const QVariantList &row : rows) {
        rs.AddNew();
        for (int i = 0; i < row.size(); ++i)
            if (row[i].isValid())
                rs.setField(i, row[i]);
        rs.Update();
    }
}

inline void addRows(const QString &table, const QList<QVariantList> &rows)
{
    store::Database db = store::openUserDatabase();
    addRows(db, table, rows);
}

// A row of havewhat; an invalid name leaves 股票名称 unassigned.
struct Trade {
    QString code;
    QVariant name = QStringLiteral("股票");
    QDate date = QDate(2024, 3, 1);
    double price = 0, shares = 0;
    float rate = 0;
    bool buy = true;
    QString user = QStringLiteral("ALICE");
};

inline void addTrades(const QList<Trade> &trades)
{
    QList<QVariantList> rows;
    for (const Trade &t : trades) {
        const QString op = t.buy ? QStringLiteral("买进") : QStringLiteral("卖出");
        rows.append({t.user, t.code, t.name, t.date, t.price, t.shares, t.rate, op, op});
    }
    addRows(QStringLiteral("havewhat"), rows);
}

inline void addCash(double amount, bool deposit = true, const QString &user = QStringLiteral("ALICE"),
                    const QDate &date = QDate(2024, 1, 2), const QString &reason = QString())
{
    addRows(QStringLiteral("资金表"), {{user, date, amount, reason, deposit ? QStringLiteral("存入") : QStringLiteral("提取")}});
}

// Every row a query returns, each as its fields by position.
inline QList<QVariantList> rowsOf(const QString &sql)
{
    store::Database db = store::openUserDatabase();
    store::Recordset rs = db.openRecordset(sql);
    QList<QVariantList> rows;
    for (; !rs.EOF_(); rs.MoveNext()) {
        QVariantList row;
        for (int i = 0; i < rs.fieldCount(); ++i)
            row << rs.field(i);
        rows << row;
    }
    return rows;
}

// Rows of a table, optionally followed by a where clause.
inline int count(const QString &table)
{
    return rowsOf(QStringLiteral("select count(*) from ") + table).value(0).value(0).toInt();
}

} // namespace testjournal
