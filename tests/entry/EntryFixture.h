#pragma once
// Entry tests' set-up: a fresh journal, recorded message boxes, distinct fee
// values per column (a wrong column shows), an empty stock list; helpers to
// read stored rows and to fill and confirm a window.

#include "support/Helpers.h"

#include "marketdata/StockList.h"
#include "store/FeeRates.h"

#include <QDateEdit>

namespace entrytest {

// Fee column n holds n + 0.5, so the stored rate names its column.
inline float feeOfColumn(int n) { return static_cast<float>(n) + 0.5f; }

// All rows of a table, each as its fields by position.
inline QList<QVariantList> storedRows(const QString &table)
{
    return testjournal::rowsOf(QStringLiteral("select * from ") + table);
}

inline QLineEdit *box(QWidget &w, int n) { return w.findChild<QLineEdit *>(QStringLiteral("Text%1").arg(n)); }

// Puts the texts into Text2, Text3, ... and presses 确认.
inline void confirmWith(QWidget &w, const QStringList &texts)
{
    for (int i = 0; i < texts.size(); ++i)
        retype(box(w, i + 2), texts[i]);
    QTest::mouseClick(child<QPushButton>(w, "Command2"), Qt::LeftButton);
}

// Text2 .. Text<last>.
inline QStringList boxTexts(QWidget &w, int last)
{
    QStringList texts;
    for (int n = 2; n <= last; ++n)
        texts << box(w, n)->text();
    return texts;
}

// A window of type W for `user`, shown, its date set to `day`.
template <typename W>
std::unique_ptr<W> openWindow(const QString &user, const QDate &day)
{
    auto w = std::make_unique<W>();
    w->GetMame(user, QStringLiteral("user"));
    w->show();
    child<QDateEdit>(*w, "DTPicker1")->setDate(day);
    return w;
}

class EntryTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        for (int c = 1; c <= 6; ++c)
            store::setFeeValue(c, feeOfColumn(c));
        marketdata::clearStockList();
    }
    void TearDown() override { marketdata::clearStockList(); }

    TestFolder folder;
    QStringList messages;
    const MessageRecorder recording{messages};
};

} // namespace entrytest
