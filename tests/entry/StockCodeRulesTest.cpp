// The fee rate chosen by a code's prefix and the name look-up in the stock
// list, without a window.
#include "EntryFixture.h"

#include "entry/StockCodeRules.h"

using entry::feeRateForCode;
using entry::stockNameFor;
using entrytest::feeOfColumn;

TEST(FeeRateForCode, PrefixChoosesColumnInFixedOrder)
{
    entrytest::setDistinctFees();
    const struct {
        const char *code;
        float rate;
    } cases[] = {
        {"000001", feeOfColumn(1)}, {"200012", feeOfColumn(6)}, {"184688", feeOfColumn(2)},
        {"600000", feeOfColumn(1)}, {"900901", feeOfColumn(5)},
        // Exactly the three characters, trimmed first; nothing else is checked.
        {"000", feeOfColumn(1)},    {"  600000  ", feeOfColumn(1)}, {"9001234567", feeOfColumn(5)},
        {"184abc", feeOfColumn(2)},
        // Unknown prefixes and codes too short to carry one.
        {"300001", 0.0f}, {"1", 0.0f}, {"00", 0.0f}, {"", 0.0f}, {" 00 0", 0.0f}, {"0000", feeOfColumn(1)},
        {"60", 0.0f}, {"601988", 0.0f},
    };
    for (const auto &c : cases)
        EXPECT_EQ(feeRateForCode(QString::fromUtf8(c.code)), c.rate) << c.code;
}

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

TEST_F(StockNameFor, EmptyListFindsNothing)
{
    marketdata::clearStockList();
    EXPECT_EQ(stockNameFor(QStringLiteral("600000")), QString());
}
