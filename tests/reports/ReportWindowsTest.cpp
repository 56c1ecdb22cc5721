// The four report windows driven offscreen on a temporary journal.
#include "reports/frmCha.h"
#include "reports/frmJyrec.h"
#include "reports/frmYkui.h"
#include "reports/frmZjin.h"

#include "base/Numbers.h"
#include "store/FeeRates.h"
#include "support/Helpers.h"
#include "ui/FlexGrid.h"

#include <QMenuBar>

using namespace testjournal;
using namespace reports;

namespace {

const QString kUser = QStringLiteral("ALICE");

QDate day(int d) { return QDate(2024, 3, d); }
QString shown(int d) { return base::shortDate(day(d)); }

QAction *deleteAction(QWidget &w) { return w.findChild<QAction *>(QStringLiteral("mnudel")); }

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

TEST_F(Reports, CaptionsAndHeadersWithoutOwnRows)
{
    // Rows of another user only: the trade and profit windows show their
    // headers, the fund records an empty grid (and deleting there is no error).
    addTrades({{.code = "600000", .name = "", .date = day(1), .price = 5, .shares = 100, .user = "LI"},
               {.code = "600000", .name = "", .date = day(2), .price = 6, .shares = 100, .buy = false, .user = "LI"}});
    addCash(7000, true, QStringLiteral("LI"), day(3), QStringLiteral("别人"));
    frmJyrec trades;
    frmYkui profits;
    frmZjin funds;
    const struct {
        ReportWindow *w;
        QString caption;
        QStringList rows;
    } cases[] = {
        {&trades, "ALICE  交易明细", {"成交日期|股票代码|股票名称|操作记录|成交价格|成交数量|成交费用|成交金额"}},
        {&profits, "ALICE  盈亏记录", {"成交日期|股票代码|股票名称|成交价格|成交数量|成交金额|盈亏统计"}},
        {&funds, "ALICE  资金记录", {"", ""}},
    };
    for (const auto &c : cases) {
        c.w->GetMame(kUser, QStringLiteral("user"));
        c.w->load();
        EXPECT_EQ(c.w->windowTitle(), c.caption);
        EXPECT_EQ(gridRows(*c.w->grid(), 0), c.rows) << c.caption.toStdString();
    }
    funds.grid()->setRow(0);
    deleteAction(funds)->trigger();
    EXPECT_EQ(count("资金表"), 1);
    for (const auto &c : cases)
        c.w->unload();
}

TEST_F(Reports, TradeDetailsListPurchasesThenSalesOfEachCode)
{
    addTrades({
        {.code = "600000", .name = "浦发银行", .date = day(5), .price = 5, .shares = 100, .rate = 0.35f},
        {.code = "000001", .name = "平安银行", .date = day(2), .price = 10, .shares = 1000, .rate = 0.35f, .buy = false},
        {.code = "600000", .name = "浦发银行", .date = day(9), .price = 6, .shares = 100, .rate = 0.35f, .buy = false},
        {.code = "600000", .name = "浦发银行", .date = day(1), .price = 4.5, .shares = 200, .rate = 0.35f},
        {.code = "200002", .name = "万科B", .date = day(3), .price = 5, .shares = 100, .rate = 0.35f},
        {.code = "000002", .name = "万科A", .date = day(3), .price = 5, .shares = 100, .rate = 0.35f},
        {.code = "600000", .name = "别人", .date = day(4), .price = 7, .shares = 300, .rate = 0.35f, .user = "LI"},
    });
    frmJyrec w;
    w.GetMame(kUser, QStringLiteral("user"));
    w.load();
    const ui::FlexGrid &g = *w.grid();
    const QStringList rows = gridRows(g);
    ASSERT_EQ(rows.size(), 6);
    // One block per code; purchases before sales, each in the database's
    // order. Fees are raised to the minimum of their class (10 for "60", 8
    // for "00"); a B-share code shows no fee but its amount carries the raw
    // 1.75; a sale adds its fee to the proceeds.
    const int at = rows.indexOf(shown(5) + "|600000|浦发银行|买进|5|100|10|-510");
    ASSERT_GE(at, 0) << rows.join(u'\n').toStdString();
    EXPECT_EQ(rows.mid(at + 1, 2), (QStringList{shown(1) + "|600000|浦发银行|买进|4.5|200|10|-910",
                                                shown(9) + "|600000|浦发银行|卖出|6|100|10|610"}));
    for (const QString &row : {shown(2) + "|000001|平安银行|卖出|10|1000|35|10035",
                               shown(3) + "|200002|万科B|买进|5|100||-501.75", shown(3) + "|000002|万科A|买进|5|100|8|-508"})
        EXPECT_TRUE(rows.contains(row)) << row.toStdString();

    // Cells 1 .. 8 carry the row's colour.
    const int sale = 1 + rows.indexOf(shown(9) + "|600000|浦发银行|卖出|6|100|10|610");
    EXPECT_EQ(std::make_tuple(g.cellForeColor(at + 1, 1), g.cellForeColor(at + 1, 8), g.cellForeColor(sale, 8)),
              std::make_tuple(kPurchaseColor, kPurchaseColor, kSaleColor));
    EXPECT_FALSE(g.cellForeColor(sale, 0).isValid());

    // The menu is there and does nothing, nor does a right click open it.
    auto *mnufile = w.findChild<QMenu *>(QStringLiteral("mnufile"));
    ASSERT_TRUE(mnufile && deleteAction(w));
    w.grid()->setRow(1);
    deleteAction(w)->trigger();
    QTest::mouseClick(w.grid()->viewport(), Qt::RightButton, {}, QPoint(20, 5));
    EXPECT_FALSE(mnufile->isVisible());
    EXPECT_EQ(gridRows(g), rows);
    EXPECT_EQ(count("havewhat"), 7);
    w.unload();
}

TEST_F(Reports, StockRecordsInDateOrderAndDeleteTheSelectedRowNotTheOneRightClicked)
{
    addTrades({
        {.code = "600000", .name = "浦发银行", .date = day(7), .price = 6, .shares = 100, .buy = false},
        {.code = "600000", .name = "", .date = day(1), .price = 5, .shares = 300},
        {.code = "000001", .name = "平安银行", .date = day(2), .price = 9, .shares = 100},
        {.code = "600000", .name = {}, .date = day(3), .price = 5.5, .shares = 200},
        {.code = "600000", .name = "浦发银行", .date = day(2), .price = 5.2, .shares = 100, .user = "LI"},
    });
    frmCha w;
    w.GetMame(kUser, QStringLiteral("user"), QStringLiteral("600000"));
    w.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&w));
    EXPECT_EQ(w.windowTitle(), QStringLiteral("ALICE  个股详细记录"));
    ui::FlexGrid &g = *w.grid();
    // "--" for an empty or null name.
    EXPECT_EQ(gridRows(g, 0), (QStringList{"股票代码|股票名称|成交日期|操作记录|成交价格|成交股数",
                                           "600000|--|" + shown(1) + "|买进|5|300", "600000|--|" + shown(3) + "|买进|5.5|200",
                                           "600000|浦发银行|" + shown(7) + "|卖出|6|100"}));
    EXPECT_EQ(w.findChild<QMenuBar *>(), nullptr);

    auto *mnufile = w.findChild<QMenu *>(QStringLiteral("mnufile"));
    ASSERT_TRUE(mnufile && deleteAction(w));
    const auto centre = [&](int r) { return g.visualRect(g.gridModel()->index(r, 2)).center(); };
    QTest::mouseClick(g.viewport(), Qt::LeftButton, {}, centre(1));
    QTest::keyClick(&g, Qt::Key_Down); // the keyboard chooses too
    ASSERT_EQ(g.row(), 2);
    QTest::mouseClick(g.viewport(), Qt::RightButton, {}, centre(3));
    EXPECT_EQ(std::make_tuple(mnufile->isVisible(), g.row()), std::make_tuple(true, 2));
    mnufile->hide();
    deleteAction(w)->trigger();
    EXPECT_EQ(std::make_tuple(count("havewhat"), count("havewhat where 成交股数=200")), std::make_tuple(4, 0));
    ASSERT_EQ(g.rows(), 3);

    // Down to the last record: the grid ends cleared, without headers; a
    // further delete finds nothing to delete.
    for (int i = 0; i < 3; ++i) {
        g.setRow(1);
        deleteAction(w)->trigger();
    }
    EXPECT_EQ(count("havewhat"), 2);
    EXPECT_EQ(gridRows(g, 0).join(QString()).remove(u'|'), QString());
    w.close();
}

