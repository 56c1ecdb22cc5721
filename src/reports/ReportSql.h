#pragma once
// The SQL texts of the report windows, pasted together exactly as the
// windows run them (values between single quotes, no escaping).

#include <QString>

namespace reports::sql {

// Trade details.
QString tradeCodes(const QString &user);
// sum(成交股数) of one code's purchases (buy = true) or sales.
QString shareSum(const QString &user, const QString &code, bool buy);
// The purchases (buy = true) or sales of one code, seven columns.
QString tradeRows(const QString &user, const QString &code, bool buy);

// Per-stock records.
QString stockRecords(const QString &user, const QString &code);

// Fund records.
QString fundRecords(const QString &user);

// Profit and loss.
QString soldCodes(const QString &user);
QString saleTotals(const QString &user, const QString &code);
QString purchaseTotals(const QString &user, const QString &code);
QString saleDates(const QString &user, const QString &code);

} // namespace reports::sql
