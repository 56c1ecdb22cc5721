// The four report windows driven offscreen on a temporary journal.
#include "JournalData.h"
#include "reports/frmCha.h"
#include "reports/frmJyrec.h"
#include "reports/frmYkui.h"
#include "reports/frmZjin.h"

#include "base/Numbers.h"
#include "store/FeeRates.h"
#include "support/TestFolder.h"
#include "ui/FlexGrid.h"

#include <QAction>
#include <QMenu>
#include <QMenuBar>
#include <QTest>
#include <gtest/gtest.h>

using journal::Trade;
using namespace reports;

namespace {

const QString kUser = QStringLiteral("ZHANG");
const QString kBuy = QStringLiteral("买进");
const QString kSell = QStringLiteral("卖出");

QDate day(int d) { return QDate(2024, 3, d); }
QString shown(int d) { return base::shortDate(day(d)); }

QStringList rowTexts(const ui::FlexGrid &g, int r)
{
    QStringList cells;
    for (int c = 0; c < g.cols(); ++c)
        cells << g.textMatrix(r, c);
    return cells;
}

QStringList header(const ui::FlexGrid &g) { return rowTexts(g, 0); }

// Data rows as "code op" pairs, for checking the order of a grid.
QStringList column(const ui::FlexGrid &g, int c)
{
    QStringList out;
    for (int r = 1; r < g.rows(); ++r)
        out << g.textMatrix(r, c);
    return out;
}

class Reports : public ::testing::Test {
protected:
    void SetUp() override
    {
        store::setFeeValue(3, 8);  // minimum of "00" and "40" codes
        store::setFeeValue(4, 10); // minimum of "60" codes
    }
    TestFolder folder;
};

} // namespace

// ---- trade details -------------------------------------------------------

TEST_F(Reports, TradeDetailsWithoutTradesShowOnlyTheHeader)
{
    journal::addTrades({{.code = "600000", .name = "浦发银行", .date = day(1), .price = 5, .shares = 100,
                         .rate = 0.35f, .user = "LI"}});
    frmJyrec w;
    w.GetMame(kUser, QStringLiteral("user"));
    w.load();
    EXPECT_EQ(w.windowTitle(), QStringLiteral("ZHANG  交易明细"));
    EXPECT_EQ(w.grid()->rows(), 1);
    EXPECT_EQ(header(*w.grid()), (QStringList{"", "成交日期", "股票代码", "股票名称", "操作记录", "成交价格",
                                              "成交数量", "成交费用", "成交金额"}));
    EXPECT_EQ(w.grid()->columnWidth(0), 200 / 15); // 200 twips, in whole pixels
    w.unload();
}