TEST_F(Reports, FundRecordsInDateOrderPositionalDeleteAndFillAfterAnError)
{
    addCash(5000, true, kUser, day(9), QStringLiteral("工资"));
    addCash(20000, true, kUser, day(2));
    addCash(7000, true, QStringLiteral("LI"), day(3), QStringLiteral("别人"));
    addCash(1500, false, kUser, day(4), QStringLiteral("1500"));
    frmZjin w;
    w.GetMame(kUser, QStringLiteral("user"));
    w.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&w));
    ui::FlexGrid &g = *w.grid();
    EXPECT_EQ(gridRows(g, 0), (QStringList{"操作日期|资金数量|操作原因|操作表示", shown(2) + "|20000|--|存入",
                                           shown(4) + "|1500|1500|提取", shown(9) + "|5000|工资|存入"}));
    QTest::keyClick(&g, Qt::Key_End);
    QTest::keyClick(&g, Qt::Key_Up);
    deleteAction(w)->trigger();
    EXPECT_EQ(count("资金表"), 3);
    EXPECT_EQ(gridRows(g), (QStringList{shown(2) + "|20000|--|存入", shown(9) + "|5000|工资|存入"}));

    // A failing statement is skipped; the rest works on the record set of
    // the last fill, so the same records come back.
    EXPECT_EQ(w.SeachA(QStringLiteral("select * from nowhere")), 0);
    EXPECT_EQ(gridRows(g), (QStringList{shown(2) + "|20000|--|存入", shown(9) + "|5000|工资|存入"}));
    w.unload();
}

