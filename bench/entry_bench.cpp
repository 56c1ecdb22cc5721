// One confirmation of the buy window on a large account (300 stocks with
// 100 trades each): the row is stored through its own handle, then the main
// window, connected as the real program connects it, shows the raw trade
// records again.
#include "Bench.h"

#include "BenchAccount.h"

#include "base/Paths.h"
#include "entry/TradeWindow.h"
#include "platform/frmBefor.h"
#include "ui/MsgBox.h"

#include <QApplication>
#include <QDateEdit>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QPushButton>
#include <QStringList>
#include <QTemporaryDir>

#include <cstdio>

namespace {

constexpr int kStocks = 300;
constexpr int kTradesPerStock = 100;
constexpr int kRuns = 15;

void type(QWidget &window, const char *box, const QString &text)
{
    window.findChild<QLineEdit *>(QLatin1String(box))->setText(text);
}

} // namespace

TESSALY_BENCH(entry_confirm)
{
    QTemporaryDir folder;
    const QString previous = base::programFolder();
    demodata::DemoOptions options;
    options.stocks = kStocks;
    bench::writeTradeJournal(folder.path(), demodata::demoStocks(options), kTradesPerStock, QStringLiteral("BENCH"));

    QStringList messages;
    ui::setMsgBoxRecorder(&messages);
    {
        frmBefor main;
        main.GetMame(QStringLiteral("BENCH"), QStringLiteral("user"));
        main.show();
        QApplication::processEvents();

        frmBuy buy(&main);
        buy.GetMame(QStringLiteral("BENCH"), QStringLiteral("user"));
        QObject::connect(&buy, &frmBuy::tradeStored, &main, [&main] { main.FrmRef(); });
        buy.show();
        QApplication::processEvents();
        auto *confirm = buy.findChild<QPushButton *>(QStringLiteral("Command2"));

        std::vector<double> samples;
        for (int run = 0; run < kRuns; ++run) {
            type(buy, "Text2", QStringLiteral("600000"));
            type(buy, "Text3", QStringLiteral("浦发银行"));
            type(buy, "Text4", QStringLiteral("10.5"));
            type(buy, "Text5", QStringLiteral("100"));
            type(buy, "Text6", QStringLiteral("bench"));
            QElapsedTimer t;
            t.start();
            confirm->click();
            QApplication::processEvents();
            samples.push_back(t.nsecsElapsed() / 1e6);
        }
        if (!messages.isEmpty())
            std::fprintf(stderr, "entry bench: message \"%s\"\n", qPrintable(messages.first()));
        bench::figure(QStringLiteral("confirm_buy_ms"), bench::median(samples), QStringLiteral("ms"));
        buy.hide();
        main.hide();
    }
    ui::setMsgBoxRecorder(nullptr);
    base::setProgramFolder(previous);
}
