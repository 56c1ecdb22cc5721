// tessaly-demodata <program-folder> [--stocks N] [--bars N]
// Writes a small demonstration market and the files that point the program at it.

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
    for (int i = 1; i < args.size(); ++i) {
        const QString &a = args[i];
        bool ok = true;
        if (a == QStringLiteral("--stocks") && i + 1 < args.size())
            options.stocks = args[++i].toInt(&ok);
        else if (a == QStringLiteral("--bars") && i + 1 < args.size())
            options.bars = args[++i].toInt(&ok);
        else if (!a.startsWith(QStringLiteral("--")) && folder.isEmpty())
            folder = a;
        else
            ok = false;
        if (!ok || options.stocks < 1 || options.bars < 1 || options.bars > 20000) {
            std::fprintf(stderr, "usage: tessaly-demodata <program-folder> [--stocks N] [--bars N<=20000]\n");
            return 2;
        }
    }
    if (folder.isEmpty()) {
        std::fprintf(stderr, "usage: tessaly-demodata <program-folder> [--stocks N] [--bars N<=20000]\n");
        return 2;
    }
    if (!demodata::makeDemoMarket(folder, options)) {
        std::fprintf(stderr, "tessaly-demodata: cannot write under %s\n", qPrintable(folder));
        return 1;
    }
    std::printf("%d stocks, %d bars each, written under %s\n", options.stocks, options.bars, qPrintable(folder));
    return 0;
}
