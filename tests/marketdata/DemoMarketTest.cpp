// The demonstration market read back through the program's own paths: the
// settings file, the stock list and the quote lookup.

#include "DemoMarket.h"

#include "marketdata/DataSet.h"
#include "marketdata/MarketSettings.h"
#include "marketdata/QuoteLookup.h"
#include "marketdata/Readers.h"
#include "marketdata/StockList.h"
#include "support/TestFolder.h"

#include <QCryptographicHash>
#include <QDirIterator>
#include <QFile>
#include <gtest/gtest.h>

using namespace marketdata;

namespace {

QByteArray digestOf(const QString &folder)
{
    QCryptographicHash hash(QCryptographicHash::Sha256);
    QStringList files;
    QDirIterator it(folder, QDir::Files, QDirIterator::Subdirectories);
    while (it.hasNext())
        files << it.next();
    files.sort();
    for (const QString &f : files) {
        QFile file(f);
        file.open(QIODevice::ReadOnly);
        hash.addData(f.mid(folder.size()).toUtf8());
        // dateset.dat names the folder itself.
        if (!f.endsWith(QStringLiteral("dateset.dat")))
            hash.addData(file.readAll());
    }
    return hash.result();
}

} // namespace

TEST(DemoMarket, ReadsBackThroughTheProgram)
{
    TestFolder folder(false);
    demodata::DemoOptions options;
    options.bars = 300;
    ASSERT_TRUE(demodata::makeDemoMarket(folder.path(), options));

    DataSet settings;
    settings.GetDateSet();
    EXPECT_EQ(DataFormat(), 0);
    EXPECT_TRUE(DataPath().endsWith(QStringLiteral("/market")));

    clearStockList();
    LoadStockList();
    const QList<demodata::DemoStock> stocks = demodata::demoStocks(options);
    ASSERT_EQ(stocks.size(), 30);
    EXPECT_EQ(StockCount(), 30); // 29 stocks and the two index entries
    QStringList listed;
    for (int i = 0; i <= StockCount(); ++i)
        listed << StockList(i);
    EXPECT_TRUE(listed.contains(QStringLiteral("600000 浦发银行")));
    EXPECT_TRUE(listed.contains(QStringLiteral("000002 万科Ａ")));

    QuoteState state;
    for (int i = 0; i < stocks.size(); ++i) {
        const std::vector<StockBar> days = demodata::demoDailyBars(i, options);
        float last = -1;
        QuoteLookup(DataPath(), QStringLiteral("0"), stocks[i].code.toLower(), false, last, state);
        EXPECT_EQ(state.count, 300) << stocks[i].code.toStdString();
        EXPECT_FLOAT_EQ(last, days.back().Close) << stocks[i].code.toStdString();
        EXPECT_GT(last, 0.0f);
    }

    // Weekly: the finished weeks from the weekly file, then the running week
    // built from the daily file, which closes on the last day.
    const std::vector<StockBar> days = demodata::demoDailyBars(1, options);
    const auto weeks = demodata::finishedPeriodBars(days, 2);
    BarArray bars;
    int16_t count = 0;
    float low = 0, high = 0;
    int32_t lowDate = 0, highDate = 0;
    ReadQianlong(DataPath(), stocks[1].code, 2, 0, 0, bars, count, low, high, lowDate, highDate);
    ASSERT_EQ(count, int(weeks.size()) + 1);
    EXPECT_EQ(bars[1], weeks.front());
    EXPECT_EQ(std::make_pair(bars[count].Date, bars[count].Close), std::make_pair(days.back().Date, days.back().Close));
}

TEST(DemoMarket, SameOptionsSameBytes)
{
    TestFolder a(false), b(false);
    demodata::DemoOptions options;
    options.stocks = 40;
    options.bars = 120;
    ASSERT_TRUE(demodata::makeDemoMarket(a.path(), options));
    ASSERT_TRUE(demodata::makeDemoMarket(b.path(), options));
    EXPECT_EQ(digestOf(a.path()), digestOf(b.path()));
    options.seed += 1;
    ASSERT_TRUE(demodata::makeDemoMarket(b.path(), options));
    EXPECT_NE(digestOf(a.path()), digestOf(b.path()));
}
