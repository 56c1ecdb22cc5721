#pragma once
// Rows put into and read back from a test journal through the record-set
// API, by position, the way the entry windows store them.

#include "store/Database.h"

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
    db.close();
    return rows;
}

} // namespace testjournal
