// Storing imports: the rows as the entry windows store them, never twice,
// all or nothing; and the window driven by keys and clicks.
#include "ImportFixture.h"

#include "import/frmImport.h"
#include "reports/TradeMath.h"
#include "ui/FlexGrid.h"

#include "support/Helpers.h"

using namespace importer;
using namespace importtest;

namespace {

using testjournal::rowsOf;

// The fee the trade details charge for a stored row, in yuan.
double detailsFee(const QVariantList &trade)
{
    return double(reports::tradeFee(trade[4].toDouble(), trade[5].toDouble(), trade[6].toFloat(), trade[1].toString(),
                                    store::feeValue(3), store::feeValue(4))
                      .fee);
}

} // namespace

TEST_F(ImportTest, FourFilesStoreLikeTheEntryWindowsAndNeverTwice)
{
    const struct {
        const char *file;
        int trades, deposits, withdrawals, actions, skipped;
    } files[] = {{"jiaogedan-2023.xls", 3, 1, 1, 3, 1},
                 {"statement-bom.csv", 3, 1, 1, 0, 0},
                 {"other-headers.txt", 3, 0, 0, 0, 4},
                 {"zijin-liushui.csv", 0, 2, 1, 0, 1}};
    for (const auto &f : files) {
        SCOPED_TRACE(f.file);
        const StoreResult r = import(f.file);
        EXPECT_EQ(std::make_tuple(r.stored.trades, r.stored.deposits, r.stored.withdrawals, r.stored.actions, r.skipped, r.alreadyImported),
                  std::make_tuple(f.trades, f.deposits, f.withdrawals, f.actions, f.skipped, 0));
    }

    const QList<QVariantList> trades = rowsOf(QStringLiteral("select * from havewhat order by 成交日期, rowid"));
    // code, name, date, price, shares, operation, file; broker's fee
    const struct {
        const char *code, *name, *date;
        double price, shares;
        const char *operation, *file;
        double fee;
    } expected[] = {
        {"600036", "招商银行", "2023-01-04", 35.2, 1000, "买进", "jiaogedan-2023.xls", 9.50},
        {"000001", "平安银行", "2023-01-05", 13.05, 2000, "买进", "jiaogedan-2023.xls", 6.53},
        {"600036", "招商银行", "2023-03-01", 38, 500, "卖出", "jiaogedan-2023.xls", 24.38},
        {"601318", "中国平安", "2024-01-03", 42.1, 3000, "买进", "statement-bom.csv", 32.84},
        {"601318", "中国平安", "2024-01-03", 42.1, 3000, "买进", "statement-bom.csv", 32.84},
        {"000002", "万科A", "2024-01-05", 8, 500, "买进", "other-headers.txt", 5.00}, // raised to the minimum
        {"000002", "万科A", "2024-01-08", 8.5, 800, "卖出", "other-headers.txt", 11.94},
        {"600519", "贵州茅台", "2024-01-09", 1680, 100, "买进", "other-headers.txt", 47.04},
        {"601318", "中国平安", "2024-02-05", 45, 6000, "卖出", "statement-bom.csv", 205.20},
    };
    ASSERT_EQ(trades.size(), 9);
    for (int i = 0; i < 9; ++i) {
        const auto &e = expected[i];
        const QVariantList &t = trades[i];
        SCOPED_TRACE(i);
        EXPECT_EQ((QVariantList{t[0], t[1], t[2], t[3], t[4], t[5], t[7], t[8]}),
                  (QVariantList{kUser, QLatin1String(e.code), QString::fromUtf8(e.name), QDate::fromString(QLatin1String(e.date), Qt::ISODate),
                                e.price, e.shares, QString::fromUtf8(e.operation), QStringLiteral("导入 ") + QString::fromUtf8(e.file)}));
        EXPECT_NEAR(detailsFee(t), e.fee, 0.01);
    }

    // Cash rows: a deposit keeps its reason text, a withdrawal its numeric
    // value, as the two windows store them.
    const QList<QVariantList> cash = rowsOf(QStringLiteral("select * from 资金表 order by 操作日期"));
    const struct {
        const char *date;
        double amount;
        const char *reason, *operation;
    } money[] = {{"2023-01-03", 100000, "导入 jiaogedan-2023.xls", "存入"}, {"2023-12-01", 10000, "0", "提取"},
                 {"2024-01-02", 200000, "导入 statement-bom.csv", "存入"},  {"2024-02-06", 50000, "0", "提取"},
                 {"2024-03-01", 50000, "导入 zijin-liushui.csv", "存入"},   {"2024-03-15", 8000, "0", "提取"},
                 {"2024-04-01", 1000, "导入 zijin-liushui.csv", "存入"}};
    ASSERT_EQ(cash.size(), 7);
    for (int i = 0; i < 7; ++i)
        EXPECT_EQ(cash[i].mid(1), (QVariantList{QDate::fromString(QLatin1String(money[i].date), Qt::ISODate), money[i].amount,
                                                QString::fromUtf8(money[i].reason), QString::fromUtf8(money[i].operation)}))
            << i;

    // Dividend, tax and bonus shares as booked, for the analysis.
    store::Database db = store::openUserDatabase();
    const std::vector<analysis::CorporateAction> actions = analysis::listActions(db, kUser);
    db.close();
    ASSERT_EQ(actions.size(), 3u);
    EXPECT_EQ(std::make_tuple(actions[0].code, actions[0].exDate, actions[0].bookedCashFen, actions[1].taxFen),
              std::make_tuple(QStringLiteral("600036"), QDate(2023, 7, 10), 86900, 8690));
    EXPECT_EQ(std::make_tuple(actions[2].code, actions[2].exDate, actions[2].bookedShares),
              std::make_tuple(QStringLiteral("000001"), QDate(2023, 8, 15), 400));

    // Again: nothing new, every stored row counted as imported before.
    const int again[] = {8, 5, 3, 3};
    for (int i = 0; i < 4; ++i) {
        const StoreResult r = import(files[i].file);
        EXPECT_EQ(r.stored.trades + r.stored.deposits + r.stored.withdrawals + r.stored.actions, 0) << files[i].file;
        EXPECT_EQ(r.alreadyImported, again[i]) << files[i].file;
    }
    EXPECT_EQ(std::make_tuple(rowsOf(QStringLiteral("select * from havewhat")).size(), rowsOf(QStringLiteral("select * from 资金表")).size()),
              std::make_tuple(9, 7));
}

