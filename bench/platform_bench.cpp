// The main window over a large account: 300 held stocks with 100 trades each
// (30,000 trades) valued from 300 daily files of 4,000 bars.
#include "Bench.h"

#include "BenchAccount.h"

#include "DemoMarket.h"
#include "base/Paths.h"
#include "marketdata/MarketSettings.h"
#include "marketdata/QuoteLookup.h"
#include "platform/Holdings.h"
#include "platform/frmBefor.h"
#include "store/Database.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>

#include <cstdio>

namespace {

constexpr int kStocks = 300;
constexpr int kTradesPerStock = 100;

// Writes the market and the account; returns false when something failed.
bool makeAccount(const QString &folder)
{
    demodata::DemoOptions options;
    options.stocks = kStocks;
    options.bars = 4000;
    options.withIndex = false;
    if (!demodata::makeDemoMarket(folder, options))
        return false;
    bench::writeTradeJournal(folder, demodata::demoStocks(options), kTradesPerStock, QStringLiteral("BENCH"));
    return true;
}

} // namespace

TESSALY_BENCH(platform_main)
{
    QTemporaryDir folder;
    const QString previous = base::programFolder();
    if (!makeAccount(folder.path())) {
        std::fprintf(stderr, "platform bench: cannot write the account\n");
        return;
    }
    marketdata::setDataPath(folder.path() + QStringLiteral("/market"));

    {
        store::Database db = store::openUserDatabase();
        marketdata::QuoteState state;
        std::vector<double> samples;
        int rows = 0;
        for (int run = 0; run < 7; ++run) {
            platform::Holdings h;
            QElapsedTimer t;
            t.start();
            platform::HoldList(
                db, QStringLiteral("BENCH"),
                [&](const QString &code, float &price) {
                    marketdata::QuoteLookup(marketdata::DataPath(), QStringLiteral("0"), code, false, price, state);
                },
                h);
            samples.push_back(t.nsecsElapsed() / 1e6);
            rows = int(h.rows.size());
        }
        bench::figure(QStringLiteral("holdlist_300_ms"), bench::median(samples), QStringLiteral("ms"));
        if (rows != kStocks)
            std::fprintf(stderr, "platform bench: %d holdings rows, expected %d\n", rows, kStocks);
    }

    std::vector<double> samples;
    double rss = 0;
    for (int run = 0; run < 5; ++run) {
        QElapsedTimer t;
        t.start();
        frmBefor w;
        w.GetMame(QStringLiteral("BENCH"), QStringLiteral("user"));
        w.show();
        QApplication::processEvents();
        samples.push_back(t.nsecsElapsed() / 1e6);
        rss = std::max(rss, bench::residentMb());
        w.hide();
    }
    bench::figure(QStringLiteral("main_window_ms"), bench::median(samples), QStringLiteral("ms"));
    bench::figure(QStringLiteral("main_window_rss_mb"), rss, QStringLiteral("MB"));
    base::setProgramFolder(previous);
}
