#include "support/Helpers.h"
#include "platform/Holdings.h"

#include <QHash>

using platform::Holdings;
using platform::HoldList;
using namespace testjournal;

namespace {

// Prices by code; a code missing here has no bars (the price is not written).
struct Quotes {
    QHash<QString, float> closes;
    QStringList asked;
    platform::QuoteFn fn()
    {
        return [this](const QString &code, float &price) {
            asked << code;
            if (closes.contains(code))
                price = closes.value(code);
        };
    }
};

class HoldingsTest : public ::testing::Test {
protected:
    TestFolder folder;
    store::Database db = store::openUserDatabase();
    Quotes quotes;

    Holdings run(const QString &previousPercent = QStringLiteral("old"))
    {
        Holdings h;
        h.percent = previousPercent;
        HoldList(db, QStringLiteral("ALICE"), quotes.fn(), h);
        return h;
    }
};

} // namespace

TEST_F(HoldingsTest, TwoBuysAtDifferentRatesAverageTheirCostWithFees)
{
    addTrades({{.code = "600000", .price = 10.00, .shares = 100, .rate = 0.35f}, {.code = "600000", .price = 12.00, .shares = 100, .rate = 0.5f}});
    quotes.closes["600000"] = 11.5f;
    const Holdings h = run();
    ASSERT_EQ(h.rows.size(), 1u);
    EXPECT_EQ(QStringList(h.rows[0].begin(), h.rows[0].end()),
              (QStringList{"", "600000", " ", "11.0475", "200", "2209.5", "2300", "90.5"}));
    EXPECT_EQ(h.marketValue, "2300");
}

TEST_F(HoldingsTest, SoldOutStocksGetNoRowAndPartialSalesReduceTheHolding)
{
    addTrades({{.code = "000001", .price = 10, .shares = 1000}, {.code = "000001", .price = 11, .shares = 1000, .buy = false},
               {.code = "000002", .price = 10, .shares = 1000}, {.code = "000002", .price = 11, .shares = 300, .buy = false},
               {.code = "000003", .price = 11, .shares = 500, .buy = false}}); // sold, never bought
    quotes.closes["000002"] = 10;
    const Holdings h = run();
    ASSERT_EQ(h.rows.size(), 1u);
    // Average cost is that of all shares bought, not reduced by the sale; only shown stocks are priced.
    EXPECT_EQ((QStringList{h.rows[0][1], h.rows[0][4], h.rows[0][3], h.rows[0][5]}), (QStringList{"000002", "700", "10", "7000"}));
    EXPECT_EQ(quotes.asked, QStringList{"000002"});
}

TEST_F(HoldingsTest, AShareSumBeyondSixteenBitsKeepsThePreviousValue)
{
    // The first code's bought total of 40000 does not fit: bought stays 0 and
    // the code gets no row.
    addTrades({{.code = "600001", .price = 1, .shares = 20000}, {.code = "600001", .price = 1, .shares = 20000}});
    quotes.closes["600001"] = 2;
    Holdings h = run();
    EXPECT_EQ(std::make_tuple(h.rows.size(), h.marketValue), std::make_tuple(0u, QStringLiteral("0")));

    // A later code whose sold sum overflows keeps the sold total of the code
    // before it.
    TestFolder other;
    db = store::openUserDatabase();
    addTrades({{.code = "600002", .price = 1, .shares = 1000}, {.code = "600002", .price = 1, .shares = 100, .buy = false},
               {.code = "600003", .price = 1, .shares = 1000}, {.code = "600003", .price = 1, .shares = 20000, .buy = false},
               {.code = "600003", .price = 1, .shares = 20000, .buy = false}});
    h = run();
    ASSERT_EQ(h.rows.size(), 2u);
    EXPECT_EQ((QStringList{h.rows[0][4], h.rows[1][4]}), (QStringList{"900", "900"}));

    // A held difference beyond 16 bits: the row is shown on the previous
    // code's held count, but its share-based cells stay unwritten and it adds
    // nothing to the market value.
    TestFolder third;
    db = store::openUserDatabase();
    addTrades({{.code = "600004", .price = 1, .shares = 500}, {.code = "600005", .price = 1, .shares = 30000},
               {.code = "600005", .price = 1, .shares = -5000, .buy = false}});
    quotes.closes = {{"600004", 2}, {"600005", 3}};
    h = run();
    ASSERT_EQ(h.rows.size(), 2u);
    EXPECT_EQ(QStringList(h.rows[1].begin(), h.rows[1].end()), (QStringList{"", "600005", " ", "1", "", "", "", ""}));
    EXPECT_EQ(h.marketValue, "1000");
}

TEST_F(HoldingsTest, PercentageIsTakenAgainstTheMarketValueAndKeptWithoutHoldings)
{
    addCash(12000);
    Holdings h = run(QStringLiteral(" 3.5%"));
    EXPECT_TRUE(h.rows.empty());
    EXPECT_EQ(std::make_tuple(h.marketValue, h.netFunds, h.percent), std::make_tuple("0", "12000", " 3.5%"));

    addTrades({{.code = "600000", .price = 9, .shares = 1000}});
    addCash(2000, false);
    quotes.closes["600000"] = 9;
    h = run();
    EXPECT_EQ(std::make_tuple(h.marketValue, h.netFunds, h.percent), std::make_tuple("9000", "10000", "-11.11%"));

    quotes.closes["600000"] = 12;
    h = run();
    EXPECT_EQ((QStringList{h.percent, platform::lossPercentText(12000, QStringLiteral("10000abc"))}), QStringList(2, " 16.67%"));
}

TEST_F(HoldingsTest, AStockWithoutBarsIsValuedAtThePreviousCodesPrice)
{
    addTrades({{.code = "600000", .price = 10, .shares = 100}, {.code = "600010", .price = 10, .shares = 100}});
    quotes.closes["600000"] = 8;
    const Holdings h = run();
    ASSERT_EQ(h.rows.size(), 2u);
    // Whichever order the codes come in, the one without bars takes the
    // price left by the code before it (0 for the first).
    const int priced = h.rows[0][1] == "600000" ? 0 : 1;
    EXPECT_EQ((QStringList{h.rows[priced][6], h.rows[1 - priced][6]}), (QStringList{"800", priced == 0 ? "800" : "0"}));
}

TEST_F(HoldingsTest, OnlyTheUsersOwnRowsCountAndAQuoteInTheNameFailsQuietly)
{
    addTrades({{.code = "600000", .price = 10, .shares = 100}, {.code = "600000", .price = 10, .shares = 5000, .user = "BOB"}});
    addCash(99999, true, "BOB");
    quotes.closes["600000"] = 10;
    Holdings h = run();
    ASSERT_EQ(h.rows.size(), 1u);
    EXPECT_EQ((QStringList{h.rows[0][4], h.netFunds}), (QStringList{"100", "0"}));

    Holdings broken;
    broken.percent = "kept";
    HoldList(db, QStringLiteral("O'NEIL"), quotes.fn(), broken);
    EXPECT_EQ(std::make_tuple(broken.rows.size(), broken.percent), std::make_tuple(0u, QStringLiteral("kept")));
}
