#pragma once
// The arithmetic of the report windows, free of any window or database:
// the fee and signed amount of one trade (trade details), the 16-bit share
// totals, and one row of the profit and loss report.

#include <QString>
#include <QVariant>

#include <cstdint>

namespace reports {

// Which minimum fee a code's first two characters choose; codes outside the
// three classes get no minimum and show no fee.
enum class FeeClass { Shenzhen, Shanghai, None };
FeeClass feeClassOf(const QString &code);

struct TradeFee {
    float fee = 0;      // the fee the amount uses
    bool shown = false; // whether the fee column shows it
};

// Fee of one trade: price x shares x rate (rate in percent) rounded to a
// 32-bit whole number, divided by 100, held as a single; then raised to the
// minimum of its class when it is not above it. `minShenzhen` is the fee
// value at 税率表 position 3 ("00", "40"), `minShanghai` the one at position
// 4 ("60").
TradeFee tradeFee(double price, double shares, float rate, const QString &code, float minShenzhen, float minShanghai);

// Signed amount of a trade: price x shares plus the fee, in whole hundredths;
// negative for a purchase, positive for a sale (the fee is added either way).
double tradeAmount(double price, double shares, float fee, bool purchase);

// A sum(成交股数) result as a 16-bit share total: 0 when null, otherwise
// rounded and range-checked (overflow error outside -32768..32767).
int16_t shareTotal16(const QVariant &sum);

// One row of the profit and loss report, from the two aggregate queries of a
// stock: the sales' net proceeds and share sum, the purchases' cost and share
// sum (both null when the stock was never bought).
struct ProfitRow {
    QString averagePrice; // net selling price per share, to hundredths
    QString sharesSold;
    int16_t proceeds = 0; // P
    int16_t cost = 0;     // K
    int16_t profit = 0;   // P - K
};
ProfitRow profitRow(const QVariant &saleProceeds, const QVariant &sharesSold, const QVariant &purchaseCost,
                    const QVariant &sharesBought);

} // namespace reports
