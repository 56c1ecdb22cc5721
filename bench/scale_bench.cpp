// A journal ten times the size of the others: 300,000 trades and 30,000 cash
// movements of 28 accounts in one file. The measured account holds 30,000
// trades over 1,000 codes and 3,000 movements, spread through the file as
// they would be after years of use; the held codes have daily files of 4,000
// bars. The file is built once in a temporary folder; every figure is for the
// measured account, so that it shows whether a window's cost follows the
// account's rows or the file's.
#include "Bench.h"

#include "BenchAccount.h"

#include "DemoMarket.h"
#include "base/Paths.h"
#include "marketdata/MarketSettings.h"
#include "platform/frmBefor.h"
#include "reports/frmJyrec.h"
#include "reports/frmYkui.h"
#include "store/Accounts.h"
#include "store/Database.h"
#include "store/Schema.h"
#include "accounts/frmLogin.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QPushButton>
#include <QTemporaryDir>

#include <cstdio>
#include <memory>

namespace {

constexpr int kCodes = 1000;
constexpr int kTrades = 300000;
constexpr int kMovements = 30000;
constexpr int kAccounts = 28; // every tenth row is the measured account's
const QString kUser = QStringLiteral("SCALE00");
const QString kPassword = QStringLiteral("scale");

// The rows are written by the engine itself from a counter, one statement a
// table: row i belongs to the measured account when i is a multiple of ten,
// its code is the (i / 10 % 1000)th held code, and the dates run over twenty
// years in file order.
void fillJournal(const QList<demodata::DemoStock> &stocks)
{
    store::Database db = store::openUserDatabase();
    db.execute(QStringLiteral("begin"));
    db.execute(QStringLiteral("create temp table codes (k integer primary key, code text, name text)"));
    for (int k = 0; k < kCodes; ++k)
        db.execute(QStringLiteral("insert into codes values (%1, '%2', '%3')")
                       .arg(k)
                       .arg(stocks[k].code, stocks[k].name));
    const QString counter = QStringLiteral("with recursive n(i) as (select 0 union all select i + 1 from n where i < %1) ");
    const QString owner = QStringLiteral("case when i % 10 = 0 then '%1' else 'SCALE' || substr('0' || (1 + i % %2), -2) end")
                              .arg(kUser)
                              .arg(kAccounts - 1);
    db.execute(counter.arg(kTrades - 1)
               + QStringLiteral("insert into havewhat select %1, code, name, date('2005-01-04', '+' || (i / 41) || ' days'), "
                                "5 + (i % 97) / 10.0, case when i / 10000 % 3 = 2 then 100 else 200 end, 0.35, "
                                "case when i / 10000 % 3 = 2 then '卖出' else '买进' end, 'scale' "
                                "from n join codes on k = i / 10 % %2")
                     .arg(owner)
                     .arg(kCodes));
    db.execute(counter.arg(kMovements - 1)
               + QStringLiteral("insert into 资金表 select %1, date('2005-01-04', '+' || (i / 4) || ' days'), "
                                "1000 + i % 500, '工资', case when i % 20 = 10 then '提取' else '存入' end from n")
                     .arg(owner));
    store::Recordset rs;
    store::addAccount(db, rs, kUser, kPassword);
    rs = store::Recordset();
    db.execute(QStringLiteral("commit"));
    db.close();
}

// Login confirmed to the main window shown, as the program hands over.
double loginToMainMs()
{
    frmLogin login;
    std::unique_ptr<frmBefor> main;
    QObject::connect(&login, &frmLogin::loggedIn, [&main](const QString &name, const QString &role) {
        main = std::make_unique<frmBefor>();
        main->GetMame(name, role);
        main->show();
    });
    login.show();
    QApplication::processEvents();
    login.findChild<QLineEdit *>(QStringLiteral("txtUserName"))->setText(kUser);
    login.findChild<QLineEdit *>(QStringLiteral("txtPassword"))->setText(kPassword);
    QElapsedTimer t;
    t.start();
    login.findChild<QPushButton *>(QStringLiteral("cmdOK"))->click();
    QApplication::processEvents();
    const double ms = t.nsecsElapsed() / 1e6;
    if (!main)
        std::fprintf(stderr, "scale bench: the login was refused\n");
    return ms;
}

} // namespace

TESSALY_BENCH(scale)
{
    QTemporaryDir folder;
    const QString previous = base::programFolder();
    demodata::DemoOptions options;
    options.stocks = kCodes;
    options.bars = 4000;
    options.withIndex = false;
    QElapsedTimer build;
    build.start();
    if (!demodata::makeDemoMarket(folder.path(), options)) {
        std::fprintf(stderr, "scale bench: cannot write the market\n");
        return;
    }
    marketdata::setDataPath(folder.path() + QStringLiteral("/market"));
    store::createJournal(folder.path() + QStringLiteral("/user2.mdb"));
    base::setProgramFolder(folder.path());
    fillJournal(demodata::demoStocks(options));
    bench::figure(QStringLiteral("scale_file_build_ms"), build.nsecsElapsed() / 1e6, QStringLiteral("ms"));

    std::vector<double> samples;
    for (int run = 0; run < 5; ++run)
        samples.push_back(loginToMainMs());
    bench::figure(QStringLiteral("scale_login_main_ms"), bench::median(samples), QStringLiteral("ms"));
    {
        frmBefor main;
        main.GetMame(kUser, QStringLiteral("user"));
        main.show();
        QApplication::processEvents();
        samples.clear();
        for (int run = 0; run < 5; ++run) {
            QElapsedTimer t;
            t.start();
            main.FrmRef();
            QApplication::processEvents();
            samples.push_back(t.nsecsElapsed() / 1e6);
        }
        bench::figure(QStringLiteral("scale_raw_view_ms"), bench::median(samples), QStringLiteral("ms"));
        bench::figure(QStringLiteral("scale_confirm_buy_ms"), bench::confirmBuyMs(main, kUser), QStringLiteral("ms"));
    }
    bench::figure(QStringLiteral("scale_report_jyrec_ms"),
                  bench::timeWindow<frmJyrec>([](auto &w) { w.GetMame(kUser, QStringLiteral("user")); }),
                  QStringLiteral("ms"));
    bench::figure(QStringLiteral("scale_report_ykui_ms"),
                  bench::timeWindow<frmYkui>([](auto &w) { w.GetMame(kUser, QStringLiteral("user")); }),
                  QStringLiteral("ms"));
    bench::figure(QStringLiteral("scale_rss_mb"), bench::residentMb(), QStringLiteral("MB"));
    base::setProgramFolder(previous);
}
