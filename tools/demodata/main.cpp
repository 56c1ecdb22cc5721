// tessaly-demodata <program-folder> [--stocks N] [--bars N] [--tdx] [--account]
// Writes a small demonstration market and the files that point the program at it
// (with --tdx in the 通达信 layout); with --account also the demo account in the
// folder's user2.mdb.

#include "DemoAccount.h"
#include "DemoMarket.h"

#include <QCoreApplication>
#include <QStringList>

#include <cstdio>

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    const QStringList args = app.arguments();
    demodata::DemoOptions options;
    QString folder;
    bool account = false;
    for (int i = 1; i < args.size(); ++i) {
        const QString &a = args[i];
        bool ok = true;
        if (a == QStringLiteral("--stocks") && i + 1 < args.size())
            options.stocks = args[++i].toInt(&ok);
        else if (a == QStringLiteral("--bars") && i + 1 < args.size())
            options.bars = args[++i].toInt(&ok);
        else if (a == QStringLiteral("--tdx"))
            options.tdx = true;
        else if (a == QStringLiteral("--account"))
            account = true;
        else if (!a.startsWith(QStringLiteral("--")) && folder.isEmpty())
            folder = a;
        else
            ok = false;
        if (!ok || options.stocks < 1 || options.bars < 1 || options.bars > 20000) {
            std::fprintf(stderr, "usage: tessaly-demodata <program-folder> [--stocks N] [--bars N<=20000] [--tdx] [--account]\n");
            return 2;
        }
    }
    if (folder.isEmpty()) {
        std::fprintf(stderr, "usage: tessaly-demodata <program-folder> [--stocks N] [--bars N<=20000] [--tdx] [--account]\n");
        return 2;
    }
    if (!demodata::makeDemoMarket(folder, options)) {
        std::fprintf(stderr, "tessaly-demodata: cannot write under %s\n", qPrintable(folder));
        return 1;
    }
    std::printf("%d stocks, %d bars each, written under %s\n", options.stocks, options.bars, qPrintable(folder));
    if (account) {
        const demodata::DemoAccountInfo info = demodata::makeDemoAccount(folder, options);
        std::printf("account %s: %d trades, %d cash movements\n", qPrintable(demodata::kDemoUser), info.trades,
                    info.cashMovements);
    }
    return 0;
}
