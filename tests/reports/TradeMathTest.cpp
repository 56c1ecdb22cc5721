// The arithmetic of the report windows, without any window.
#include "reports/TradeMath.h"

#include "base/RuntimeError.h"

#include <gtest/gtest.h>

using namespace reports;

namespace {

int errorOf(const std::function<void()> &f)
{
    try {
        f();
    } catch (const base::RuntimeError &e) {
        return e.number();
    }
    return 0;
}

} // namespace

TEST(TradeFee, MinimumChosenByTheFirstTwoCharacters)
{
    // 100 shares at 5.00 with 0.35 %: raw fee 1.75.
    const float minShenzhen = 8, minShanghai = 10;
    TradeFee f = tradeFee(5.00, 100, 0.35f, QStringLiteral("600000"), minShenzhen, minShanghai);
    EXPECT_TRUE(f.shown);
    EXPECT_EQ(f.fee, 10.0f);
    EXPECT_DOUBLE_EQ(tradeAmount(5.00, 100, f.fee, true), -510);

    for (const char *code : {"000001", "400002", "00", "40"}) {
        f = tradeFee(5.00, 100, 0.35f, QString::fromLatin1(code), minShenzhen, minShanghai);
        EXPECT_TRUE(f.shown) << code;
        EXPECT_EQ(f.fee, 8.0f) << code;
    }
    // The test is on the text: "6" alone or a blank in front is no class.
    for (const char *code : {"200001", "900901", "184801", "500001", "6", " 600000", ""}) {
        f = tradeFee(5.00, 100, 0.35f, QString::fromLatin1(code), minShenzhen, minShanghai);
        EXPECT_FALSE(f.shown) << code;
        EXPECT_EQ(f.fee, 1.75f) << code;
        // The amount still carries the raw fee.
        EXPECT_DOUBLE_EQ(tradeAmount(5.00, 100, f.fee, false), 501.75) << code;
    }
}

TEST(TradeFee, MinimumAppliesUpToAndIncludingItsValue)
{
    // 10.00 x 1000 x 0.35 = 35.
    EXPECT_EQ(tradeFee(10.00, 1000, 0.35f, QStringLiteral("600036"), 5, 35).fee, 35.0f);
    EXPECT_EQ(tradeFee(10.00, 1000, 0.35f, QStringLiteral("600036"), 99, 34.99f).fee, 35.0f);
    EXPECT_EQ(tradeFee(10.00, 1000, 0.35f, QStringLiteral("600036"), 0, 35.01f).fee, 35.01f);
    // A sale adds the fee as a purchase does, with the other sign.
    EXPECT_DOUBLE_EQ(tradeAmount(10.00, 1000, 35, false), 10035);
    EXPECT_DOUBLE_EQ(tradeAmount(10.00, 1000, 35, true), -10035);
}

TEST(TradeFee, RoundingOfFeeAndAmount)
{
    // p x q x t rounded half to even before the division by 100.
    EXPECT_EQ(tradeFee(0.5, 1, 1, QStringLiteral("900001"), 0, 0).fee, 0.0f);   // 0.5 -> 0
    EXPECT_EQ(tradeFee(1.5, 1, 1, QStringLiteral("900001"), 0, 0).fee, 0.02f);  // 1.5 -> 2
    EXPECT_EQ(tradeFee(2.5, 1, 1, QStringLiteral("900001"), 0, 0).fee, 0.02f);  // 2.5 -> 2
    EXPECT_EQ(tradeFee(12.34, 1000, 0.35f, QStringLiteral("000002"), 5, 5).fee, 43.19f);
    // The amount keeps whole hundredths.
    EXPECT_DOUBLE_EQ(tradeAmount(10.0005, 1000, 35, true), -10035.5);
    EXPECT_DOUBLE_EQ(tradeAmount(3.333, 3, 0, false), 10);
    // Beyond 32 bits the fee's rounding overflows.
    EXPECT_EQ(errorOf([] { tradeFee(1e6, 1e6, 100, QStringLiteral("600000"), 0, 0); }), base::ErrOverflow);
}

TEST(ShareTotal16, NullIsZeroAndTheRangeIsSixteenBits)
{
    EXPECT_EQ(shareTotal16(QVariant()), 0);
    EXPECT_EQ(shareTotal16(QVariant(32767.0)), 32767);
    EXPECT_EQ(shareTotal16(QVariant(32766.5)), 32766);
    EXPECT_EQ(shareTotal16(QVariant(-32768.0)), -32768);
    EXPECT_EQ(errorOf([] { shareTotal16(QVariant(32768.0)); }), base::ErrOverflow);
    EXPECT_EQ(errorOf([] { shareTotal16(QVariant(32767.5)); }), base::ErrOverflow);
}

TEST(ProfitRow, SaleAgainstTheAveragePurchaseCost)
{
    // Bought 1000 at 10.00 (rate 0.5): 10050; sold 400 at 12.00 (rate 0.5): 4776.
    ProfitRow row = profitRow(4776.0, 400.0, 10050.0, 1000.0);
    EXPECT_EQ(row.averagePrice, QStringLiteral("11.94"));
    EXPECT_EQ(row.sharesSold, QStringLiteral("400"));
    EXPECT_EQ(row.proceeds, 4776);
    EXPECT_EQ(row.cost, 4020);
    EXPECT_EQ(row.profit, 756);

    // Never bought: the proceeds are all profit.
    row = profitRow(4776.0, 400.0, QVariant(), QVariant());
    EXPECT_EQ(row.cost, 0);
    EXPECT_EQ(row.profit, 4776);

    // A loss; the price uses the unrounded proceeds (3.3347), P and K are rounded.
    row = profitRow(1000.4, 300.0, 2000.0, 500.0);
    EXPECT_EQ(row.averagePrice, QStringLiteral("3.33"));
    EXPECT_EQ(row.proceeds, 1000);
    EXPECT_EQ(row.cost, 1200);
    EXPECT_EQ(row.profit, -200);
    EXPECT_EQ(profitRow(1000.5, 300.0, QVariant(), QVariant()).proceeds, 1000);
    EXPECT_EQ(profitRow(1001.5, 300.0, QVariant(), QVariant()).proceeds, 1002);
}

TEST(ProfitRow, SixteenBitLimitsAndDivisions)
{
    EXPECT_EQ(errorOf([] { profitRow(32767.6, 100.0, QVariant(), QVariant()); }), base::ErrOverflow);
    EXPECT_EQ(errorOf([] { profitRow(1000.0, 100.0, 400000.0, 100.0); }), base::ErrOverflow);
    // P - K out of range although both fit.
    EXPECT_EQ(errorOf([] { profitRow(30000.0, 100.0, -5000.0, 100.0); }), base::ErrOverflow);
    EXPECT_EQ(profitRow(-30000.0, 100.0, 2767.0, 100.0).profit, -32767);
    // A zero shares-bought total: 0/0 overflows, x/0 divides by zero.
    EXPECT_EQ(errorOf([] { profitRow(1000.0, 100.0, 0.0, 0.0); }), base::ErrOverflow);
    EXPECT_EQ(errorOf([] { profitRow(1000.0, 100.0, 50.0, 0.0); }), base::ErrDivisionByZero);
}
