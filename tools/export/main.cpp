// tessaly-export [--folder DIR] --user NAME --password PW [--fifo] WHAT [CODE]
//
// Writes one table of an account as CSV (UTF-8 with a byte-order mark) on
// standard output. WHAT is
//   holdings   the main window's holdings grid
//   trades     trade details          stock CODE  the records of one stock
//   funds      fund records           profit      profit and loss
//   analysis   the investment analysis per stock and the account figures
//              (--fifo: first in, first out instead of the moving average)
//   values     the value over time, one row per day
// The classic tables come from the windows' own code, run without showing
// them. Whatever would end the program in a window (an overflow, an engine
// error) prints the same error text on standard error and exits with 1,
// writing nothing on standard output; so does a wrong login, with the login
// window's message. DIR is the program folder (user2.mdb, dateset.dat);
// by default the folder of this tool.

#include "analysis/Journal.h"
#include "analysis/Prices.h"
#include "analysis/Tables.h"
#include "base/ErrorGuard.h"
#include "base/Paths.h"
#include "platform/Holdings.h"
#include "platform/QuoteSession.h"
#include "reports/frmCha.h"
#include "reports/frmJyrec.h"
#include "reports/frmYkui.h"
#include "reports/frmZjin.h"
#include "store/Accounts.h"
#include "store/Database.h"
#include "store/FeeRates.h"
#include "ui/FlexGrid.h"

#include <QApplication>
#include <QCommandLineParser>

#include <cstdio>

namespace {

[[noreturn]] void fail(const QString &text)
{
    std::fprintf(stderr, "%s\n", text.toLocal8Bit().constData());
    // As the program ends on a fatal error: at once, without unwinding the
    // windows that are still alive.
    base::endProgram(1);
}

// The grid of a window as a table: row 0 the header, column 0 (always empty) left out.
analysis::Table gridTable(const ui::FlexGrid &grid)
{
    analysis::Table t;
    for (int r = 0; r < grid.rows(); ++r) {
        QStringList cells;
        for (int c = 1; c < grid.cols(); ++c)
            cells << grid.textMatrix(r, c);
        if (r == 0)
            t.headers = cells;
        else
            t.rows.push_back(cells);
    }
    return t;
}

template <typename Window, typename... Extra>
analysis::Table reportTable(const QString &user, const Extra &...extra)
{
    Window w;
    w.GetMame(user, QStringLiteral("user"), extra...);
    w.load(); // errors of the fill end the process through the fatal handler
    return gridTable(*w.grid());
}

analysis::Table holdingsTable(store::Database &db, const QString &user)
{
    platform::QuoteSession quotes;
    platform::Holdings h;
    platform::HoldList(
        db, user,
        [&quotes](const QString &code, float &price) {
            quotes.lookup(platform::dataPath(), QStringLiteral("0"), code, nullptr, price);
        },
        h);
    analysis::Table t;
    t.headers = platform::holdingsHeaders().mid(1);
    for (const auto &row : h.rows) {
        QStringList cells;
        for (size_t c = 1; c < row.size(); ++c)
            cells << row[c];
        t.rows.push_back(cells);
    }
    return t;
}

} // namespace

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    base::setFatalHandler([](const base::RuntimeError &e) { fail(base::fatalErrorText(e)); });

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Tessaly 的表格以 CSV 写到标准输出。"));
    const QCommandLineOption folder(QStringLiteral("folder"), QStringLiteral("程序文件夹"), QStringLiteral("DIR"));
    const QCommandLineOption user(QStringLiteral("user"), QStringLiteral("用户名"), QStringLiteral("NAME"));
    const QCommandLineOption password(QStringLiteral("password"), QStringLiteral("密码"), QStringLiteral("PW"));
    const QCommandLineOption fifo(QStringLiteral("fifo"), QStringLiteral("先进先出（analysis）"));
    parser.addOptions({folder, user, password, fifo});
    parser.addHelpOption();
    parser.addPositionalArgument(QStringLiteral("WHAT"),
                                 QStringLiteral("holdings | trades | stock CODE | funds | profit | analysis | values"));
    parser.process(app);
    const QStringList args = parser.positionalArguments();
    const QString what = args.value(0);
    static const QStringList kWhats = {QStringLiteral("holdings"), QStringLiteral("trades"), QStringLiteral("stock"),
                                       QStringLiteral("funds"),    QStringLiteral("profit"), QStringLiteral("analysis"),
                                       QStringLiteral("values")};
    if (!kWhats.contains(what) || !parser.isSet(user) || (what == QStringLiteral("stock")) != (args.size() == 2)
        || args.size() > 2)
        fail(parser.helpText());

    base::setProgramFolder(parser.isSet(folder) ? parser.value(folder) : QCoreApplication::applicationDirPath());

    QByteArray out;
    base::guard([&] {
        store::Database db = store::openUserDatabase();
        store::Recordset rs;
        const store::LoginResult login = store::checkLogin(db, rs, parser.value(user), parser.value(password),
                                                           store::LoginButton::Confirm);
        if (!login.accepted)
            fail(store::kLoginFailed);
        const QString name = login.name;
        // What the main window does at its load: the market-data settings and the fee values.
        platform::loadMarketSettings();
        store::Recordset fees = db.openRecordset(QStringLiteral("select * from 税率表"));
        for (int c = 1; c <= 6; ++c)
            store::setFeeValue(c, fees.field(c).toFloat());

        if (what == QStringLiteral("holdings")) {
            out = analysis::csvBytes(holdingsTable(db, name));
        } else if (what == QStringLiteral("trades")) {
            out = analysis::csvBytes(reportTable<frmJyrec>(name));
        } else if (what == QStringLiteral("stock")) {
            out = analysis::csvBytes(reportTable<frmCha>(name, args[1]));
        } else if (what == QStringLiteral("funds")) {
            out = analysis::csvBytes(reportTable<frmZjin>(name));
        } else if (what == QStringLiteral("profit")) {
            out = analysis::csvBytes(reportTable<frmYkui>(name));
        } else {
            const analysis::Journal journal = analysis::loadJournal(db, name);
            const analysis::PriceHistory prices = analysis::readPrices(journal);
            if (what == QStringLiteral("values")) {
                out = analysis::csvBytes(analysis::valueTable(analysis::valueSeries(journal, prices)));
            } else {
                const analysis::Analysis a =
                    analysis::analyse(journal, parser.isSet(fifo) ? analysis::CostMethod::Fifo
                                                                  : analysis::CostMethod::MovingAverage,
                                      prices, QDate::currentDate());
                // The account figures follow the stock table after an empty line.
                out = analysis::csvBytes(analysis::stockTable(a)) + "\r\n"
                    + analysis::csvBytes(analysis::summaryTable(a)).mid(3);
            }
        }
        db.close();
    });
    std::fwrite(out.constData(), 1, size_t(out.size()), stdout);
    return std::fflush(stdout) == 0 ? 0 : 1;
}
