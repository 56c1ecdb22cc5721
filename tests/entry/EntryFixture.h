#pragma once
// Shared set-up of the entry tests: a temporary program folder with a fresh
// journal, message boxes recorded, distinct fee values per column so that a
// wrong column shows, an empty stock list; and helpers to read stored rows
// and to find controls by name.

#include "support/TestFolder.h"

#include "marketdata/StockList.h"
#include "store/Database.h"
#include "store/FeeRates.h"
#include "ui/MsgBox.h"

#include <QDateEdit>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVariant>
#include <QWidget>

#include <gtest/gtest.h>

#include <ostream>

// Readable texts in failure messages.
inline void PrintTo(const QString &s, std::ostream *os) { *os << '"' << s.toStdString() << '"'; }
inline void PrintTo(const QStringList &l, std::ostream *os) { *os << '[' << l.join(u'|').toStdString() << ']'; }

namespace entrytest {

// Fee column n holds n + 0.5, so the stored rate names its column.
inline float feeOfColumn(int n) { return static_cast<float>(n) + 0.5f; }

inline void setDistinctFees()
{
    for (int c = 1; c <= 6; ++c)
        store::setFeeValue(c, feeOfColumn(c));
}

// All rows of a table, each as its fields by position.
inline QList<QVariantList> storedRows(const QString &table)
{
    store::Database db = store::openUserDatabase();
    store::Recordset rs = db.openRecordset(QStringLiteral("select * from ") + table);
    QList<QVariantList> rows;
    while (!rs.EOF_()) {
        QVariantList row;
        for (int i = 0; i < rs.fieldCount(); ++i)
            row.append(rs.field(i));
        rows.append(row);
        rs.MoveNext();
    }
    db.close();
    return rows;
}

template <typename T>
T *control(QWidget &window, const char *name)
{
    T *w = window.findChild<T *>(QString::fromLatin1(name));
    EXPECT_NE(w, nullptr) << name;
    return w;
}

class EntryTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        ui::setMsgBoxRecorder(&messages);
        setDistinctFees();
        marketdata::clearStockList();
    }
    void TearDown() override
    {
        ui::setMsgBoxRecorder(nullptr);
        marketdata::clearStockList();
    }

    TestFolder folder;
    QStringList messages;
};

} // namespace entrytest
