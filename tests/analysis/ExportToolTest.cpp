// tessaly-export run as a process on the demo account: every classic table
// it prints equals the grid its window fills; the endings of a window become
// an error text and a non-zero exit with nothing on standard output.
#include "DemoAccount.h"
#include "base/Paths.h"
#include "marketdata/MarketSettings.h"
#include "platform/Holdings.h"
#include "platform/QuoteSession.h"
#include "reports/frmCha.h"
#include "reports/frmJyrec.h"
#include "reports/frmYkui.h"
#include "reports/frmZjin.h"
#include "support/Helpers.h"
#include "store/FeeRates.h"
#include "ui/FlexGrid.h"

namespace {

struct ToolRun {
    int exitCode = -1;
    QByteArray out;
    QString err;
};

ToolRun runExport(const QString &folder, const QStringList &args, const QString &password = QStringLiteral("demo"))
{
    QProcess p;
    p.start(QStringLiteral(TESSALY_EXPORT),
            QStringList{QStringLiteral("--folder"), folder, QStringLiteral("--user"), QStringLiteral("demo"),
                        QStringLiteral("--password"), password}
                + args);
    p.waitForFinished(120000);
    return {p.exitStatus() == QProcess::NormalExit ? p.exitCode() : -1, p.readAllStandardOutput(),
            QString::fromUtf8(p.readAllStandardError())};
}

// CSV lines of a grid as the tool writes them (no field here needs quoting).
QByteArray gridCsv(const ui::FlexGrid &g)
{
    return "\xEF\xBB\xBF" + (gridRows(g, 0, u',').join(QStringLiteral("\r\n")) + QStringLiteral("\r\n")).toUtf8();
}

template <typename Window, typename... Extra>
QByteArray windowCsv(const Extra &...extra)
{
    Window w;
    w.GetMame(QStringLiteral("DEMO"), QStringLiteral("user"), extra...);
    w.load();
    return gridCsv(*w.grid());
}

} // namespace

TEST(ExportTool, ClassicTablesEqualTheirWindowsForTheDemoAccount)
{
    TestFolder folder;
    demodata::DemoOptions options;
    ASSERT_TRUE(demodata::makeDemoMarket(folder.path(), options));
    demodata::makeDemoAccount(folder.path(), options);
    marketdata::setDataPath(folder.path() + QStringLiteral("/market"));
    store::Database db = store::openUserDatabase();
    store::Recordset fees = db.openRecordset(QStringLiteral("select * from 税率表"));
    for (int c = 1; c <= 6; ++c)
        store::setFeeValue(c, fees.field(c).toFloat());

    EXPECT_EQ(runExport(folder.path(), {QStringLiteral("trades")}).out, windowCsv<frmJyrec>());
    EXPECT_EQ(runExport(folder.path(), {QStringLiteral("funds")}).out, windowCsv<frmZjin>());
    EXPECT_EQ(runExport(folder.path(), {QStringLiteral("profit")}).out, windowCsv<frmYkui>());
    EXPECT_EQ(runExport(folder.path(), {QStringLiteral("stock"), QStringLiteral("600000")}).out,
              windowCsv<frmCha>(QStringLiteral("600000")));

    platform::QuoteSession quotes;
    platform::Holdings h;
    platform::HoldList(
        db, QStringLiteral("DEMO"),
        [&](const QString &code, float &price) {
            quotes.lookup(marketdata::DataPath(), QStringLiteral("0"), code, nullptr, price);
        },
        h);
    QString holdings = platform::holdingsHeaders().mid(1).join(u',') + QStringLiteral("\r\n");
    for (const auto &row : h.rows)
        holdings += QStringList(row.begin() + 1, row.end()).join(u',') + QStringLiteral("\r\n");
    EXPECT_EQ(runExport(folder.path(), {QStringLiteral("holdings")}).out, "\xEF\xBB\xBF" + holdings.toUtf8());

    const ToolRun analysis = runExport(folder.path(), {QStringLiteral("analysis"), QStringLiteral("--fifo")});
    EXPECT_EQ(std::make_tuple(analysis.exitCode, analysis.out.contains("\r\n\r\n项目,数值\r\n现金余额,")), std::make_tuple(0, true));

    const ToolRun wrong = runExport(folder.path(), {QStringLiteral("analysis")}, QStringLiteral("Demo"));
    EXPECT_EQ(std::make_tuple(wrong.exitCode, wrong.out, wrong.err.contains(QStringLiteral("用户名或密码错误！"))),
              std::make_tuple(1, QByteArray(), true));

    // A sale of 40,000 yuan: the profit window would end the program with the overflow.
    db.execute(QStringLiteral("insert into havewhat values ('DEMO', '600000', '浦发银行', '2024-06-01', 40, 1000, 0, "
                              "'卖出', '卖出')"));
    db.close();
    const ToolRun overflow = runExport(folder.path(), {QStringLiteral("profit")});
    EXPECT_EQ(std::make_tuple(overflow.exitCode, overflow.out), std::make_tuple(1, QByteArray()));
    EXPECT_TRUE(overflow.err.contains(QStringLiteral("运行时错误 '6':\n\n溢出"))) << overflow.err.toStdString();
}