TEST_F(Reports, ProfitAndLossOneRowPerSoldStock)
{
    addTrades({
        {.code = "600036", .name = "招商银行", .date = day(1), .price = 10, .shares = 1000, .rate = 0.5f},
        {.code = "600036", .name = "招商银行", .date = day(20), .price = 12, .shares = 200, .rate = 0.5f, .buy = false},
        {.code = "600036", .name = "招商银行", .date = day(8), .price = 12, .shares = 200, .rate = 0.5f, .buy = false},
        {.code = "000002", .name = "万科A", .date = day(2), .price = 8, .shares = 500, .rate = 0.5f},
        {.code = "000003", .name = "空卖", .date = day(5), .price = 3, .shares = 100, .rate = 0, .buy = false},
        {.code = "600036", .name = "招商银行", .date = day(25), .price = 99, .shares = 300, .rate = 0, .buy = false,
         .user = "LI"},
    });
    frmYkui w;
    w.GetMame(kUser, QStringLiteral("user"));
    w.load();
    EXPECT_EQ(w.findChild<QMenu *>(), nullptr);
    QStringList rows = gridRows(*w.grid());
    rows.sort();
    // The latest sale's date although entered before the earlier one; sold
    // but never bought: the proceeds are the profit.
    EXPECT_EQ(rows, (QStringList{shown(20) + "|600036|招商银行|11.94|400|4776|756", shown(5) + "|000003|空卖|3|100|300|300"}));
    w.unload();
}
