// The demonstration market read back through the program's own paths: the
// settings file, the stock list and the quote lookup.

#include "DemoMarket.h"

#include "marketdata/DataSet.h"
#include "marketdata/MarketSettings.h"
#include "marketdata/QuoteLookup.h"
#include "marketdata/StockList.h"
#include "support/Helpers.h"

using namespace marketdata;

TEST(DemoMarket, ReadsBackThroughTheProgramInBothLayouts)
{
    for (const bool tdx : {false, true}) {
        TestFolder folder(false);
        demodata::DemoOptions options;
        options.bars = 300;
        options.tdx = tdx;
        ASSERT_TRUE(demodata::makeDemoMarket(folder.path(), options));

        DataSet settings;
        settings.GetDateSet();
        EXPECT_EQ(DataFormat(), tdx ? 7 : 0);
        EXPECT_TRUE(DataPath().endsWith(QStringLiteral("/market")));

        clearStockList();
        LoadStockList();
        const QList<demodata::DemoStock> stocks = demodata::demoStocks(options);
        EXPECT_EQ(StockCount(), 30); // 29 stocks and the two index entries: 0 .. 30

        QuoteState state;
        for (int i = 0; i < stocks.size(); ++i) {
            const std::vector<StockBar> days = demodata::demoDailyBars(i, options);
            float last = -1;
            QuoteLookup(DataPath(), quoteSourceFor(DataFormat()), stocks[i].code.toLower(), false, last, state);
            EXPECT_EQ(state.count, 300) << stocks[i].code.toStdString();
            EXPECT_FLOAT_EQ(last, days.back().Close) << stocks[i].code.toStdString();
        }
    }
}
