#include "BenchAccount.h"

#include "Bench.h"

#include "base/Paths.h"
#include "entry/TradeWindow.h"
#include "platform/frmBefor.h"
#include "store/Database.h"
#include "store/Schema.h"
#include "ui/MsgBox.h"

#include <QApplication>
#include <QDate>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QPushButton>

#include <cstdio>

namespace bench {

void writeTradeJournal(const QString &folder, const QList<demodata::DemoStock> &stocks, int tradesPerStock,
                       const QString &user)
{
    store::createJournal(folder + QStringLiteral("/user2.mdb"));
    base::setProgramFolder(folder);
    store::Database db = store::openUserDatabase();
    db.execute(QStringLiteral("begin"));
    store::Recordset rs = db.openRecordset(QStringLiteral("select * from havewhat"));
    for (const demodata::DemoStock &stock : stocks) {
        for (int t = 0; t < tradesPerStock; ++t) {
            const bool sell = t % 4 == 3;
            rs.AddNew();
            rs.setField(0, user);
            rs.setField(1, stock.code);
            rs.setField(2, stock.name);
            rs.setField(3, QDate(2020, 1, 1).addDays(t * 7));
            rs.setField(4, 10.0 + t % 10);
            rs.setField(5, sell ? 100.0 : 200.0);
            rs.setField(6, 0.35f);
            rs.setField(7, sell ? QStringLiteral("卖出") : QStringLiteral("买进"));
            rs.setField(8, QStringLiteral("bench"));
            rs.Update();
        }
    }
    db.execute(QStringLiteral("commit"));
    db.close();
}

double confirmBuyMs(frmBefor &main, const QString &user)
{
    constexpr int kRuns = 15;
    QStringList messages;
    ui::setMsgBoxRecorder(&messages);
    frmBuy buy(&main);
    buy.GetMame(user, QStringLiteral("user"));
    QObject::connect(&buy, &frmBuy::tradeStored, &main, [&main] { main.FrmRef(); });
    buy.show();
    QApplication::processEvents();
    auto *confirm = buy.findChild<QPushButton *>(QStringLiteral("Command2"));
    const auto type = [&buy](const char *box, const QString &text) {
        buy.findChild<QLineEdit *>(QLatin1String(box))->setText(text);
    };

    std::vector<double> samples;
    for (int run = 0; run < kRuns; ++run) {
        type("Text2", QStringLiteral("600000"));
        type("Text3", QStringLiteral("浦发银行"));
        type("Text4", QStringLiteral("10.5"));
        type("Text5", QStringLiteral("100"));
        type("Text6", QStringLiteral("bench"));
        QElapsedTimer t;
        t.start();
        confirm->click();
        QApplication::processEvents();
        samples.push_back(t.nsecsElapsed() / 1e6);
    }
    if (!messages.isEmpty())
        std::fprintf(stderr, "entry bench: message \"%s\"\n", qPrintable(messages.first()));
    buy.hide();
    ui::setMsgBoxRecorder(nullptr);
    return bench::median(samples);
}

} // namespace bench
