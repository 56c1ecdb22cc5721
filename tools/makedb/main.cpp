// tessaly-makedb <path>: makes the journal file delivered with the program
// (the four tables, the administrator account and one fee row).
// tessaly-makedb --stock-list <list.txt> <path>: makes a GpSz/GpSh stock-list
// file from a UTF-8 text of "code name" lines.

#include "base/RuntimeError.h"
#include "marketdata/StockList.h"
#include "store/Schema.h"

#include <QCoreApplication>
#include <QFile>
#include <QSaveFile>
#include <QStringList>

#include <cstdio>

namespace {

bool makeStockList(const QString &source, const QString &target)
{
    QFile in(source);
    if (!in.open(QIODevice::ReadOnly | QIODevice::Text))
        return false;
    QStringList records;
    for (const QString &line : QString::fromUtf8(in.readAll()).split(u'\n', Qt::SkipEmptyParts))
        records << line.simplified().remove(u' ');
    QSaveFile out(target);
    return out.open(QIODevice::WriteOnly) && out.write(marketdata::stockListFileBytes(records)) >= 0 && out.commit();
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    const QStringList args = app.arguments();
    if (args.size() == 4 && args.at(1) == QStringLiteral("--stock-list")) {
        if (makeStockList(args.at(2), args.at(3)))
            return 0;
        std::fprintf(stderr, "tessaly-makedb: cannot make %s from %s\n", qPrintable(args.at(3)), qPrintable(args.at(2)));
        return 1;
    }
    if (args.size() != 2) {
        std::fprintf(stderr, "usage: tessaly-makedb <path of user2.mdb>\n"
                             "       tessaly-makedb --stock-list <list.txt> <path of GpSz or GpSh>\n");
        return 2;
    }
    try {
        store::createJournal(args.at(1));
    } catch (const base::RuntimeError &e) {
        std::fprintf(stderr, "tessaly-makedb: %s\n", qPrintable(e.description()));
        return 1;
    }
    return 0;
}
