#pragma once
// The four tables of user2.mdb, in their column positions, and the code that
// makes a new journal file (used by the delivery tool and by the tests).

#include <QString>

namespace store {

// Column names of the positions the program addresses.
namespace user_col {
inline const QString id = QStringLiteral("id");             // 0
inline const QString username = QStringLiteral("username"); // 1
inline const QString password = QStringLiteral("password"); // 2
inline const QString power = QStringLiteral("power");       // 3
} // namespace user_col

// The columns the original left unnamed.
inline const QString kTradeReasonColumn = QStringLiteral("操作原因"); // havewhat position 8
inline const QString kCashReasonColumn = QStringLiteral("操作原因");  // 资金表 position 3
// 税率表: position 0 is a row number, 1 to 6 the settings.
inline const QString kFeeColumns[7] = {
    QStringLiteral("编号"),
    QStringLiteral("A股交易费率"),
    QStringLiteral("基金交易费率"),
    QStringLiteral("深圳最低收费"),
    QStringLiteral("上海最低收费"),
    QStringLiteral("上海B股交易费率"),
    QStringLiteral("深圳B股交易费率"),
};

// Dates (成交日期, 操作日期) are stored as ISO text "yyyy-MM-dd" (with
// " HH:mm:ss" when a time is kept), so that "order by" sorts them; record
// sets hand them out as QDate / QDateTime.

// The administrator account of a new file.
inline const QString kAdminName = QStringLiteral("supervisor");
inline const QString kAdminPassword = QStringLiteral("tessaly");
inline const QString kAdminRole = QStringLiteral("System");

// The fee row of a new file: columns 1 to 6 of 税率表.
// 1 A-share rate %, 2 fund rate %, 3 Shenzhen minimum, 4 Shanghai minimum,
// 5 Shanghai B rate % (codes 900), 6 Shenzhen B rate % (codes 200).
struct FeeRow {
    float values[6] = {0.35f, 0.25f, 5.0f, 5.0f, 0.4f, 0.4f};
};

// Creates a new encrypted journal file at `path` (a real path, not resolved)
// with the four tables, the administrator account and one fee row.
// Fails with a runtime error when the file exists already.
void createJournal(const QString &path, const QString &password = QStringLiteral("qtr.vemblox.nzk"),
                   const FeeRow &fees = FeeRow());

} // namespace store
