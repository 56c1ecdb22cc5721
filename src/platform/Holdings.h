#pragma once
// The holdings valuation of the main window: per held stock the average cost,
// the shares held, the money put in and the present value, and for the account
// the market value, the net cash put in and the gain or loss in percent.
//
// It runs in continue-on-error mode: a statement that fails (a database error,
// a 16-bit overflow of a share sum, a division by zero) is skipped and the
// values it would have set keep what they held.

#include <QString>
#include <QStringList>

#include <array>
#include <functional>
#include <vector>

namespace store {
class Database;
}

namespace platform {

// Headers of the holdings grid, columns 0 to 7.
const QStringList &holdingsHeaders();

struct Holdings {
    // Data rows of the grid (grid row i + 1), cells 0 to 7; a cell whose
    // statement failed stays empty.
    std::vector<std::array<QString, 8>> rows;
    QString marketValue; // Text2 "持股市值"
    QString netFunds;    // Text1 "总投入资金"
    QString percent;     // Text3 "亏损": in/out, kept when it cannot be computed
};

// Latest close of a code: writes `price` only when the reader found bars.
using QuoteFn = std::function<void(const QString &code, float &price)>;

// Computes the holdings of `user` from havewhat and 资金表 on `db`.
// `out.percent` should hold the text Text3 shows now.
void HoldList(store::Database &db, const QString &user, const QuoteFn &quote, Holdings &out);

// The account figure of Text3: (marketTotal - V) / marketTotal * 10000,
// rounded half to even, / 100, in the leading-blank form with "%". V is the
// leading number of `netFundsText`. Raises the runtime error of the division
// when marketTotal is 0.
QString lossPercentText(float marketTotal, const QString &netFundsText);

} // namespace platform