TEST_F(ImportTest, FailureInTheMiddleStoresNothing)
{
    {
        store::Database db = store::openUserDatabase();
        db.execute(QStringLiteral("create trigger refuse before insert on 资金表 when new.资金数量 = 50000 "
                                  "begin select raise(abort, 'refused'); end"));
    }
    // The deposit and the trades go in first; the last row (withdrawal of 50000) fails.
    EXPECT_THROW(import("statement-bom.csv"), base::RuntimeError);
    store::Database db = store::openUserDatabase();
    EXPECT_EQ(std::make_tuple(rowsOf(QStringLiteral("select * from havewhat")).size(), rowsOf(QStringLiteral("select * from 资金表")).size(),
                              readJournalState(db, kUser).importedKeys.size()),
              std::make_tuple(0, 0, 0));
}

TEST_F(ImportTest, WindowPreviewsFollowsTheMappingAndImports)
{
    frmImport w;
    w.GetMame(kUser, QStringLiteral("user"));
    w.show();
    auto *path = w.findChild<QLineEdit *>(QStringLiteral("Text1"));
    QTest::keyClicks(path, dataFile("other-headers.txt"));
    QTest::keyClick(path, Qt::Key_Return);

    auto *grid = w.findChild<ui::FlexGrid *>(QStringLiteral("MSFlexGrid1"));
    ASSERT_EQ(grid->rows(), 8);
    EXPECT_EQ((QStringList{grid->textMatrix(3, 4), grid->textMatrix(3, 9), grid->textMatrix(6, 2)}), (QStringList{"600519", "47.04", "跳过"}));

    // Column 8 (规费) no longer counts as a fee: 42.00 + 1.68.
    auto *levy = w.findChild<QComboBox *>(QStringLiteral("Combo1_8"));
    ASSERT_NE(levy, nullptr);
    levy->setFocus();
    QTest::keyClick(levy, Qt::Key_Home);
    EXPECT_EQ(levy->currentText(), "（不用）");
    EXPECT_EQ(grid->textMatrix(3, 9), "43.68");

    QTest::mouseClick(w.findChild<QPushButton *>(QStringLiteral("Command2")), Qt::LeftButton);
    ASSERT_EQ(messages.size(), 1);
    EXPECT_TRUE(messages[0].startsWith(QStringLiteral("导入完成：买卖 3 笔"))) << messages[0].toStdString();
    const QList<QVariantList> trades = rowsOf(QStringLiteral("select * from havewhat where 股票代码='600519'"));
    ASSERT_EQ(trades.size(), 1);
    EXPECT_NEAR(detailsFee(trades[0]), 43.68, 0.01);
    // The preview now shows the stored rows as imported before.
    EXPECT_EQ(grid->textMatrix(3, 11), "已导入过");
}
