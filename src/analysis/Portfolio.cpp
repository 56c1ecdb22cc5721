#include "Portfolio.h"

#include "Money.h"

#include <algorithm>
#include <cmath>
#include <deque>

namespace analysis {

namespace {

// Ratios per 10 shares in ten-thousandths: held x ratio / (10 x 10000).
constexpr int64_t kPer10 = 100000;

struct Lot {
    int64_t shares = 0;
    int64_t costFen = 0;
};

struct Position {
    QString name;
    std::deque<Lot> lots; // one lot under the moving average
    int64_t shares = 0;
    int64_t costFen = 0;
    int64_t realisedFen = 0;
    int64_t feesFen = 0;
    int64_t dividendFen = 0;
    double lastPrice = 0; // of the last applied trade
};

int64_t floorDiv(Int128 num, Int128 den) { return int64_t(num / den); } // both non-negative here

// Replays the journal in date order; on each day the corporate actions come
// first (they act on the holding at the end of the day before), then the cash
// movements and the trades in their stored order.
class Replay {
public:
    Replay(const Journal &journal, CostMethod method) : m_journal(journal), m_method(method)
    {
        for (const CashRow &c : journal.cash)
            if (c.deposit && c.date.isValid() && (!m_firstDeposit.isValid() || c.date < m_firstDeposit))
                m_firstDeposit = c.date;
        for (const TradeRow &t : journal.trades)
            trades.push_back(TradeResult{t, 0, 0, 0, 0, 0, 0, false, QString()});
        for (const CorporateAction &a : journal.actions)
            actions.push_back(ActionResult{a, 0, 0, 0, 0, 0, false, QString()});
        order(m_tradeOrder, journal.trades, [](const TradeRow &t) { return t.date; });
        order(m_cashOrder, journal.cash, [](const CashRow &c) { return c.date; });
        order(m_actionOrder, journal.actions, [](const CorporateAction &a) { return a.exDate; });
        for (TradeResult &t : trades)
            if (!t.row.date.isValid())
                t.problem = QStringLiteral("成交日期无效");
        for (ActionResult &a : actions)
            if (!a.action.exDate.isValid())
                a.problem = QStringLiteral("除权日期无效");
    }

    // Applies everything dated up to and including `day`.
    void runTo(const QDate &day)
    {
        for (;;) {
            QDate next;
            const auto consider = [&](const QDate &d) {
                if (!next.isValid() || d < next)
                    next = d;
            };
            if (m_ai < m_actionOrder.size())
                consider(actions[m_actionOrder[m_ai]].action.exDate);
            if (m_ci < m_cashOrder.size())
                consider(m_journal.cash[m_cashOrder[m_ci]].date);
            if (m_ti < m_tradeOrder.size())
                consider(trades[m_tradeOrder[m_ti]].row.date);
            if (!next.isValid() || next > day)
                return;
            while (m_ai < m_actionOrder.size() && actions[m_actionOrder[m_ai]].action.exDate == next)
                applyAction(actions[m_actionOrder[m_ai++]]);
            while (m_ci < m_cashOrder.size() && m_journal.cash[m_cashOrder[m_ci]].date == next)
                applyCash(m_journal.cash[m_cashOrder[m_ci++]]);
            while (m_ti < m_tradeOrder.size() && trades[m_tradeOrder[m_ti]].row.date == next)
                applyTrade(trades[m_tradeOrder[m_ti++]]);
        }
    }

    // The first and last valid dates of the journal (invalid when empty).
    QDate firstDate() const { return edge(true); }
    QDate lastDate() const { return edge(false); }

    std::map<QString, Position> positions;
    std::vector<TradeResult> trades;
    std::vector<ActionResult> actions;
    int64_t cashFen = 0;
    int64_t depositsFen = 0;
    int64_t withdrawalsFen = 0;
    std::vector<Flow> flows;

private:
    template <typename Row, typename DateOf>
    static void order(std::vector<size_t> &out, const std::vector<Row> &rows, DateOf dateOf)
    {
        for (size_t i = 0; i < rows.size(); ++i)
            if (dateOf(rows[i]).isValid())
                out.push_back(i);
        std::stable_sort(out.begin(), out.end(), [&](size_t a, size_t b) { return dateOf(rows[a]) < dateOf(rows[b]); });
    }

