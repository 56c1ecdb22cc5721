// The arithmetic of the report windows, without any window.
#include "reports/TradeMath.h"

#include "support/Helpers.h"

using namespace reports;

TEST(TradeFee, MinimumsByCodeAndRounding)
{
    // Minimums: 8 for "00"/"40", 10 for "60" codes (on the text: "6" or a
    // leading blank is no class); other codes show no fee, but the amount
    // carries the raw one. p x q x t is rounded half to even before the
    // division by 100; the minimum applies up to and including its value.
    const struct {
        double price, shares;
        float rate;
        const char *code;
        float minShenzhen, minShanghai;
        bool shown;
        float fee;
        bool buy;
        double amount;
    } cases[] = {
        // "60" and "00" minimums: the trade-details window test.
        {5, 100, 0.35f, "40", 8, 10, true, 8, false, 508},
        {5, 100, 0.35f, "900901", 8, 10, false, 1.75f, true, -501.75},
        {5, 100, 0.35f, "500001", 8, 10, false, 1.75f, false, 501.75},
        {5, 100, 0.35f, "6", 8, 10, false, 1.75f, false, 501.75},
        {5, 100, 0.35f, " 600000", 8, 10, false, 1.75f, false, 501.75},
        {10, 1000, 0.35f, "600036", 99, 34.99f, true, 35, true, -10035},
        {10, 1000, 0.35f, "600036", 0, 35.01f, true, 35.01f, true, -10035.01},
        {0.5, 1, 1, "900001", 0, 0, false, 0, true, -0.5},     // 0.5 -> 0
        {1.5, 1, 1, "900001", 0, 0, false, 0.02f, true, -1.52}, // 1.5 -> 2
        {2.5, 1, 1, "900001", 0, 0, false, 0.02f, true, -2.52}, // 2.5 -> 2
        {12.34, 1000, 0.35f, "000002", 5, 5, true, 43.19f, true, -12383.19},
    };
    for (const auto &c : cases) {
        const TradeFee f = tradeFee(c.price, c.shares, c.rate, QString::fromLatin1(c.code), c.minShenzhen, c.minShanghai);
        EXPECT_EQ(std::make_tuple(f.shown, f.fee), std::make_tuple(c.shown, c.fee)) << c.code << ' ' << c.price;
        EXPECT_DOUBLE_EQ(tradeAmount(c.price, c.shares, f.fee, c.buy), c.amount) << c.code << ' ' << c.price;
    }
    // The amount keeps whole hundredths.
    EXPECT_DOUBLE_EQ(tradeAmount(10.0005, 1000, 35, true), -10035.5);
    EXPECT_DOUBLE_EQ(tradeAmount(3.333, 3, 0, false), 10);
    // Beyond 32 bits the fee's rounding overflows.
    EXPECT_EQ(errorOf([] { tradeFee(1e6, 1e6, 100, QStringLiteral("600000"), 0, 0); }), base::ErrOverflow);
}

TEST(ShareTotal16, NullIsZeroAndTheRangeIsSixteenBits)
{
    EXPECT_EQ((std::vector<int>{shareTotal16(QVariant()), shareTotal16(QVariant(32766.5)), shareTotal16(QVariant(-32768.0))}),
              (std::vector<int>{0, 32766, -32768}));
    EXPECT_EQ(errorOf([] { shareTotal16(QVariant(32767.5)); }), base::ErrOverflow);
}

TEST(ProfitRow, SaleAgainstTheAveragePurchaseCost)
{
    // A plain sale and one never bought: the profit-and-loss window test.
    // A loss; the price uses the unrounded proceeds (3.3347), P and K are rounded.
    const ProfitRow row = profitRow(1000.4, 300.0, 2000.0, 500.0);
    EXPECT_EQ(row.averagePrice, QStringLiteral("3.33"));
    EXPECT_EQ(std::vector<int>({row.proceeds, row.cost, row.profit}), std::vector<int>({1000, 1200, -200}));
    EXPECT_EQ(std::make_tuple(profitRow(1000.5, 300.0, QVariant(), QVariant()).proceeds, profitRow(1001.5, 300.0, QVariant(), QVariant()).proceeds),
              std::make_tuple(1000, 1002));
}

TEST(ProfitRow, SixteenBitLimitsAndDivisions)
{
    EXPECT_EQ(errorOf([] { profitRow(32767.6, 100.0, QVariant(), QVariant()); }), base::ErrOverflow);
    // P - K out of range although both fit.
    EXPECT_EQ(errorOf([] { profitRow(30000.0, 100.0, -5000.0, 100.0); }), base::ErrOverflow);
    EXPECT_EQ(profitRow(-30000.0, 100.0, 2767.0, 100.0).profit, -32767);
    // A zero shares-bought total: 0/0 overflows, x/0 divides by zero.
    EXPECT_EQ(std::make_tuple(errorOf([] { profitRow(1000.0, 100.0, 0.0, 0.0); }), errorOf([] { profitRow(1000.0, 100.0, 50.0, 0.0); })),
              std::make_tuple(base::ErrOverflow, base::ErrDivisionByZero));
}
