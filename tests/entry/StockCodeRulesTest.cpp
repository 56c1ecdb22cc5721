// The fee rate read at the moment of the call and the name look-up in the
// stock list, without a window (the prefix table is checked through the
// windows, on the stored rows).
#include "EntryFixture.h"

#include "entry/StockCodeRules.h"

using entry::feeRateForCode;
using entry::stockNameFor;

TEST(FeeRateForCode, ReadsTheValuesAtTheMomentOfTheCall)
{
    store::setFeeValue(1, 0.3f);
    EXPECT_EQ(feeRateForCode(QStringLiteral("600000")), 0.3f);
    store::setFeeValue(1, 0.25f);
    EXPECT_EQ(feeRateForCode(QStringLiteral("600000")), 0.25f);
    entrytest::setDistinctFees();
}

class StockNameFor : public ::testing::Test {
protected:
    void SetUp() override
    {
        marketdata::clearStockList();
        marketdata::setStockList(0, QStringLiteral("000001 平安银行"));
        marketdata::setStockList(1, QStringLiteral("600000 浦发银行  "));
        marketdata::setStockList(2, QStringLiteral("600000 第二个"));
        marketdata::setStockList(3, QStringLiteral("6000001 七位代码"));
        marketdata::setStockList(4, QStringLiteral("900901 云赛B股"));
        marketdata::setStockList(5, QStringLiteral("184688 基金开元"));
        marketdata::setStockCount(4);
    }
    void TearDown() override { marketdata::clearStockList(); }
};

TEST_F(StockNameFor, FirstEntryContainingTheCodeGivesTheTrimmedName)
{
    EXPECT_EQ(stockNameFor(QStringLiteral("000001")), QStringLiteral("平安银行"));
    EXPECT_EQ(stockNameFor(QStringLiteral("600000")), QStringLiteral("浦发银行"));
    EXPECT_EQ(stockNameFor(QStringLiteral("  600000 ")), QStringLiteral("浦发银行"));
    // The entry at the index equal to the count is still searched; the one after it is not.
    EXPECT_EQ(stockNameFor(QStringLiteral("900901")), QStringLiteral("云赛B股"));
    EXPECT_EQ(stockNameFor(QStringLiteral("184688")), QString());
}

TEST_F(StockNameFor, ContainsAnywhereCaseSensitive)
{
    // "0001 七" is inside "6000001 七位代码" only; the name is taken from the seventh character on.
    EXPECT_EQ(stockNameFor(QStringLiteral("0001 七")), QStringLiteral("1 七位代码"));
    marketdata::setStockList(0, QStringLiteral("ABCDEF 字母"));
    EXPECT_EQ(stockNameFor(QStringLiteral("ABCDEF")), QStringLiteral("字母"));
    EXPECT_EQ(stockNameFor(QStringLiteral("abcdef")), QString());
}

TEST_F(StockNameFor, OnlySixCharacterCodesAreSearched)
{
    EXPECT_EQ(stockNameFor(QStringLiteral("60000")), QString());   // would be found inside 600000
    EXPECT_EQ(stockNameFor(QStringLiteral("6000001")), QString()); // an entry holds it
    EXPECT_EQ(stockNameFor(QString()), QString());
    EXPECT_EQ(stockNameFor(QStringLiteral("      ")), QString());
}