    QDate edge(bool first) const
    {
        QDate d;
        const auto consider = [&](const QDate &x) {
            if (x.isValid() && (!d.isValid() || (first ? x < d : x > d)))
                d = x;
        };
        for (size_t i : m_tradeOrder)
            consider(m_journal.trades[i].date);
        for (size_t i : m_cashOrder)
            consider(m_journal.cash[i].date);
        for (size_t i : m_actionOrder)
            consider(m_journal.actions[i].exDate);
        return d;
    }

    void applyCash(const CashRow &c)
    {
        const auto fen = fenOf(c.amount);
        if (!fen)
            return;
        if (c.deposit) {
            depositsFen += *fen;
            cashFen += *fen;
        } else {
            withdrawalsFen += *fen;
            cashFen -= *fen;
        }
        flows.push_back({c.date, double(c.deposit ? -*fen : *fen)});
    }

    void addLot(Position &p, int64_t shares, int64_t costFen)
    {
        if (m_method == CostMethod::MovingAverage && !p.lots.empty()) {
            p.lots.front().shares += shares;
            p.lots.front().costFen += costFen;
        } else {
            p.lots.push_back({shares, costFen});
        }
        p.shares += shares;
        p.costFen += costFen;
    }

    // Takes `shares` out of the lots, oldest first; returns their cost.
    int64_t takeShares(Position &p, int64_t shares)
    {
        int64_t cost = 0;
        while (shares > 0 && !p.lots.empty()) {
            Lot &lot = p.lots.front();
            const int64_t take = std::min(shares, lot.shares);
            const int64_t part =
                take == lot.shares ? lot.costFen : roundHalfEven(Int128(lot.costFen) * take, lot.shares);
            lot.shares -= take;
            lot.costFen -= part;
            cost += part;
            shares -= take;
            if (lot.shares == 0)
                p.lots.pop_front();
        }
        p.shares = 0;
        p.costFen = 0;
        for (const Lot &l : p.lots) {
            p.shares += l.shares;
            p.costFen += l.costFen;
        }
        return cost;
    }

    void applyTrade(TradeResult &t)
    {
        const TradeRow &r = t.row;
        const double q = r.shares;
        if (!std::isfinite(q) || q < 0)
            t.problem = QStringLiteral("成交股数是负数");
        else if (q == 0)
            t.problem = QStringLiteral("成交股数为 0");
        else if (q != std::floor(q))
            t.problem = QStringLiteral("成交股数不是整数");
        else if (q > 1e12)
            t.problem = QStringLiteral("成交股数过大");
        else if (!std::isfinite(r.price) || r.price <= 0)
            t.problem = r.price == 0 ? QStringLiteral("成交价格为 0") : QStringLiteral("成交价格不是正数");
        if (!t.problem.isEmpty())
            return;
        const int64_t shares = int64_t(q);
        const auto price = decimalOf(r.price);
        const auto gross = price ? roundedProduct({*price, Decimal{shares, 0}}, 2) : std::nullopt;
        const auto fee = tradeFeeFen(r.price, shares, r.rate, r.code, m_journal.minShenzhen, m_journal.minShanghai);
        if (!gross || !fee) {
            t.problem = QStringLiteral("金额过大，无法计算");
            return;
        }
        Position &p = positions[r.code];
        p.name = r.name;
        if (!r.buy && shares > p.shares) {
            t.problem = QStringLiteral("卖出 %1 股，多于当时持有的 %2 股").arg(shares).arg(p.shares);
            return;
        }
        t.shares = shares;
        t.grossFen = *gross;
        t.feeFen = *fee;
        t.applied = true;
        p.feesFen += *fee;
        p.lastPrice = r.price;
        if (r.buy) {
            t.cashFen = -(*gross + *fee);
            addLot(p, shares, *gross + *fee);
        } else {
            t.cashFen = *gross - *fee;
            t.costFen = takeShares(p, shares);
            t.realisedFen = t.cashFen - t.costFen;
            p.realisedFen += t.realisedFen;
        }
        cashFen += t.cashFen;
        if (m_firstDeposit.isValid() ? r.date < m_firstDeposit : true)
            t.problem = QStringLiteral("成交日期早于第一笔存入资金");
    }

