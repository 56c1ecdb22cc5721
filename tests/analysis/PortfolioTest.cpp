// Figures worked out by hand; fees are 0 in the journals unless a case says
// otherwise, so that each step can be followed on paper.
#include "analysis/Money.h"
#include "analysis/Portfolio.h"

#include "support/Helpers.h"

using namespace analysis;

namespace {

TradeRow trade(const char *code, QDate date, double price, double shares, bool buy, float rate = 0)
{
    return {.code = QString::fromLatin1(code), .name = QStringLiteral("测试"), .date = date, .price = price,
            .shares = shares, .rate = rate, .buy = buy};
}

QDate jan(int day) { return QDate(2024, 1, day); }

// 100,000 deposited; 1000 @10 and 1000 @20 bought, 1500 sold @30 (45,000
// yuan, beyond 16 bits), 10送3, 100 bought @12, all 750 sold @15, 200
// bought back @9.50, 10派2 with 10% tax, 10配3 @8 taken, 10配2 @7 not taken.
Journal longJournal()
{
    Journal j;
    j.cash.push_back({jan(2), 100000.0, true});
    j.trades = {trade("600000", jan(3), 10.0, 1000, true),  trade("600000", jan(4), 20.0, 1000, true),
                trade("600000", jan(5), 30.0, 1500, false), trade("600000", jan(9), 12.0, 100, true),
                trade("600000", jan(10), 15.0, 750, false), trade("600000", jan(11), 9.5, 200, true)};
    const QString code = QStringLiteral("600000");
    j.actions = {{.code = code, .exDate = jan(8), .bonusPer10 = 30000, .note = {}},
                 {.code = code, .exDate = jan(15), .cashPer10 = 20000, .taxRate = 1000, .note = {}},
                 {.code = code, .exDate = jan(16), .rightsPer10 = 30000, .rightsPrice = 80000, .rightsTaken = true, .note = {}},
                 {.code = code, .exDate = jan(17), .rightsPer10 = 20000, .rightsPrice = 70000, .note = {}}};
    return j;
}

const PriceHistory kPrices = {{QStringLiteral("600000"), {{20240110, 14.0f}, {20240118, 10.0f}}}};

} // namespace

TEST(Money, FeeIsTheExactDecimalProductRoundedHalfToEvenThenTheMinimum)
{
    struct Case {
        double price;
        int64_t shares;
        float rate;
        const char *code;
        int64_t fen;
    } cases[] = {
        {10.0, 1000, 0.35f, "600000", 3500}, // 35 yuan
        {5.0, 100, 0.35f, "600000", 1000},   // 1.75 raised to the Shanghai minimum 10
        {5.0, 100, 0.35f, "000001", 500},    // the Shenzhen minimum 5
        {5.0, 100, 0.35f, "400001", 500},
        {5.0, 100, 0.35f, "184688", 175},    // no minimum for funds
        {25.0, 1, 0.1f, "900901", 2},        // 2.5 fen exactly: even 2 (the single 0.1 would give 3)
        {1.5, 1, 1.0f, "200012", 2},         // 1.5 -> 2
        {10.01, 10000, 0.35f, "600000", 35035},
        {4.0, 125, 1.0f, "000001", 500},     // equal to the minimum: stays 500
    };
    for (const Case &c : cases)
        EXPECT_EQ(tradeFeeFen(c.price, c.shares, c.rate, QString::fromLatin1(c.code), 5.0f, 10.0f), c.fen)
            << c.price << " x " << c.shares << " x " << c.rate << " " << c.code;
    EXPECT_EQ(yuanText(-5), QStringLiteral("-0.05"));
    EXPECT_EQ(yuanText(123456), QStringLiteral("1234.56"));
}

TEST(Portfolio, CostMethodsCorporateActionsAndCashOnALongJournal)
{
    struct Expect {
        CostMethod method;
        int64_t firstSale;  // realised of the 1500 sold
        int64_t secondSale; // realised of the 750 sold
    } methods[] = {
        // average 30,000 / 2000 = 15.00: 45,000 - 22,500; then 750 held at 8,700
        {CostMethod::MovingAverage, 2250000, 255000},
        // 1000 @10 and 500 @20 = 20,000; then lots 650 @10,000 and 100 @1,200
        {CostMethod::Fifo, 2500000, 5000},
    };
    for (const Expect &e : methods) {
        const Analysis a = analyse(longJournal(), e.method, kPrices, jan(18));
        ASSERT_EQ(a.trades.size(), 6u);
        // 750 sold = 500 + 150 bonus + 100.
        EXPECT_EQ(std::make_tuple(a.trades[2].realisedFen, a.trades[4].realisedFen, a.trades[4].shares),
                  std::make_tuple(e.firstSale, e.secondSale, 750));
        ASSERT_EQ(a.stocks.size(), 1u);
        const StockResult &s = a.stocks[0];
        // 200 + 60 rights at 1,900 + 480, valued at the latest close 10; dividend 200 x 0.2 = 40 less 10%.
        EXPECT_EQ(std::make_tuple(s.shares, s.costFen, s.marketFen, s.unrealisedFen, s.dividendFen, s.realisedFen),
                  std::make_tuple(260, 238000, 260000, 22000, 3600, 2505000));
        const Summary &m = a.summary;
        // 100,000 - 10,000 - 20,000 + 45,000 - 1,200 + 11,250 - 1,900 + 36 - 480
        EXPECT_EQ(std::make_tuple(m.cashFen, m.valueFen, m.investedFen, m.returnFen),
                  std::make_tuple(12270600, 12530600, 10000000, 2530600));
        EXPECT_DOUBLE_EQ(*m.returnPercent, 25.306);
        ASSERT_EQ(a.actions.size(), 4u);
        EXPECT_EQ(std::make_tuple(a.actions[0].newShares, a.actions[1].taxFen, a.actions[2].rightsCostFen, a.actions[3].newShares),
                  std::make_tuple(150, 400, 48000, 0));
        for (const TradeResult &t : a.trades)
            EXPECT_TRUE(t.applied && t.problem.isEmpty());
    }
}

