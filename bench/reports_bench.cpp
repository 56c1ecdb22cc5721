// Report windows on a large account: 30,000 trades over 300 codes and 1,000
// cash movements, written through the store into a temporary program folder.
#include "Bench.h"

#include "base/ErrorGuard.h"
#include "base/Paths.h"
#include "reports/frmCha.h"
#include "reports/frmJyrec.h"
#include "reports/frmYkui.h"
#include "reports/frmZjin.h"
#include "store/Database.h"
#include "store/FeeRates.h"
#include "store/Schema.h"

#include <QApplication>
#include <QDate>
#include <QElapsedTimer>
#include <QTemporaryDir>

namespace {

const QString kUser = QStringLiteral("BENCH");
constexpr int kCodes = 300;
constexpr int kTradesPerCode = 100;
constexpr int kCashRows = 1000;

QString codeOf(int i)
{
    static const char *const prefixes[] = {"600", "000", "200"};
    return QString::fromLatin1(prefixes[i % 3]) + QStringLiteral("%1").arg(i, 3, 10, QLatin1Char('0'));
}

void fillAccount()
{
    store::Database db = store::openUserDatabase();
    // One transaction for the whole load when the engine takes it; row by row otherwise.
    const bool batched = base::resumeNext([&] { db.execute(QStringLiteral("begin")); });
    store::Recordset trades = db.openRecordset(QStringLiteral("select * from havewhat"));
    const QDate start(2020, 1, 2);
    for (int k = 0; k < kTradesPerCode; ++k) {
        for (int i = 0; i < kCodes; ++i) {
            const bool buy = k % 2 == 0;
            trades.AddNew();
            trades.setField(0, kUser);
            trades.setField(1, codeOf(i));
            trades.setField(2, QStringLiteral("股票%1").arg(i));
            trades.setField(3, start.addDays(k * 3 + i % 3));
            trades.setField(4, buy ? 10.0 : 11.0);
            trades.setField(5, 10.0);
            trades.setField(6, 0.35f);
            trades.setField(7, buy ? QStringLiteral("买进") : QStringLiteral("卖出"));
            trades.setField(8, QStringLiteral("测试"));
            trades.Update();
        }
    }
    store::Recordset cash = db.openRecordset(QStringLiteral("select * from 资金表"));
    for (int k = 0; k < kCashRows; ++k) {
        cash.AddNew();
        cash.setField(0, kUser);
        cash.setField(1, start.addDays(k));
        cash.setField(2, 1000.0 + k);
        cash.setField(3, k % 2 ? QStringLiteral("工资") : QString());
        cash.setField(4, k % 2 ? QStringLiteral("存入") : QStringLiteral("提取"));
        cash.Update();
    }
    if (batched)
        db.execute(QStringLiteral("commit"));
    db.close();
}

} // namespace

TESSALY_BENCH(reports)
{
    QTemporaryDir dir;
    const QString previous = base::programFolder();
    base::setProgramFolder(dir.path());
    store::createJournal(dir.path() + QStringLiteral("/user2.mdb"));
    store::setFeeValue(3, 5);
    store::setFeeValue(4, 5);

    QElapsedTimer t;
    t.start();
    fillAccount();
    bench::figure(QStringLiteral("report_account_fill_ms"), t.nsecsElapsed() / 1e6, QStringLiteral("ms"));

    bench::figure(QStringLiteral("report_jyrec_ms"),
                  bench::timeWindow<frmJyrec>([](auto &w) { w.GetMame(kUser, QStringLiteral("user")); }),
                  QStringLiteral("ms"));
    bench::figure(QStringLiteral("report_cha_ms"), bench::timeWindow<frmCha>([](auto &w) {
                      w.GetMame(kUser, QStringLiteral("user"), codeOf(7));
                  }),
                  QStringLiteral("ms"));
    bench::figure(QStringLiteral("report_zjin_ms"),
                  bench::timeWindow<frmZjin>([](auto &w) { w.GetMame(kUser, QStringLiteral("user")); }),
                  QStringLiteral("ms"));
    bench::figure(QStringLiteral("report_ykui_ms"),
                  bench::timeWindow<frmYkui>([](auto &w) { w.GetMame(kUser, QStringLiteral("user")); }),
                  QStringLiteral("ms"));
    base::setProgramFolder(previous);
}