    void applyAction(ActionResult &a)
    {
        const CorporateAction &c = a.action;
        auto it = positions.find(c.code.trimmed());
        a.heldBefore = it == positions.end() ? 0 : it->second.shares;
        if (a.heldBefore <= 0) {
            a.problem = QStringLiteral("除权日之前没有持股");
            return;
        }
        Position &p = it->second;
        const int64_t held = a.heldBefore;
        a.applied = true;

        // Bonus and converted shares keep the cost; under FIFO each lot grows
        // in proportion, the shares left over by rounding going to the oldest lots.
        const int64_t bonus = floorDiv(Int128(held) * (c.bonusPer10 + c.transferPer10), kPer10) + c.bookedShares;
        if (bonus > 0) {
            int64_t given = 0;
            for (Lot &l : p.lots) {
                const int64_t add = floorDiv(Int128(l.shares) * bonus, held);
                l.shares += add;
                given += add;
            }
            for (auto l = p.lots.begin(); given < bonus && l != p.lots.end(); ++l, ++given)
                ++l->shares;
            p.shares += bonus;
        }
        a.newShares = bonus;

        if (c.rightsTaken && c.rightsPer10 > 0) {
            const int64_t offered = floorDiv(Int128(held) * c.rightsPer10, kPer10);
            a.rightsCostFen = roundHalfEven(Int128(offered) * c.rightsPrice, 100);
            addLot(p, offered, a.rightsCostFen);
            cashFen -= a.rightsCostFen;
            a.newShares += offered;
        }

        const int64_t gross = grossDividendFen(c, held);
        a.taxFen = c.taxFen + roundHalfEven(Int128(gross) * c.taxRate, 10000);
        a.dividendFen = gross - a.taxFen;
        p.dividendFen += a.dividendFen;
        cashFen += a.dividendFen;
    }

