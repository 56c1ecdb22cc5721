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

void putTrade(store::Recordset &rs, const TradeRow &row)
{
    rs.setField(colUser, row.user);
    rs.setField(colCode, row.code);
    rs.setField(colName, row.name);
    rs.setField(colDate, row.date);
    rs.setField(colPrice, row.price);
    rs.setField(colShares, row.shares);
    rs.setField(colFeeRate, row.feeRate);
    rs.setField(colOperation, row.operation);
    rs.setField(colReason, row.reason);
    rs.Update();
}

QString storeTrade(const TradeKind &kind, const TradeInput &input)
{
    store::Database db = store::openUserDatabase();
    store::Recordset rs = db.openRecordset(kTradeQuery);
    rs.AddNew();
    TradeRow row;
    row.user = input.user;
    row.code = input.code.trimmed();
    row.name = orDefault(input.name, kDefaultStockName);
    row.date = input.date;

    // The buy window reads the numbers before its checks, so a number that
    // overflows there wins over a missing code; the sell window after them.
    auto readNumbers = [&] {
        row.price = base::val(input.price);
        row.shares = base::val(input.quantity);
    };
    if (kind.numbersBeforeChecks)
        readNumbers();

    const QString refusal = refusalFor(kind, input);
    if (!refusal.isEmpty()) {
        rs.CancelUpdate();
        return refusal;
    }

    if (!kind.numbersBeforeChecks)
        readNumbers();
    row.feeRate = feeRateForCode(input.code);
    row.operation = kind.operation;
    row.reason = orDefault(input.reason, kind.operation);
    putTrade(rs, row);
    db.close();
    return {};
}

} // namespace entry
