#pragma once
// Storing one cash movement in 资金表. The deposit and withdrawal windows
// share this code; their differences are one row each of the CashKind table.

#include <QDate>
#include <QString>
#include <QStringList>

namespace store {
class Recordset;
}

namespace entry {

struct CashKind {
    QString captionWord; // appended to the user name in the caption
    QStringList labels;  // Label1 .. Label3: date, amount, reason
    QString operation;   // 操作表示
    bool numericReason;  // the reason column gets the numeric value of the reason text
};

inline const CashKind kDeposit{
    QStringLiteral("  存入资金"),
    {QStringLiteral("存入资金日期"), QStringLiteral("存入资金数量"), QStringLiteral("存入资金原因")},
    QStringLiteral("存入"),
    /*numericReason*/ false};

inline const CashKind kWithdrawal{
    QStringLiteral("  提取资金"),
    {QStringLiteral("提取资金日期"), QStringLiteral("提取资金数量"), QStringLiteral("提取资金原因")},
    QStringLiteral("提取"),
    /*numericReason*/ true};

inline const QString kCashQuery = QStringLiteral("select * from 资金表");

// The contents of the boxes as typed and the picker's date.
struct CashInput {
    QString user;
    QDate date;
    QString amount;
    QString reason;
};

// Assigns every column of the row that `rs` (a record set on kCashQuery) has
// started with AddNew, as `kind`'s window fills it, and updates it.
void putCash(store::Recordset &rs, const CashKind &kind, const CashInput &input);

// Opens the user database, appends the row and closes the handle. Nothing is
// checked; engine errors and number overflows propagate.
void storeCash(const CashKind &kind, const CashInput &input);

} // namespace entry