    const Journal &m_journal;
    CostMethod m_method;
    QDate m_firstDeposit;
    std::vector<size_t> m_tradeOrder, m_cashOrder, m_actionOrder;
    size_t m_ti = 0, m_ci = 0, m_ai = 0;
};

// The exact value of `shares` at a single-precision close, in fen.
int64_t valueAt(int64_t shares, const Decimal &price)
{
    return roundedProduct({price, Decimal{shares, 0}}, 2).value_or(0);
}

} // namespace

int64_t grossDividendFen(const CorporateAction &action, int64_t held)
{
    // cashPer10 is ten-thousandths of a yuan per 10 shares: held x cash / 1000 fen.
    return roundHalfEven(Int128(held) * action.cashPer10, 1000) + action.bookedCashFen;
}

int64_t sharesHeldBefore(const Journal &journal, const QString &code, const QDate &date)
{
    Replay replay(journal, CostMethod::MovingAverage);
    replay.runTo(date.addDays(-1));
    const auto it = replay.positions.find(code);
    return it == replay.positions.end() ? 0 : it->second.shares;
}

Analysis analyse(const Journal &journal, CostMethod method, const PriceHistory &prices, const QDate &asOf)
{
    Replay replay(journal, method);
    replay.runTo(QDate(9999, 12, 31));
    Analysis out;
    Summary &s = out.summary;
    for (auto &[code, p] : replay.positions) {
        StockResult r;
        r.code = code;
        r.name = p.name;
        r.shares = p.shares;
        r.costFen = p.costFen;
        r.realisedFen = p.realisedFen;
        r.feesFen = p.feesFen;
        r.dividendFen = p.dividendFen;
        const auto h = prices.find(code);
        if (h != prices.end() && !h->second.empty())
            r.close = h->second.back().close;
        const auto closeDecimal = r.close ? decimalOfSingle(*r.close) : std::nullopt;
        r.marketFen = closeDecimal ? valueAt(r.shares, *closeDecimal) : r.costFen;
        r.unrealisedFen = r.marketFen - r.costFen;
        s.marketFen += r.marketFen;
        s.costFen += r.costFen;
        s.realisedFen += r.realisedFen;
        s.unrealisedFen += r.unrealisedFen;
        s.feesFen += r.feesFen;
        s.dividendFen += r.dividendFen;
        out.stocks.push_back(r);
    }
    out.trades = std::move(replay.trades);
    out.actions = std::move(replay.actions);
    s.depositsFen = replay.depositsFen;
    s.withdrawalsFen = replay.withdrawalsFen;
    s.investedFen = s.depositsFen - s.withdrawalsFen;
    s.cashFen = replay.cashFen;
    s.valueFen = s.marketFen + s.cashFen;
    s.returnFen = s.valueFen - s.investedFen;
    if (s.investedFen > 0)
        s.returnPercent = double(s.returnFen) * 100.0 / double(s.investedFen);
    std::vector<Flow> flows;
    for (const Flow &f : replay.flows)
        if (f.date <= asOf)
            flows.push_back(f);
    flows.push_back({asOf, double(s.valueFen)});
    s.xirr = xirr(flows);
    return out;
}

std::vector<ValuePoint> valueSeries(const Journal &journal, const PriceHistory &prices)
{
    Replay replay(journal, CostMethod::MovingAverage);
    const QDate first = replay.firstDate();
    if (!first.isValid())
        return {};
    QDate last = replay.lastDate();
    for (const TradeRow &t : journal.trades) {
        const auto h = prices.find(t.code);
        if (h != prices.end() && !h->second.empty()) {
            const int32_t d = h->second.back().date;
            const QDate barDate(d / 10000, d / 100 % 100, d % 100);
            if (barDate.isValid() && barDate > last)
                last = barDate;
        }
    }
    // Fifty years of days at most, whatever dates the files hold.
    if (first.daysTo(last) > 366 * 50)
        last = first.addDays(366 * 50);

    struct Cursor {
        const std::vector<ClosePoint> *bars = nullptr;
        size_t next = 0;
        std::optional<Decimal> close;
    };
    std::map<QString, Cursor> cursors;
    std::vector<ValuePoint> out;
    out.reserve(size_t(first.daysTo(last) + 1));
    for (QDate day = first; day <= last; day = day.addDays(1)) {
        replay.runTo(day);
        const int32_t ymd = day.year() * 10000 + day.month() * 100 + day.day();
        int64_t market = 0;
        for (auto &[code, p] : replay.positions) {
            if (p.shares <= 0)
                continue;
            auto [it, fresh] = cursors.try_emplace(code);
            Cursor &c = it->second;
            if (fresh) {
                const auto h = prices.find(code);
                c.bars = h == prices.end() ? nullptr : &h->second;
            }
            if (c.bars) {
                size_t n = c.next;
                while (n < c.bars->size() && (*c.bars)[n].date <= ymd)
                    ++n;
                if (n != c.next) {
                    c.next = n;
                    c.close = decimalOfSingle((*c.bars)[n - 1].close);
                }
            }
            const auto price = c.close ? c.close : decimalOf(p.lastPrice);
            market += price ? valueAt(p.shares, *price) : 0;
        }
        out.push_back({day, market + replay.cashFen, replay.depositsFen - replay.withdrawalsFen});
    }
    return out;
}

std::optional<double> xirr(const std::vector<Flow> &flows)
{
    bool paidIn = false;
    bool paidOut = false;
    QDate start;
    for (const Flow &f : flows) {
        paidIn = paidIn || f.amount < 0;
        paidOut = paidOut || f.amount > 0;
        if (!start.isValid() || f.date < start)
            start = f.date;
    }
    if (!paidIn || !paidOut)
        return std::nullopt;
    // Net present value with x = ln(1 + r).
    const auto npv = [&](double x) {
        double sum = 0;
        for (const Flow &f : flows)
            sum += f.amount * std::exp(-x * double(start.daysTo(f.date)) / 365.0);
        return sum;
    };
    double lo = std::log(1e-6); // r = -99.9999%
    double hi = std::log(1e6);  // r = 99999900%
    double fLo = npv(lo);
    const double fHi = npv(hi);
    if (!std::isfinite(fLo) || !std::isfinite(fHi) || (fLo > 0) == (fHi > 0))
        return std::nullopt;
    for (int i = 0; i < 200; ++i) {
        const double mid = (lo + hi) / 2;
        const double fMid = npv(mid);
        if ((fMid > 0) == (fLo > 0)) {
            lo = mid;
            fLo = fMid;
        } else {
            hi = mid;
        }
    }
    return std::exp((lo + hi) / 2) - 1;
}

} // namespace analysis
