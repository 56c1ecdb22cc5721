// The analysis and corporate-action windows driven with keys and clicks on a
// temporary journal; results read back from the file and the grids.
#include "analysis/CorporateActions.h"
#include "analysis/windows/ValueChart.h"
#include "analysis/windows/frmAnalysis.h"
#include "support/Helpers.h"
#include "ui/FlexGrid.h"

#include <QRadioButton>
#include <QTabWidget>

using namespace analysis;

namespace {

const QString kUser = QStringLiteral("ZHANG");

void journal()
{
    // Rate 0 and no minimum fee: figures that can be followed by hand.
    store::openUserDatabase().execute(QStringLiteral("update 税率表 set 深圳最低收费=0, 上海最低收费=0"));
    testjournal::addCash(100000, true, kUser);
    const auto trade = [](int day, double price, double shares, bool buy) {
        return testjournal::Trade{.code = "600000", .name = "浦发银行", .date = QDate(2024, 1, day), .price = price,
                                  .shares = shares, .buy = buy, .user = kUser};
    };
    testjournal::addTrades({trade(3, 10.0, 1000, true), trade(4, 20.0, 1000, true),
                            trade(5, 30.0, 1500, false),   // proceeds 45,000: beyond what the classic report holds
                            trade(6, 30.0, 9000, false)}); // more than held: flagged
}

} // namespace

TEST(AnalysisWindow, CostMethodIsRememberedAndActionsEnteredThroughTheWindowChangeTheHolding)
{
    TestFolder folder;
    journal();
    QStringList messages;
    const MessageRecorder recording{messages};

    auto open = [] {
        auto w = std::make_unique<frmAnalysis>();
        w->GetMame(kUser, QStringLiteral("user"));
        w->show();
        return w;
    };
    auto w = open();
    ui::FlexGrid *stocks = child<ui::FlexGrid>(w.get(), "gridStocks");
    ui::FlexGrid *trades = child<ui::FlexGrid>(w.get(), "gridTrades");
    // Moving average: 500 left at 15.00; the 1500 sold made 22,500.
    EXPECT_EQ((QStringList{stocks->textMatrix(1, 3), stocks->textMatrix(1, 4), stocks->textMatrix(1, 9), trades->textMatrix(4, 11)}),
              (QStringList{"500", "7500.00", "22500.00", "卖出 9000 股，多于当时持有的 500 股"}));

    QTest::mouseClick(child<QRadioButton>(w.get(), "optFifo"), Qt::LeftButton);
    EXPECT_EQ((QStringList{stocks->textMatrix(1, 4), stocks->textMatrix(1, 9)}), (QStringList{"10000.00", "25000.00"})); // 500 of the lot @20
    w.reset();
    w = open(); // the choice was stored for the account
    EXPECT_TRUE(child<QRadioButton>(w.get(), "optFifo")->isChecked());
    stocks = child<ui::FlexGrid>(w.get(), "gridStocks");

    // 10送3 today (the date box's default), refused first for a stock not held.
    modalOpenedBy([&] { QTest::mouseClick(child<QPushButton>(w.get(), "cmdActions"), Qt::LeftButton); }, [](QWidget &m) {
        QWidget *a = &m;
        EXPECT_EQ(child<QLineEdit>(a, "txtCode")->text(), QStringLiteral("600000")); // the stock row selected
        retype(child<QLineEdit>(a, "txtCode"), QStringLiteral("000001"));
        QTest::keyClicks(child<QLineEdit>(a, "txtBonus"), QStringLiteral("3"));
        QTest::mouseClick(child<QPushButton>(a, "cmdAdd"), Qt::LeftButton);
        retype(child<QLineEdit>(a, "txtCode"), QStringLiteral("600000"));
        retype(child<QLineEdit>(a, "txtBonus"), QStringLiteral("3x"));
        QTest::mouseClick(child<QPushButton>(a, "cmdAdd"), Qt::LeftButton);
        retype(child<QLineEdit>(a, "txtBonus"), QStringLiteral("3"));
        QTest::mouseClick(child<QPushButton>(a, "cmdAdd"), Qt::LeftButton);
        QTest::mouseClick(child<QPushButton>(a, "cmdClose"), Qt::LeftButton);
    });
    ASSERT_EQ(messages.size(), 2);
    EXPECT_TRUE(messages[0].contains(QStringLiteral("之前没有持有 000001"))) << messages[0].toStdString();
    EXPECT_EQ(messages[1], QStringLiteral("“送股”不是有效的数字（最多 4 位小数）！"));

    store::Database db = store::openUserDatabase();
    const std::vector<CorporateAction> stored = listActions(db, kUser);
    db.close();
    ASSERT_EQ(stored.size(), 1u);
    EXPECT_EQ(std::make_tuple(stored[0].bonusPer10, stored[0].exDate, stocks->textMatrix(1, 3), stocks->textMatrix(1, 5)),
              std::make_tuple(30000, QDate::currentDate(), QStringLiteral("650"), QStringLiteral("15.385"))); // 10,000 / 650

    // The stock table as CSV, with the byte-order mark.
    const QString file = folder.file(QStringLiteral("out.csv"));
    frmAnalysis::setExportPathChooser([&](const QString &) { return file; });
    QTest::mouseClick(child<QPushButton>(w.get(), "cmdExport"), Qt::LeftButton);
    frmAnalysis::setExportPathChooser({});
    const QByteArray csv = fileBytes(file);
    EXPECT_TRUE(csv.startsWith("\xEF\xBB\xBF股票代码,股票名称,持有股数"));
    EXPECT_TRUE(csv.contains("\r\n600000,浦发银行,650,10000.00,15.385,"));
}

TEST(AnalysisWindow, ChartShowsValueAndInvestmentAndTheDayUnderTheMouse)
{
    TestFolder folder;
    journal();
    frmAnalysis w;
    w.GetMame(kUser, QStringLiteral("user"));
    w.show();
    child<QTabWidget>(&w, "tabAnalysis")->setCurrentIndex(2);
    ValueChart *chart = child<ValueChart>(&w, "chartValues");
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&w));
    // 2024-01-02 .. 2024-01-06: five days.
    ASSERT_EQ(chart->series().size(), 5u);
    QTest::mouseMove(chart, QPoint(chart->width() - 13, chart->height() / 2));
    EXPECT_TRUE(chart->hoverText().startsWith(QStringLiteral("2024-01-06\n市值加现金 130000.00\n投入资金 100000.00")))
        << chart->hoverText().toStdString();
}
