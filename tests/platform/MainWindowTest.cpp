#include "support/Helpers.h"
#include "platform/frmBefor.h"
#include "marketdata/MarketSettings.h"
#include "platform/PictureBox.h"
#include "reports/frmCha.h"
#include "ui/FlexGrid.h"

#include <QAbstractItemModelTester>
#include <QToolBar>

using namespace testjournal;

namespace {

class MainWindowTest : public ::testing::Test {
protected:
    TestFolder folder;
    QStringList messages;
    const MessageRecorder recording{messages};
    std::unique_ptr<frmBefor> w;
    std::unique_ptr<QAbstractItemModelTester> tester;

    void open()
    {
        w = std::make_unique<frmBefor>();
        tester = std::make_unique<QAbstractItemModelTester>(grid()->model(),
                                                            QAbstractItemModelTester::FailureReportingMode::Fatal);
        w->GetMame(QStringLiteral("ALICE"), QStringLiteral("user"));
        w->load();
    }
    ui::FlexGrid *grid() { return w->findChild<ui::FlexGrid *>(QStringLiteral("MSFlexGrid1")); }
    QString text(const char *name) { return w->findChild<QLineEdit *>(QString::fromLatin1(name))->text(); }
    // Clicks the toolbar button of the caption.
    void toolbar(const QString &caption)
    {
        auto *bar = w->findChild<QToolBar *>(QStringLiteral("Toolbar1"));
        for (QAction *a : bar->actions())
            if (a->text() == caption)
                QTest::mouseClick(bar->widgetForAction(a), Qt::LeftButton);
    }
    QMenu *editMenu() { return w->findChild<QMenu *>(QStringLiteral("mnuEdit")); }
    void rightClickRow(int row)
    {
        const QRect cell = grid()->visualRect(grid()->model()->index(row, 1));
        QTest::mouseClick(grid()->viewport(), Qt::RightButton, {}, cell.center());
    }
};

} // namespace

TEST_F(MainWindowTest, LoadShowsCaptionReminderHoldingsAndFigures)
{
    addTrades({{.code = "600000", .price = 10, .shares = 100}});
    addCash(2000);
    open();
    EXPECT_EQ(w->windowTitle(), "ALICE 的帐户管理");
    auto *list = w->findChild<QListWidget *>(QStringLiteral("List1"));
    ASSERT_EQ(list->count(), 14);
    // No market data: the price stays 0, so the market value (Text2) is 0 and
    // the percentage (Text3) cannot be taken.
    EXPECT_EQ((QStringList{list->item(0)->text(), list->item(13)->text(), grid()->textMatrix(0, 1), grid()->textMatrix(0, 7),
                           grid()->textMatrix(1, 1), grid()->textMatrix(1, 4), text("Text1"), text("Text2"), text("Text3")}),
              (QStringList{"    投资是一门艺术，需", "   合理的？", "股票代码", "浮动赢亏", "600000", "100", "2000", "0", ""}));
}

TEST_F(MainWindowTest, TdxChosenInTheSettingsValuesAndChartsFromItsFiles)
{
    // The real daily file of 300425 (last close 31.85) in a 通达信 folder
    // named in another letter case and with backslashes.
    QDir().mkpath(folder.file(QStringLiteral("tdx/vipdoc/sz/lday")));
    QFile::copy(QString::fromUtf8(TESSALY_TEST_DATA "/real/sz300425.tdx.day"),
                folder.file(QStringLiteral("tdx/vipdoc/sz/lday/sz300425.day")));
    addTrades({{.code = "300425", .price = 30, .shares = 100}});
    QFile dateset(folder.file(QStringLiteral("dateset.dat")));
    ASSERT_TRUE(dateset.open(QIODevice::WriteOnly));
    dateset.write(marketdata::dateSetFileBytes(7, folder.path() + QStringLiteral("\\TDX")));
    dateset.close();
    open();
    EXPECT_EQ(text("Text2"), "3185");

    QTest::mouseClick(grid()->viewport(), Qt::LeftButton, {}, grid()->visualRect(grid()->model()->index(1, 1)).center());
    // The chart of its bars is drawn (the candles' colours: PriceChart tests).
    const QImage chart = w->findChild<platform::PictureBox *>(QStringLiteral("pPic1"))->image();
    QImage blank(chart.size(), chart.format());
    blank.fill(chart.pixelColor(0, 0));
    EXPECT_NE(chart, blank);
}

