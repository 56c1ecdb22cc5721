// One confirmation of the buy window on a large account (300 stocks with
// 100 trades each): the row is stored through its own handle, then the main
// window, connected as the real program connects it, shows the raw trade
// records again.
#include "Bench.h"

#include "BenchAccount.h"

#include "base/Paths.h"
#include "platform/frmBefor.h"

#include <QApplication>
#include <QTemporaryDir>

namespace {
constexpr int kStocks = 300;
constexpr int kTradesPerStock = 100;
} // namespace

TESSALY_BENCH(entry_confirm)
{
    QTemporaryDir folder;
    const QString previous = base::programFolder();
    demodata::DemoOptions options;
    options.stocks = kStocks;
    bench::writeTradeJournal(folder.path(), demodata::demoStocks(options), kTradesPerStock, QStringLiteral("BENCH"));
    {
        frmBefor main;
        main.GetMame(QStringLiteral("BENCH"), QStringLiteral("user"));
        main.show();
        QApplication::processEvents();
        bench::figure(QStringLiteral("confirm_buy_ms"), bench::confirmBuyMs(main, QStringLiteral("BENCH")),
                      QStringLiteral("ms"));
        main.hide();
    }
    base::setProgramFolder(previous);
}