TEST_F(Reports, TradeDetailsListPurchasesThenSalesOfEachCode)
{
    journal::addTrades({
        {.code = "600000", .name = "浦发银行", .date = day(5), .price = 5, .shares = 100, .rate = 0.35f},
        {.code = "000001", .name = "平安银行", .date = day(2), .price = 10, .shares = 1000, .rate = 0.35f,
         .buy = false},
        {.code = "600000", .name = "浦发银行", .date = day(9), .price = 6, .shares = 100, .rate = 0.35f,
         .buy = false},
        {.code = "600000", .name = "浦发银行", .date = day(1), .price = 4.5, .shares = 200, .rate = 0.35f},
        {.code = "200002", .name = "万科B", .date = day(3), .price = 5, .shares = 100, .rate = 0.35f},
        {.code = "600000", .name = "别人", .date = day(4), .price = 7, .shares = 300, .rate = 0.35f, .user = "LI"},
    });
    frmJyrec w;
    w.GetMame(kUser, QStringLiteral("user"));
    w.load();
    const ui::FlexGrid &g = *w.grid();
    ASSERT_EQ(g.rows(), 6);

    // One block per code; purchases before sales, each in the database's order.
    const QStringList codes = column(g, 2);
    const QStringList ops = column(g, 4);
    QStringList seen;
    for (int i = 0; i < codes.size(); ++i)
        seen << codes[i] + u' ' + ops[i];
    const int first600 = seen.indexOf("600000 " + kBuy);
    ASSERT_GE(first600, 0);
    EXPECT_EQ(seen.mid(first600, 3),
              (QStringList{"600000 " + kBuy, "600000 " + kBuy, "600000 " + kSell}));
    EXPECT_EQ(g.textMatrix(first600 + 1, 1), shown(5));
    EXPECT_EQ(g.textMatrix(first600 + 2, 1), shown(1));
    EXPECT_TRUE(seen.contains("000001 " + kSell));
    EXPECT_TRUE(seen.contains("200002 " + kBuy));

    // The first purchase of 600000: 100 at 5 with the minimum of 10.
    EXPECT_EQ(rowTexts(g, first600 + 1),
              (QStringList{"", shown(5), "600000", "浦发银行", kBuy, "5", "100", "10", "-510"}));
    // 200 at 4.5: 900 x 0.35 % = 3.15, raised to 10.
    EXPECT_EQ(g.textMatrix(first600 + 2, 8), QStringLiteral("-910"));
    // The sale: 100 at 6, fee 2.1 raised to 10, added to the proceeds.
    EXPECT_EQ(g.textMatrix(first600 + 3, 7), QStringLiteral("10"));
    EXPECT_EQ(g.textMatrix(first600 + 3, 8), QStringLiteral("610"));

    const int r000 = seen.indexOf("000001 " + kSell) + 1;
    EXPECT_EQ(g.textMatrix(r000, 7), QStringLiteral("35"));
    EXPECT_EQ(g.textMatrix(r000, 8), QStringLiteral("10035"));
    // A B-share code: empty fee cell, the raw fee of 1.75 still in the amount.
    const int r200 = seen.indexOf("200002 " + kBuy) + 1;
    EXPECT_EQ(g.textMatrix(r200, 7), QString());
    EXPECT_EQ(g.textMatrix(r200, 8), QStringLiteral("-501.75"));

    // Every cell of a row but column 0 carries the row's colour.
    for (int r = 1; r < g.rows(); ++r) {
        const QColor want = g.textMatrix(r, 4) == kBuy ? kPurchaseColor : kSaleColor;
        EXPECT_FALSE(g.cellForeColor(r, 0).isValid()) << r;
        for (int c = 1; c <= 8; ++c)
            EXPECT_EQ(g.cellForeColor(r, c), want) << r << ',' << c;
    }
    w.unload();
}

TEST_F(Reports, TradeDetailsMinimumsOfTheOtherClasses)
{
    journal::addTrades({
        {.code = "000002", .name = "万科A", .date = day(1), .price = 5, .shares = 100, .rate = 0.35f},
        {.code = "400003", .name = "三板", .date = day(1), .price = 5, .shares = 100, .rate = 0.35f},
        {.code = "900901", .name = "B股", .date = day(1), .price = 5, .shares = 100, .rate = 0.35f},
        {.code = "184801", .name = "基金", .date = day(1), .price = 5, .shares = 100, .rate = 0.25f},
    });
    frmJyrec w;
    w.GetMame(kUser, QString());
    w.load();
    const ui::FlexGrid &g = *w.grid();
    ASSERT_EQ(g.rows(), 5);
    for (int r = 1; r < g.rows(); ++r) {
        const QString code = g.textMatrix(r, 2);
        if (code.startsWith(u'0') || code.startsWith(u'4')) {
            EXPECT_EQ(g.textMatrix(r, 7), QStringLiteral("8")) << code.toStdString();
            EXPECT_EQ(g.textMatrix(r, 8), QStringLiteral("-508")) << code.toStdString();
        } else {
            EXPECT_EQ(g.textMatrix(r, 7), QString()) << code.toStdString();
            EXPECT_EQ(g.textMatrix(r, 8), code == u"184801" ? QStringLiteral("-501.25") : QStringLiteral("-501.75"));
        }
    }
    w.unload();
}