TEST_F(MainWindowTest, RawRecordsOfferTheEditMenuAndDeleteByPosition)
{
    addTrades({{.code = "600001", .price = 10, .shares = 100}, {.code = "600002", .price = 10, .shares = 200},
               {.code = "600003", .price = 10, .shares = 300}});
    open();
    w->show();
    rightClickRow(1);
    EXPECT_FALSE(editMenu()->isVisible()) << "the holdings view offers no menu";

    toolbar(QStringLiteral("原始记录"));
    EXPECT_TRUE(w->rawMode());
    ASSERT_EQ(grid()->rows(), 4);
    EXPECT_EQ((QStringList{grid()->textMatrix(0, 1), grid()->textMatrix(3, 2)}), (QStringList{"userid", "600003"}));

    // Click row 1, go two rows down with the arrow keys, then right-click
    // another row: the menu acts on the row chosen last, by key or button.
    const QRect row1 = grid()->visualRect(grid()->model()->index(1, 1));
    QTest::mouseClick(grid()->viewport(), Qt::LeftButton, {}, row1.center());
    QTest::keyClick(grid(), Qt::Key_Down);
    QTest::keyClick(grid(), Qt::Key_Down);
    rightClickRow(2);
    EXPECT_TRUE(editMenu()->isVisible());
    editMenu()->hide();
    EXPECT_EQ(grid()->row(), 3);
    w->findChild<QAction *>(QStringLiteral("mnuDel"))->trigger();

    ASSERT_EQ(grid()->rows(), 3);
    EXPECT_EQ(std::make_tuple(grid()->textMatrix(1, 2), grid()->textMatrix(2, 2), count(QStringLiteral("havewhat where 股票代码='600003'"))),
              std::make_tuple(QStringLiteral("600001"), QStringLiteral("600002"), 0));

    // "持股列表" goes back to the holdings view and its figures.
    w->findChild<QPushButton *>(QStringLiteral("Command5"))->click();
    EXPECT_EQ(std::make_tuple(w->rawMode(), grid()->textMatrix(0, 3)), std::make_tuple(false, QStringLiteral("平均价格")));
}

TEST_F(MainWindowTest, DeletingWithTheHeaderRowChosenEndsTheProgram)
{
    addTrades({{.code = "600001", .price = 10, .shares = 100}});
    open();
    w->FrmRef();
    grid()->setRow(0);
    EXPECT_EXIT(w->findChild<QAction *>(QStringLiteral("mnuDel"))->trigger(), ::testing::ExitedWithCode(1),
                "运行时错误 '3021'");
}

TEST_F(MainWindowTest, ButtonsToolbarAndDoubleClickOpenTheirWindowsForTheUser)
{
    addTrades({{.code = "600000", .price = 10, .shares = 100}});
    open();
    w->show();
    const auto click = [this](const char *name) {
        return [this, name] { QTest::mouseClick(child<QPushButton>(*w, name), Qt::LeftButton); };
    };
    const std::pair<std::function<void()>, QString> cases[] = {
        {click("Command1"), "frmBuy ALICE  买入"},
        {click("Command2"), "frmShell ALICE  卖出"},
        {click("Command3"), "frmMoneyIn ALICE  存入资金"},
        {click("Command4"), "frmMoneyOut ALICE  提取资金"},
        {[this] { toolbar(QStringLiteral("设置")); }, "frmDataEnv 设置"},
        {[this] { toolbar(QStringLiteral("交易明细")); }, "frmJyrec ALICE  交易明细"},
        {[this] { toolbar(QStringLiteral("资金记录")); }, "frmZjin ALICE  资金记录"},
        {[this] { toolbar(QStringLiteral("赢亏记录")); }, "frmYkui ALICE  盈亏记录"},
    };
    for (const auto &[action, window] : cases)
        EXPECT_EQ(modalOpenedBy(action), window);

    // A double click on a holding opens that stock's records.
    QString code;
    const QPoint row1 = grid()->visualRect(grid()->model()->index(1, 1)).center();
    EXPECT_EQ(modalOpenedBy([&] { QTest::mouseDClick(grid()->viewport(), Qt::LeftButton, {}, row1); },
                            [&](QWidget &m) { code = static_cast<frmCha &>(m).grid()->textMatrix(1, 1); }),
              "frmCha ALICE  个股详细记录");
    EXPECT_EQ(code, "600000");
    EXPECT_TRUE(messages.isEmpty()) << messages.join(u'|').toStdString();
}

TEST_F(MainWindowTest, ATradeStoredInTheBuyWindowShowsAtOnceInTheRawRecords)
{
    open();
    w->show();
    int rowsWhileOpen = 0;
    modalOpenedBy([this] { QTest::mouseClick(child<QPushButton>(*w, "Command1"), Qt::LeftButton); },
                  [&](QWidget &buy) {
                      typeText(child<QLineEdit>(buy, "Text2"), QStringLiteral("600036"));
                      typeText(child<QLineEdit>(buy, "Text4"), QStringLiteral("12.5"));
                      typeText(child<QLineEdit>(buy, "Text5"), QStringLiteral("300"));
                      QTest::mouseClick(child<QPushButton>(buy, "Command2"), Qt::LeftButton);
                      rowsWhileOpen = grid()->rows();
                  });
    EXPECT_EQ(std::make_tuple(w->rawMode(), rowsWhileOpen, grid()->textMatrix(1, 2)), std::make_tuple(true, 2, QStringLiteral("600036")));
    const QList<QVariantList> stored = rowsOf(QStringLiteral("select 股票代码, 成交价格, 成交股数 from havewhat"));
    EXPECT_EQ(stored, (QList<QVariantList>{{QStringLiteral("600036"), 12.5, 300.0}}));
}
