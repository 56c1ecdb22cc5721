#include "TradeEntry.h"

#include "StockCodeRules.h"

#include "base/Numbers.h"
#include "store/Database.h"

namespace entry {

namespace {

// havewhat columns by position.
enum TradeColumn {
    colUser = 0,
    colCode = 1,
    colName = 2,
    colDate = 3,
    colPrice = 4,
    colShares = 5,
    colFeeRate = 6,
    colOperation = 7,
    colReason = 8,
};

QString orDefault(const QString &text, const QString &fallback)
{
    const QString t = text.trimmed();
    return t.isEmpty() ? fallback : t;
}

QString refusalFor(const TradeKind &kind, const TradeInput &input)
{
    if (input.code.isEmpty())
        return kNoCodeMessage;
    if (input.quantity.isEmpty())
        return kind.quantityMessage;
    return {};
}

} // namespace

QString storeTrade(const TradeKind &kind, const TradeInput &input)
{
    store::Database db = store::openUserDatabase();
    store::Recordset rs = db.openRecordset(kTradeQuery);
    rs.AddNew();
    rs.setField(colUser, input.user);
    rs.setField(colCode, input.code.trimmed());
    rs.setField(colName, orDefault(input.name, kDefaultStockName));
    rs.setField(colDate, input.date);

    auto putNumbers = [&] {
        rs.setField(colPrice, base::val(input.price));
        rs.setField(colShares, base::val(input.quantity));
    };
    if (kind.numbersBeforeChecks)
        putNumbers();

    const QString refusal = refusalFor(kind, input);
    if (!refusal.isEmpty()) {
        rs.CancelUpdate();
        return refusal;
    }

    if (!kind.numbersBeforeChecks)
        putNumbers();
    rs.setField(colFeeRate, feeRateForCode(input.code));
    rs.setField(colOperation, kind.operation);
    rs.setField(colReason, orDefault(input.reason, kind.operation));
    rs.Update();
    db.close();
    return {};
}

} // namespace entry
