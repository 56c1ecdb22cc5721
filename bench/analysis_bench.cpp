// The investment analysis on a large account (30,000 trades over 300 stocks
// with their demo price files) and the analysis window on the demo account.
#include "Bench.h"
#include "BenchAccount.h"
#include "DemoAccount.h"

#include "analysis/Prices.h"
#include "analysis/windows/ValueChart.h"
#include "analysis/windows/frmAnalysis.h"
#include "base/Paths.h"
#include "marketdata/MarketSettings.h"
#include "store/Database.h"
#include "store/Schema.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>

#include <cstdio>

namespace {

template <typename F>
double medianMs(int runs, F f)
{
    std::vector<double> samples;
    for (int run = 0; run < runs; ++run) {
        QElapsedTimer t;
        t.start();
        f();
        samples.push_back(t.nsecsElapsed() / 1e6);
    }
    return bench::median(samples);
}

} // namespace

TESSALY_BENCH(analysis)
{
    const QString previous = base::programFolder();
    {
        QTemporaryDir folder;
        demodata::DemoOptions options;
        options.stocks = 300;
        options.withIndex = false;
        if (!demodata::makeDemoMarket(folder.path(), options)) {
            std::fprintf(stderr, "analysis bench: cannot write the market\n");
            return;
        }
        bench::writeTradeJournal(folder.path(), demodata::demoStocks(options), 100, QStringLiteral("BENCH"));
        marketdata::setDataPath(folder.path() + QStringLiteral("/market"));
        marketdata::setDataFormat(0);

        analysis::Journal journal;
        analysis::PriceHistory prices;
        bench::figure(QStringLiteral("analysis_30k_ms"), medianMs(5, [&] {
                          store::Database db = store::openUserDatabase();
                          journal = analysis::loadJournal(db, QStringLiteral("BENCH"));
                          db.close();
                          prices = analysis::readPrices(journal);
                          analysis::analyse(journal, analysis::CostMethod::Fifo, prices, QDate(2024, 7, 1));
                      }),
                      QStringLiteral("ms"));
        if (journal.trades.size() != 30000 || prices.size() != 300)
            std::fprintf(stderr, "analysis bench: %zu trades, %zu price files\n", journal.trades.size(),
                         prices.size());
        bench::figure(QStringLiteral("values_chart_30k_ms"), medianMs(5, [&] {
                          analysis::ValueChart chart;
                          chart.resize(1100, 480);
                          chart.setSeries(analysis::valueSeries(journal, prices));
                          QImage image(QSize(2200, 960), QImage::Format_ARGB32_Premultiplied);
                          image.setDevicePixelRatio(2);
                          chart.render(image);
                      }),
                      QStringLiteral("ms"));
    }
    {
        // The window as the demo account opens it, until it has been painted.
        QTemporaryDir folder;
        store::createJournal(folder.path() + QStringLiteral("/user2.mdb"));
        demodata::DemoOptions options;
        if (!demodata::makeDemoMarket(folder.path(), options)) {
            std::fprintf(stderr, "analysis bench: cannot write the demo market\n");
            return;
        }
        demodata::makeDemoAccount(folder.path(), options);
        base::setProgramFolder(folder.path());
        marketdata::setDataPath(folder.path() + QStringLiteral("/market"));
        marketdata::setDataFormat(0);
        bench::figure(QStringLiteral("analysis_window_demo_ms"), medianMs(5, [] {
                          analysis::frmAnalysis w;
                          w.GetMame(QStringLiteral("DEMO"), QStringLiteral("user"));
                          w.show();
                          QApplication::processEvents();
                          w.close();
                      }),
                      QStringLiteral("ms"));
    }
    base::setProgramFolder(previous);
}
