#include "CashEntry.h"

#include "base/Numbers.h"
#include "store/Database.h"

#include <QVariant>

namespace entry {

namespace {

// 资金表 columns by position.
enum CashColumn {
    colUser = 0,
    colDate = 1,
    colAmount = 2,
    colReason = 3,
    colOperation = 4,
};

} // namespace

void putCash(store::Recordset &rs, const CashKind &kind, const CashInput &input)
{
    rs.setField(colUser, input.user);
    rs.setField(colDate, input.date);
    rs.setField(colAmount, base::val(input.amount.trimmed()));
    const QString reason = input.reason.trimmed();
    rs.setField(colReason, kind.numericReason ? QVariant(base::val(reason)) : QVariant(reason));
    rs.setField(colOperation, kind.operation);
    rs.Update();
}

void storeCash(const CashKind &kind, const CashInput &input)
{
    store::Database db = store::openUserDatabase();
    store::Recordset rs = db.openRecordset(kCashQuery);
    rs.AddNew();
    putCash(rs, kind, input);
    db.close();
}

} // namespace entry
