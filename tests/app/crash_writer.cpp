// Stores trades and cash movements through the entry code, one after the
// other, and prints a line after each store has returned: "T n" for trade n,
// "C n" for cash movement n. Arguments: <folder> <first> <crash-at> <seed>
// <stores>; the power-loss file layer fails the power at its operation
// <crash-at> (0: never; the layer's count is printed as "O n" at the end).
#include "base/Paths.h"
#include "entry/CashEntry.h"
#include "entry/TradeEntry.h"
#include "support/PowerLossVfs.h"

#include <QCoreApplication>
#include <QDate>

#include <cstdio>
#include <cstdlib>

int main(int argc, char **argv)
{
    if (argc != 6)
        return 2;
    QCoreApplication app(argc, argv);
    base::setProgramFolder(QString::fromLocal8Bit(argv[1]));
    const int start = std::atoi(argv[2]);
    powerloss::install(std::atoll(argv[3]), uint32_t(std::strtoul(argv[4], nullptr, 10)));
    const int stores = std::atoi(argv[5]);
    const QString user = QStringLiteral("CRASH");
    for (int n = start; n < start + stores; ++n) {
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
    std::printf("O %lld\n", static_cast<long long>(powerloss::operations()));
    return 0;
}