TEST(Portfolio, FifoSpreadsBonusSharesOverLotsAndSellsAcrossThem)
{
    Journal j;
    j.cash.push_back({jan(1), 10000.0, true});
    j.trades = {trade("000001", jan(2), 10.0, 100, true), trade("000001", jan(3), 11.0, 100, true),
                trade("000001", jan(4), 12.0, 100, true), trade("000001", jan(6), 20.0, 300, false)};
    // 10转增5 on 300 shares: each lot of 100 becomes 150
    j.actions = {{.code = QStringLiteral("000001"), .exDate = jan(5), .transferPer10 = 50000, .note = {}}};
    const Analysis r = analyse(j, CostMethod::Fifo, {}, jan(6));
    // 300 sold = lot one (150, 1,000) and lot two (150, 1,100): 6,000 - 2,100
    // The 150 left have no price file: valued at cost.
    EXPECT_EQ(std::make_tuple(r.trades[3].costFen, r.trades[3].realisedFen, r.stocks[0].shares, r.stocks[0].costFen,
                              r.stocks[0].marketFen),
              std::make_tuple(210000, 390000, 150, 120000, 120000));
}

TEST(Portfolio, RowsThatMakeNoSenseAreFlaggedAndLeftOut)
{
    Journal j;
    j.trades = {trade("600000", jan(1), 10.0, 100, true)}; // before the first deposit: counted
    j.cash.push_back({jan(2), 5000.0, true});
    j.trades.push_back(trade("600000", jan(3), 10.0, 101, false));
    j.trades.push_back(trade("600000", jan(3), 10.0, -5, true));
    j.trades.push_back(trade("600000", jan(3), 0.0, 5, true));
    j.trades.push_back(trade("600000", jan(3), 10.0, 2.5, true));
    j.trades.push_back(trade("600000", QDate(), 10.0, 5, true));
    const Analysis a = analyse(j, CostMethod::MovingAverage, {}, jan(3));
    const QString problems[] = {QStringLiteral("成交日期早于第一笔存入资金"),
                                QStringLiteral("卖出 101 股，多于当时持有的 100 股"),
                                QStringLiteral("成交股数是负数"),
                                QStringLiteral("成交价格为 0"),
                                QStringLiteral("成交股数不是整数"),
                                QStringLiteral("成交日期无效")};
    for (size_t i = 0; i < 6; ++i) {
        EXPECT_EQ(a.trades[i].problem, problems[i]) << i;
        EXPECT_EQ(a.trades[i].applied, i == 0) << i;
    }
    EXPECT_EQ(std::make_tuple(a.stocks[0].shares, a.summary.cashFen), std::make_tuple(100, 400000));
}

TEST(Portfolio, MoneyWeightedReturn)
{
    const auto r = xirr({{QDate(2023, 1, 1), -10000}, {QDate(2024, 1, 1), 11000}}); // 365 days
    ASSERT_TRUE(r);
    EXPECT_NEAR(*r, 0.10, 1e-9);
    // 1.05 over 182 days: 1.05^(365/182) - 1 = 0.10279
    EXPECT_NEAR(*xirr({{QDate(2023, 1, 1), -10000}, {QDate(2023, 7, 2), 10500}}), 0.10279, 1e-4);
    // 10,000 in, 5,500 out after a year, 6,050 left after two: 5,000 + 5,000 at 10%
    EXPECT_NEAR(*xirr({{QDate(2021, 1, 1), -10000}, {QDate(2022, 1, 1), 5500}, {QDate(2023, 1, 1), 6050}}), 0.10,
                1e-4);
    EXPECT_FALSE(xirr({}));
    EXPECT_FALSE(xirr({{QDate(2023, 1, 1), -10000}, {QDate(2024, 1, 1), 0}}));
}

TEST(Portfolio, ValueSeriesCarriesClosesAndCountsCash)
{
    Journal j;
    j.cash.push_back({jan(1), 1000.0, true});
    j.trades = {trade("600000", jan(2), 5.0, 100, true)};
    const PriceHistory prices = {{QStringLiteral("600000"), {{20240102, 5.5f}, {20240104, 6.0f}}}};
    const std::vector<ValuePoint> v = valueSeries(j, prices);
    ASSERT_EQ(v.size(), 4u);
    const int64_t values[] = {100000, 105000, 105000, 110000};
    for (size_t i = 0; i < 4; ++i)
        EXPECT_EQ(std::make_tuple(v[i].date, v[i].valueFen, v[i].investedFen), std::make_tuple(jan(int(i) + 1), values[i], 100000)) << i;
}