TEST_F(Reports, TradeDetailsMenuIsThereAndDoesNothing)
{
    journal::addTrades({{.code = "600000", .name = "浦发银行", .date = day(1), .price = 5, .shares = 100}});
    frmJyrec w;
    w.GetMame(kUser, QString());
    w.load();
    auto *mnufile = w.findChild<QMenu *>(QStringLiteral("mnufile"));
    auto *mnudel = w.findChild<QAction *>(QStringLiteral("mnudel"));
    ASSERT_TRUE(mnufile && mnudel);
    EXPECT_EQ(mnufile->title(), QStringLiteral("文件"));
    EXPECT_EQ(mnudel->text(), QStringLiteral("删除"));
    w.grid()->setRow(1);
    mnudel->trigger();
    QTest::mouseClick(w.grid()->viewport(), Qt::RightButton, {}, QPoint(20, 5));
    EXPECT_FALSE(mnufile->isVisible());
    EXPECT_EQ(w.grid()->rows(), 2);
    EXPECT_EQ(journal::count("havewhat"), 1);
    w.unload();
}

// ---- per-stock records ---------------------------------------------------

namespace {
void addStockHistory()
{
    journal::addTrades({
        {.code = "600000", .name = "浦发银行", .date = day(7), .price = 6, .shares = 100, .buy = false},
        {.code = "600000", .name = "", .date = day(1), .price = 5, .shares = 300},
        {.code = "000001", .name = "平安银行", .date = day(2), .price = 9, .shares = 100},
        {.code = "600000", .name = {}, .date = day(3), .price = 5.5, .shares = 200, .nameNull = true},
        {.code = "600000", .name = "浦发银行", .date = day(2), .price = 5.2, .shares = 100, .user = "LI"},
    });
}
} // namespace

TEST_F(Reports, StockRecordsInDateOrderWithDashesForMissingValues)
{
    addStockHistory();
    frmCha w;
    w.GetMame(kUser, QStringLiteral("user"), QStringLiteral("600000"));
    w.load();
    EXPECT_EQ(w.windowTitle(), QStringLiteral("ZHANG  个股详细记录"));
    const ui::FlexGrid &g = *w.grid();
    ASSERT_EQ(g.rows(), 4);
    ASSERT_EQ(g.cols(), 7);
    EXPECT_EQ(header(g), (QStringList{"", "股票代码", "股票名称", "成交日期", "操作记录", "成交价格", "成交股数"}));
    EXPECT_EQ(rowTexts(g, 1), (QStringList{"", "600000", "--", shown(1), kBuy, "5", "300"}));
    EXPECT_EQ(rowTexts(g, 2), (QStringList{"", "600000", "--", shown(3), kBuy, "5.5", "200"}));
    EXPECT_EQ(rowTexts(g, 3), (QStringList{"", "600000", "浦发银行", shown(7), kSell, "6", "100"}));
    EXPECT_EQ(g.columnWidth(0), 200 / 15);
    EXPECT_EQ(w.findChild<QMenuBar *>(), nullptr);
    w.unload();
}

TEST_F(Reports, StockRecordsDeleteTheSelectedRowNotTheOneRightClicked)
{
    addStockHistory();
    frmCha w;
    w.GetMame(kUser, QStringLiteral("user"), QStringLiteral("600000"));
    w.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&w));
    ui::FlexGrid &g = *w.grid();
    auto *mnufile = w.findChild<QMenu *>(QStringLiteral("mnufile"));
    auto *mnudel = w.findChild<QAction *>(QStringLiteral("mnudel"));
    ASSERT_TRUE(mnufile && mnudel);

    const auto centre = [&](int r) { return g.visualRect(g.gridModel()->index(r, 2)).center(); };
    QTest::mouseClick(g.viewport(), Qt::LeftButton, {}, centre(2));
    ASSERT_EQ(g.row(), 2);
    QTest::mouseClick(g.viewport(), Qt::RightButton, {}, centre(3));
    EXPECT_TRUE(mnufile->isVisible());
    EXPECT_EQ(g.row(), 2);
    mnufile->hide();

    mnudel->trigger();
    EXPECT_EQ(journal::count("havewhat"), 4);
    EXPECT_FALSE(journal::hasTrade("600000", day(3), 200));
    ASSERT_EQ(g.rows(), 3);
    EXPECT_EQ(column(g, 3), (QStringList{shown(1), shown(7)}));

    // Down to the last record: the grid ends cleared, without headers.
    g.setRow(1);
    mnudel->trigger();
    g.setRow(1);
    mnudel->trigger();
    EXPECT_EQ(journal::count("havewhat"), 2);
    EXPECT_EQ(g.textMatrix(0, 1), QString());
    EXPECT_EQ(g.textMatrix(1, 1), QString());
    // A further delete finds nothing to delete.
    mnudel->trigger();
    EXPECT_EQ(journal::count("havewhat"), 2);
    w.close();
}

