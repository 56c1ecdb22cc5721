// The fee rate read at the moment of the call and the name look-up in the
// stock list (the prefix table is checked through the windows).
#include "EntryFixture.h"

#include "entry/StockCodeRules.h"

using entry::feeRateForCode;
using entry::stockNameFor;

TEST(FeeRateForCode, ReadsTheValuesAtTheMomentOfTheCall)
{
    const float before = store::feeValue(1);
    store::setFeeValue(1, 0.25f);
    EXPECT_EQ(feeRateForCode(QStringLiteral("600000")), 0.25f);
    store::setFeeValue(1, before);
}

TEST(StockNameFor, FirstEntryContainingTheSixCharacterCode)
{
    marketdata::clearStockList();
    const char *list[] = {"000001 平安银行", "600000 浦发银行  ", "600000 第二个", "6000001 七位代码", "900901 云赛B股",
                          "184688 基金开元", "ABCDEF 字母"};
    for (int i = 0; i < int(std::size(list)); ++i)
        marketdata::setStockList(i, QString::fromUtf8(list[i]));
    marketdata::setStockCount(4);
    const struct {
        const char *typed, *name;
    } cases[] = {
        {"600000", "浦发银行"}, {"  600000 ", "浦发银行"},
        // The entry at the index equal to the count is still searched; the one after it is not.
        {"900901", "云赛B股"}, {"184688", ""}, {"ABCDEF", ""},
        // Contained anywhere, case-sensitive; the name is taken from the seventh character on.
        {"0001 七", "1 七位代码"},
        // Other lengths are not searched, also when an entry holds them.
        {"60000", ""}, {"6000001", ""}, {"      ", ""},
    };
    for (const auto &c : cases)
        EXPECT_EQ(stockNameFor(QString::fromUtf8(c.typed)), QString::fromUtf8(c.name)) << c.typed;
    marketdata::setStockCount(6);
    EXPECT_EQ(stockNameFor(QStringLiteral("ABCDEF")), QStringLiteral("字母"));
    EXPECT_EQ(stockNameFor(QStringLiteral("abcdef")), QString());
    marketdata::clearStockList();
}
