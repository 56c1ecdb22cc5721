#include "DemoAccount.h"

#include "base/Numbers.h"
#include "base/Paths.h"
#include "entry/CashEntry.h"
#include "entry/TradeEntry.h"
#include "store/Database.h"
#include "store/FeeRates.h"
#include "store/Schema.h"

#include <QDate>

#include <algorithm>

namespace demodata {

namespace {

QDate toDate(int32_t yyyymmdd)
{
    return QDate(yyyymmdd / 10000, yyyymmdd / 100 % 100, yyyymmdd % 100);
}

QString priceText(float close)
{
    return QString::number(double(close), 'f', 2);
}

} // namespace

DemoAccountInfo makeDemoAccount(const QString &programFolder, const DemoOptions &options)
{
    DemoAccountInfo info;
    const QString previous = base::programFolder();
    base::setProgramFolder(programFolder);

    {
        store::Database db = store::openUserDatabase();
        store::Recordset users = db.openRecordset(QStringLiteral("select * from user"));
        users.AddNew();
        users.setField(1, kDemoUser);
        users.setField(2, kDemoPassword);
        users.setField(3, QStringLiteral("user"));
        users.Update();
        store::Recordset fees = db.openRecordset(QStringLiteral("select * from 税率表"));
        for (int c = 1; c <= 6; ++c)
            store::setFeeValue(c, fees.field(c).toFloat());
    }

    const QString user = kDemoUser.toUpper();
    const QList<DemoStock> stocks = demoStocks(options);

    // Cash first: what the account started with and what came and went.
    const struct {
        int daysBeforeEnd;
        const char *amount;
        const char *reason;
        bool deposit;
    } cash[] = {
        {700, "300000", "开户资金", true},
        {420, "100000", "年终奖", true},
        {300, "20000", "装修", false},
        {120, "50000", "工资结余", true},
    };
    const QDate end = toDate(options.lastDate);
    for (const auto &c : cash) {
        entry::CashInput in{user, end.addDays(-c.daysBeforeEnd), QString::fromLatin1(c.amount),
                            QString::fromUtf8(c.reason)};
        entry::storeCash(c.deposit ? entry::kDeposit : entry::kWithdrawal, in);
        ++info.cashMovements;
    }

    // Trades: a dozen stocks bought in two or three lots; some partly sold in
    // small lots (the profit report keeps its sums within 16 bits), one sold out.
    int traded = 0;
    for (int i = 0; i < stocks.size() && traded < 12; ++i) {
        const DemoStock &s = stocks[i];
        if (s.code == QStringLiteral("1A0001"))
            continue;
        const std::vector<marketdata::StockBar> days = demoDailyBars(i, options);
        if (days.size() < 400)
            continue;
        const int n = int(days.size());
        const int lots = 2 + traded % 2;
        int held = 0;
        for (int lot = 0; lot < lots; ++lot) {
            const marketdata::StockBar &bar = days[size_t(n - 380 + lot * 90 + traded * 7)];
            const int shares = traded == 4 ? 100 : std::max(100, int(20000.0 / std::max(1.0f, bar.Close)) / 100 * 100);
            entry::TradeInput t{user, toDate(bar.Date), s.code, s.name, priceText(bar.Close),
                                QString::number(shares), lot == 0 ? QStringLiteral("看好长期走势") : QString()};
            entry::storeTrade(entry::kBuy, t);
            held += shares;
            ++info.trades;
        }
        if (traded % 3 != 2) {
            const marketdata::StockBar &bar = days[size_t(n - 60 + traded * 3)];
            int shares = std::min(held, std::max(100, int(15000.0 / std::max(1.0f, bar.Close)) / 100 * 100));
            if (traded == 4)
                shares = held; // one stock sold out: it leaves the holdings list
            if (double(shares) * bar.Close > 30000.0)
                shares = std::max(100, int(30000.0 / bar.Close) / 100 * 100);
            entry::TradeInput t{user, toDate(bar.Date), s.code, s.name, priceText(bar.Close),
                                QString::number(shares), traded % 2 ? QStringLiteral("获利了结") : QString()};
            if (double(shares) * bar.Close <= 30000.0) {
                entry::storeTrade(entry::kSell, t);
                ++info.trades;
            }
        }
        ++traded;
    }

    base::setProgramFolder(previous);
    return info;
}

} // namespace demodata