// ---- fund records --------------------------------------------------------

TEST_F(Reports, FundRecordsInDateOrderAndPositionalDelete)
{
    journal::addCash(kUser, day(9), 5000, QStringLiteral("工资"), true);
    journal::addCash(kUser, day(2), 20000, QString(), true);
    journal::addCash(QStringLiteral("LI"), day(3), 7000, QStringLiteral("别人"), true);
    journal::addCash(kUser, day(4), 1500, QStringLiteral("1500"), false);

    frmZjin w;
    w.GetMame(kUser, QStringLiteral("user"));
    w.load();
    EXPECT_EQ(w.windowTitle(), QStringLiteral("ZHANG  资金记录"));
    ui::FlexGrid &g = *w.grid();
    ASSERT_EQ(g.rows(), 4);
    ASSERT_EQ(g.cols(), 5);
    EXPECT_EQ(header(g), (QStringList{"", "操作日期", "资金数量", "操作原因", "操作表示"}));
    EXPECT_EQ(rowTexts(g, 1), (QStringList{"", shown(2), "20000", "--", "存入"}));
    EXPECT_EQ(rowTexts(g, 2), (QStringList{"", shown(4), "1500", "1500", "提取"}));
    EXPECT_EQ(rowTexts(g, 3), (QStringList{"", shown(9), "5000", "工资", "存入"}));

    g.setRow(2);
    w.findChild<QAction *>(QStringLiteral("mnudel"))->trigger();
    EXPECT_EQ(journal::count("资金表"), 3);
    ASSERT_EQ(g.rows(), 3);
    EXPECT_EQ(column(g, 4), (QStringList{"存入", "存入"}));
    w.unload();
}

TEST_F(Reports, FundRecordsFillGoesOnAfterAnError)
{
    journal::addCash(kUser, day(2), 100, QStringLiteral("a"), true);
    frmZjin w;
    w.GetMame(kUser, QStringLiteral("user"));
    w.load();
    ASSERT_EQ(w.grid()->rows(), 2);
    // The failing statement is skipped; the rest works on the record set of
    // the last fill, so the same record comes back.
    EXPECT_EQ(w.SeachA(QStringLiteral("select * from nowhere")), 0);
    EXPECT_EQ(rowTexts(*w.grid(), 1), (QStringList{"", shown(2), "100", "a", "存入"}));
    w.unload();
}

TEST_F(Reports, FundRecordsWithoutMovementsLeaveAnEmptyGrid)
{
    frmZjin w;
    w.GetMame(kUser, QStringLiteral("user"));
    w.load();
    EXPECT_EQ(w.grid()->textMatrix(0, 1), QString());
    w.grid()->setRow(0);
    w.findChild<QAction *>(QStringLiteral("mnudel"))->trigger(); // nothing to delete: no error either
    EXPECT_EQ(journal::count("资金表"), 0);
    w.unload();
}

// ---- profit and loss -----------------------------------------------------

