#include "Holdings.h"

#include "base/ErrorGuard.h"
#include "base/Numbers.h"
#include "store/Database.h"
#include "store/SqlText.h"

namespace platform {

using base::divide;
using base::resumeNext;

namespace {

// First field of the first row of a one-value query (a null QVariant for a
// sum over no rows).
QVariant scalar(store::Database &db, const QString &sql)
{
    store::Recordset rs = db.openRecordset(sql);
    return rs.field(0);
}

} // namespace

const QStringList &holdingsHeaders()
{
    static const QStringList headers = {QString(),
                                        QStringLiteral("股票代码"),
                                        QStringLiteral("股票名称"),
                                        QStringLiteral("平均价格"),
                                        QStringLiteral("持有股数"),
                                        QStringLiteral("交易总价"),
                                        QStringLiteral("现在总价"),
                                        QStringLiteral("浮动赢亏")};
    return headers;
}

QString lossPercentText(float marketTotal, const QString &netFundsText)
{
    const double v = base::val(netFundsText);
    const double ratio = divide(double(marketTotal) - v, double(marketTotal)) * 10000.0;
    const int32_t whole = base::toInt32(ratio);
    return base::signedForm(double(whole) / 100.0) + u'%';
}

void HoldList(store::Database &db, const QString &user, const QuoteFn &quote, Holdings &out)
{
    out.rows.clear();
    // Some thousand sums of one journal: one read transaction for all.
    const store::ReadBatch batch(db);
    const QString who = QStringLiteral(" from havewhat where userid='") + store::pasteText(user) + u'\'';
    float price = 0.0f;
    float marketTotal = 0.0f;
    float costTotal = 0.0f;

    store::Recordset codes;
    bool empty = true;
    resumeNext([&] {
        codes = db.openRecordset(QStringLiteral("select distinct 股票代码") + who);
        empty = codes.BOF() && codes.EOF_();
    });

    if (!empty) {
        int count = 0;
        resumeNext([&] {
            codes.MoveFirst();
            count = codes.RecordCount();
        });
        int16_t row = 1; // next grid row: insertion at this position, 16-bit
        int16_t sold = 0;
        int16_t bought = 0;
        int16_t held = 0;
        float costIn = 0.0f;
        float proceeds = 0.0f;
        for (int i = 0; i < count; ++i) {
            QString code;
            resumeNext([&] { code = base::variantText(codes.field(0)); });
            const QString ofCode = QStringLiteral(" and 股票代码='") + store::pasteText(code) + u'\'';
            const QString sellRows = who + QStringLiteral(" and 操作记录='卖出'") + ofCode;
            const QString buyRows = who + QStringLiteral(" and 操作记录='买进'") + ofCode;

            resumeNext([&] {
                const QVariant v = scalar(db, QStringLiteral("select sum(成交股数)") + sellRows);
                sold = v.isNull() ? int16_t(0) : base::toInt16(v.toDouble());
            });
            resumeNext([&] {
                const QVariant v = scalar(db, QStringLiteral("select sum(成交股数)") + buyRows);
                bought = v.isNull() ? int16_t(0) : base::toInt16(v.toDouble());
            });
            resumeNext([&] { held = base::sub16(bought, sold); });
            // The share-based cells take bought - sold afresh: when the
            // difference overflows, they stay unwritten (held may still be
            // the previous code's and shows the row).
            const auto shares = [&] { return base::sub16(bought, sold); };

            if (held > 0) {
                resumeNext([&] {
                    const QVariant v =
                        scalar(db, QStringLiteral("select sum(成交价格*成交股数*(1+交易费率/100))") + buyRows);
                    costIn = v.isNull() ? 0.0f : base::toSingle(v.toDouble());
                });
                resumeNext([&] {
                    const QVariant v =
                        scalar(db, QStringLiteral("select sum(成交价格*成交股数*(1-交易费率/100))") + sellRows);
                    proceeds = v.isNull() ? 0.0f : base::toSingle(v.toDouble());
                });
                (void)proceeds; // queried like the other sums, but nothing uses it
                resumeNext([&] { quote(code, price); });

                std::array<QString, 8> cells;
                resumeNext([&] { cells[1] = code; });
                resumeNext([&] { cells[2] = QStringLiteral(" "); });
                resumeNext([&] { cells[3] = base::singleText(base::toSingle(divide(costIn, bought))); });
                resumeNext([&] { cells[4] = QString::number(shares()); });
                resumeNext([&] { cells[5] = base::singleText(base::toSingle(divide(costIn, bought) * shares())); });
                resumeNext([&] { cells[6] = base::singleText(base::toSingle(double(price) * shares())); });
                resumeNext([&] {
                    cells[7] =
                        base::singleText(base::toSingle(double(price) * shares() - divide(costIn, bought) * shares()));
                });
                // Inserted at position row (a row past the end fails and is skipped).
                resumeNext([&] {
                    if (row > int(out.rows.size()) + 1)
                        base::raiseSubscript();
                    out.rows.insert(out.rows.begin() + (row - 1), cells);
                });

                resumeNext([&] { marketTotal = base::toSingle(double(marketTotal) + double(price) * shares()); });
                resumeNext([&] { costTotal = base::toSingle(double(costTotal) + divide(costIn, bought) * shares()); });
                resumeNext([&] { row = base::add16(row, 1); });
            }
            resumeNext([&] { codes.MoveNext(); });
        }
    }
    (void)costTotal; // kept like the original figure, shown nowhere

    out.marketValue = base::singleText(marketTotal);

    float deposits = 0.0f;
    float withdrawals = 0.0f;
    const QString funds =
        QStringLiteral("select sum(资金数量) from 资金表 where userid='") + store::pasteText(user) + u'\'';
    resumeNext([&] {
        const QVariant v = scalar(db, funds + QStringLiteral(" and 操作表示='存入'"));
        deposits = v.isNull() ? 0.0f : base::toSingle(v.toDouble());
    });
    resumeNext([&] {
        const QVariant v = scalar(db, funds + QStringLiteral(" and 操作表示='提取'"));
        withdrawals = v.isNull() ? 0.0f : base::toSingle(v.toDouble());
    });
    out.netFunds = base::singleText(base::toSingle(double(deposits) - double(withdrawals)));
    resumeNext([&] { out.percent = lossPercentText(marketTotal, out.netFunds); });
}

} // namespace platform
