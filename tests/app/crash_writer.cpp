// Stores trades and cash movements through the entry code, one after the
// other, and prints a line after each store has returned: "T n" for trade n,
// "C n" for cash movement n. The crash-safety test kills it at random moments.
#include "base/Paths.h"
#include "entry/CashEntry.h"
#include "entry/TradeEntry.h"

#include <QCoreApplication>
#include <QDate>

#include <cstdio>
#include <cstdlib>

int main(int argc, char **argv)
{
    if (argc < 3)
        return 2;
    QCoreApplication app(argc, argv);
    base::setProgramFolder(QString::fromLocal8Bit(argv[1]));
    const int start = std::atoi(argv[2]);
    const QString user = QStringLiteral("CRASH");
    for (int n = start; n < start + 100000; ++n) {
        entry::TradeInput t;
        t.user = user;
        t.date = QDate(2024, 1, 1).addDays(n % 365);
        t.code = QStringLiteral("%1").arg(n, 6, 10, QLatin1Char('0'));
        t.name = QStringLiteral("股票%1").arg(n);
        t.price = QStringLiteral("10.5");
        t.quantity = QString::number(n);
        t.reason = QStringLiteral("理由%1").arg(n);
        const QString refused = entry::storeTrade(n % 2 ? entry::kSell : entry::kBuy, t);
        if (!refused.isEmpty())
            return 3;
        std::printf("T %d\n", n);
        std::fflush(stdout);

        entry::CashInput c;
        c.user = user;
        c.date = t.date;
        c.amount = QString::number(n);
        c.reason = QStringLiteral("备注%1").arg(n);
        entry::storeCash(entry::kDeposit, c);
        std::printf("C %d\n", n);
        std::fflush(stdout);
    }
    return 0;
}
