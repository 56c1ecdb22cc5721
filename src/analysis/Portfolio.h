#pragma once
// The investment analysis of one account, replayed day by day from its
// journal: shares and cost basis per stock by moving average or first in,
// first out; the realised result of every sale; fees, dividends and the
// corporate actions on their ex-dates; cash, market value, total return and
// the money-weighted annual return. No window, no database: plain values in,
// plain values out.
//
// A journal row that cannot be applied (a sale of more than is held, a
// quantity that is not a positive whole number, a price that is not
// positive, an invalid date) is left out of every figure and carries its
// explanation in `problem`; a trade dated before the first deposit is counted
// and only flagged.

#include "Journal.h"

#include <QDate>
#include <QString>

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <vector>

namespace analysis {

enum class CostMethod { MovingAverage, Fifo };

// Daily closes of one stock, ascending by date (YYYYMMDD).
struct ClosePoint {
    int32_t date = 0;
    float close = 0;
};
using PriceHistory = std::map<QString, std::vector<ClosePoint>>;

struct TradeResult {
    TradeRow row;
    int64_t shares = 0;   // whole shares (0 when the row is left out)
    int64_t grossFen = 0; // price x shares
    int64_t feeFen = 0;
    int64_t cashFen = 0;     // the cash effect: - (gross + fee) for a purchase, gross - fee for a sale
    int64_t costFen = 0;     // the cost basis of the shares sold (sales)
    int64_t realisedFen = 0; // cashFen - costFen (sales)
    bool applied = false;
    QString problem;
};

struct ActionResult {
    CorporateAction action;
    int64_t heldBefore = 0;
    int64_t newShares = 0;   // bonus, converted, booked and taken-up rights shares
    int64_t dividendFen = 0; // net of tax
    int64_t taxFen = 0;
    int64_t rightsCostFen = 0;
    bool applied = false;
    QString problem;
};

struct StockResult {
    QString code;
    QString name;
    int64_t shares = 0;
    int64_t costFen = 0;        // cost basis of the shares held
    std::optional<float> close; // latest close, none when no price file has the stock
    int64_t marketFen = 0;      // shares x close, or the cost when there is no close
    int64_t unrealisedFen = 0;
    int64_t realisedFen = 0;
    int64_t feesFen = 0;
    int64_t dividendFen = 0; // net of tax
};

struct Summary {
    int64_t depositsFen = 0;
    int64_t withdrawalsFen = 0;
    int64_t investedFen = 0; // deposits - withdrawals
    int64_t cashFen = 0;
    int64_t marketFen = 0;
    int64_t valueFen = 0;                // market + cash
    int64_t returnFen = 0;               // value - invested
    std::optional<double> returnPercent; // of the money invested
    std::optional<double> xirr;          // money-weighted annual return, 0.1 = 10%
    int64_t realisedFen = 0;
    int64_t unrealisedFen = 0;
    int64_t feesFen = 0;
    int64_t dividendFen = 0;
    int64_t costFen = 0;
};

struct Analysis {
    std::vector<StockResult> stocks; // every code traded, by code
    std::vector<TradeResult> trades; // the journal's order (by date)
    std::vector<ActionResult> actions;
    Summary summary;
};

// The analysis as of `asOf` (the day the money-weighted return is measured
// at), with the latest close of each stock taken from `prices`.
Analysis analyse(const Journal &journal, CostMethod method, const PriceHistory &prices, const QDate &asOf);

// One day of the value series.
struct ValuePoint {
    QDate date;
    int64_t valueFen = 0;    // market value at the day's closes + cash
    int64_t investedFen = 0; // deposits - withdrawals so far
};

// Day by day from the first journal date to the latest close in `prices`
// (or the last journal date when that is later). A stock without a close yet
// is valued at the price of its last trade.
std::vector<ValuePoint> valueSeries(const Journal &journal, const PriceHistory &prices);

// Shares of `code` held at the end of the day before `date`.
int64_t sharesHeldBefore(const Journal &journal, const QString &code, const QDate &date);

// Gross cash dividend of an action on `held` shares, in fen.
int64_t grossDividendFen(const CorporateAction &action, int64_t held);

// Money-weighted annual return of dated flows (money paid in negative, paid
// out positive): the rate r with sum(flow / (1 + r)^(days / 365)) = 0.
// None when it is not defined (no flows of both signs, no root).
struct Flow {
    QDate date;
    double amount = 0;
};
std::optional<double> xirr(const std::vector<Flow> &flows);

} // namespace analysis