TEST_F(Reports, ProfitAndLossOneRowPerSoldStock)
{
    journal::addTrades({
        {.code = "600036", .name = "招商银行", .date = day(1), .price = 10, .shares = 1000, .rate = 0.5f},
        {.code = "600036", .name = "招商银行", .date = day(20), .price = 12, .shares = 200, .rate = 0.5f,
         .buy = false},
        {.code = "600036", .name = "招商银行", .date = day(8), .price = 12, .shares = 200, .rate = 0.5f,
         .buy = false},
        {.code = "000002", .name = "万科A", .date = day(2), .price = 8, .shares = 500, .rate = 0.5f},
        {.code = "000003", .name = "空卖", .date = day(5), .price = 3, .shares = 100, .rate = 0, .buy = false},
        {.code = "600036", .name = "招商银行", .date = day(25), .price = 99, .shares = 300, .rate = 0,
         .buy = false, .user = "LI"},
    });
    frmYkui w;
    w.GetMame(kUser, QStringLiteral("user"));
    w.load();
    EXPECT_EQ(w.windowTitle(), QStringLiteral("ZHANG  盈亏记录"));
    EXPECT_EQ(w.findChild<QMenu *>(), nullptr);
    const ui::FlexGrid &g = *w.grid();
    EXPECT_EQ(header(g), (QStringList{"", "成交日期", "股票代码", "股票名称", "成交价格", "成交数量", "成交金额",
                                      "盈亏统计"}));
    ASSERT_EQ(g.rows(), 3);
    const int r600 = column(g, 2).indexOf("600036") + 1;
    const int r000 = column(g, 2).indexOf("000003") + 1;
    ASSERT_GT(r600, 0);
    ASSERT_GT(r000, 0);
    // The latest sale although entered before the earlier one.
    EXPECT_EQ(rowTexts(g, r600), (QStringList{"", shown(20), "600036", "招商银行", "11.94", "400", "4776", "756"}));
    // Sold but never bought: the proceeds are the profit.
    EXPECT_EQ(rowTexts(g, r000), (QStringList{"", shown(5), "000003", "空卖", "3", "100", "300", "300"}));
    w.unload();
}

TEST_F(Reports, ProfitAndLossWithoutSalesShowsTheHeaderOnly)
{
    journal::addTrades({{.code = "600036", .name = "招商银行", .date = day(1), .price = 10, .shares = 1000}});
    frmYkui w;
    w.GetMame(kUser, QString());
    w.load();
    EXPECT_EQ(w.grid()->rows(), 1);
    EXPECT_EQ(w.grid()->textMatrix(0, 7), QStringLiteral("盈亏统计"));
    w.unload();
}

// ---- the query-to-grid routine on its own --------------------------------

TEST_F(Reports, QueryGridLayoutsAndTheKeptRecordSet)
{
    journal::addCash(kUser, day(3), 250.5, QStringLiteral("奖金"), true);
    journal::addCash(kUser, day(1), 80, QString(), false);
    store::Database db = store::openUserDatabase();
    ui::FlexGrid g;
    store::Recordset kept;
    const QString query = QStringLiteral("select * from 资金表 order by 操作日期");

    // The main window's raw view shows every column, userid included, from grid column 1 on.
    fillGridFromQuery(db, g, kept, query, OnError::Raise, FieldLayout::AllFields);
    ASSERT_EQ(g.cols(), 6);
    ASSERT_EQ(g.rows(), 3);
    EXPECT_EQ(header(g), (QStringList{"", "userid", "操作日期", "资金数量", "操作原因", "操作表示"}));
    EXPECT_EQ(rowTexts(g, 1), (QStringList{"", kUser, shown(1), "80", "--", "提取"}));
    EXPECT_EQ(rowTexts(g, 2), (QStringList{"", kUser, shown(3), "250.5", "奖金", "存入"}));

    // The kept record set is the one the grid rows follow.
    EXPECT_TRUE(deleteShownRecord(kept, 2));
    EXPECT_EQ(journal::count("资金表"), 1);

    fillGridFromQuery(db, g, kept, query, OnError::Raise, FieldLayout::SkipFirst);
    ASSERT_EQ(g.cols(), 5);
    EXPECT_EQ(rowTexts(g, 1), (QStringList{"", shown(1), "80", "--", "提取"}));
    ASSERT_EQ(g.rows(), 2);

    // An empty result clears the cells and keeps the dimensions.
    fillGridFromQuery(db, g, kept, query + QStringLiteral(" limit 0"), OnError::Raise, FieldLayout::SkipFirst);
    EXPECT_EQ(g.rows(), 2);
    EXPECT_EQ(g.cols(), 5);
    EXPECT_EQ(rowTexts(g, 1), (QStringList{"", "", "", "", ""}));
    EXPECT_FALSE(deleteShownRecord(kept, 1));
    db.close();
}
