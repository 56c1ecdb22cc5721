// The buy and sell windows driven through their controls, with the rows they
// store read back from the journal.
#include "EntryFixture.h"

#include "entry/TradeWindow.h"

#include <QSignalSpy>
#include <QTest>

#include <functional>
#include <memory>

using entrytest::control;
using entrytest::feeOfColumn;
using entrytest::storedRows;

namespace {

const QString kTrades = QStringLiteral("havewhat");
const QDate kDay(2024, 1, 5);

struct Kind {
    const char *name;
    std::function<std::unique_ptr<entry::TradeWindow>()> make;
    QString caption;
    QString labels; // Label1 .. Label6, blank-separated
    QString operation;
    QString quantityMessage;
};

const Kind kBuyWindow{"frmBuy",
                      [] { return std::make_unique<frmBuy>(); },
                      QStringLiteral("ALICE  买入"),
                      QStringLiteral("买入日期 股票代码 股票名称 买入价格 买入数量 买入原因"),
                      QStringLiteral("买进"),
                      QStringLiteral("没有输入买入数量！")};
const Kind kSellWindow{"frmShell",
                       [] { return std::make_unique<frmShell>(); },
                       QStringLiteral("ALICE  卖出"),
                       QStringLiteral("卖出日期 股票代码 股票名称 卖出价格 卖出数量 卖出原因"),
                       QStringLiteral("卖出"),
                       QStringLiteral("没有输入卖出数量！")};

// The five boxes Text2 .. Text6.
struct Boxes {
    QString code, name, price, quantity, reason;
};

class TradeWindowTest : public entrytest::EntryTest {
protected:
    std::unique_ptr<entry::TradeWindow> open(const Kind &kind)
    {
        auto w = kind.make();
        w->GetMame(QStringLiteral("ALICE"), QStringLiteral("user"));
        w->show();
        control<QDateEdit>(*w, "DTPicker1")->setDate(kDay);
        return w;
    }
    QLineEdit *box(QWidget &w, int n)
    {
        return w.findChild<QLineEdit *>(QStringLiteral("Text%1").arg(n));
    }
    void fill(QWidget &w, const Boxes &b)
    {
        const QString *values[] = {&b.code, &b.name, &b.price, &b.quantity, &b.reason};
        for (int n = 2; n <= 6; ++n)
            box(w, n)->setText(*values[n - 2]);
    }
    Boxes boxes(QWidget &w)
    {
        return {box(w, 2)->text(), box(w, 3)->text(), box(w, 4)->text(), box(w, 5)->text(), box(w, 6)->text()};
    }
    void confirm(QWidget &w) { QTest::mouseClick(control<QPushButton>(w, "Command2"), Qt::LeftButton); }
};

void expectBoxes(const Boxes &actual, const Boxes &expected)
{
    EXPECT_EQ(actual.code, expected.code);
    EXPECT_EQ(actual.name, expected.name);
    EXPECT_EQ(actual.price, expected.price);
    EXPECT_EQ(actual.quantity, expected.quantity);
    EXPECT_EQ(actual.reason, expected.reason);
}

} // namespace

TEST_F(TradeWindowTest, CaptionsLabelsAndControls)
{
    for (const Kind *kind : {&kBuyWindow, &kSellWindow}) {
        SCOPED_TRACE(kind->name);
        auto w = kind->make();
        EXPECT_EQ(w->windowTitle(), QStringLiteral("Tessaly"));
        w->GetMame(QStringLiteral("ALICE"), QStringLiteral("user"));
        w->show();
        EXPECT_EQ(w->windowTitle(), kind->caption);
        QStringList labels;
        for (int i = 1; i <= 6; ++i)
            labels << w->findChild<QLabel *>(QStringLiteral("Label%1").arg(i))->text();
        EXPECT_EQ(labels.join(u' '), kind->labels);
        EXPECT_EQ(control<QPushButton>(*w, "Command2")->text(), QStringLiteral("确认"));
        EXPECT_EQ(control<QPushButton>(*w, "Command3")->text(), QStringLiteral("取消"));
        EXPECT_NE(w->findChild<QWidget *>(QStringLiteral("Frame1")), nullptr);
        auto *picker = control<QDateEdit>(*w, "DTPicker1");
        EXPECT_TRUE(picker->calendarPopup());
        EXPECT_EQ(picker->date(), QDate::currentDate());
    }
}

TEST_F(TradeWindowTest, BuyStoresTheRowEmptiesTheBoxesAndKeepsTheDate)
{
    auto w = open(kBuyWindow);
    QSignalSpy stored(w.get(), &entry::TradeWindow::tradeStored);
    fill(*w, {QStringLiteral(" 600000 "), QString(), QStringLiteral("10.5"), QStringLiteral("1000"), QString()});
    confirm(*w);

    const auto rows = storedRows(kTrades);
    ASSERT_EQ(rows.size(), 1);
    const QVariantList &r = rows[0];
    EXPECT_EQ(r[0].toString(), QStringLiteral("ALICE"));
    EXPECT_EQ(r[1].toString(), QStringLiteral("600000"));
    EXPECT_EQ(r[2].toString(), QStringLiteral("股票"));
    EXPECT_EQ(r[3].toDate(), kDay);
    EXPECT_EQ(r[4].toDouble(), 10.5);
    EXPECT_EQ(r[5].toDouble(), 1000.0);
    EXPECT_EQ(r[6].toFloat(), feeOfColumn(1));
    EXPECT_EQ(r[7].toString(), QStringLiteral("买进"));
    EXPECT_EQ(r[8].toString(), QStringLiteral("买进"));

    EXPECT_EQ(stored.count(), 1);
    EXPECT_TRUE(messages.isEmpty());
    expectBoxes(boxes(*w), {});
    EXPECT_EQ(control<QDateEdit>(*w, "DTPicker1")->date(), kDay);
    EXPECT_EQ(w->focusWidget(), control<QDateEdit>(*w, "DTPicker1"));
    EXPECT_TRUE(w->isVisible());

    // The next entry goes in on the same day.
    fill(*w, {QStringLiteral("000001"), QStringLiteral("平安银行"), QStringLiteral("12"), QStringLiteral("200"),
              QStringLiteral("补仓")});
    confirm(*w);
    const auto after = storedRows(kTrades);
    ASSERT_EQ(after.size(), 2);
    EXPECT_EQ(after[1][2].toString(), QStringLiteral("平安银行"));
    EXPECT_EQ(after[1][3].toDate(), kDay);
    EXPECT_EQ(after[1][8].toString(), QStringLiteral("补仓"));
    EXPECT_EQ(stored.count(), 2);
}

TEST_F(TradeWindowTest, SellStoresAPositiveCountWithItsOwnOperation)
{
    auto w = open(kSellWindow);
    QSignalSpy stored(w.get(), &entry::TradeWindow::tradeStored);
    // A stock never bought is sold like any other.
    fill(*w, {QStringLiteral("900901"), QStringLiteral(" 云赛B股 "), QStringLiteral("0.75"), QStringLiteral("500"),
              QString()});
    confirm(*w);
    fill(*w, {QStringLiteral("000001"), QString(), QString(), QStringLiteral("100"), QStringLiteral(" 止损 ")});
    confirm(*w);

    const auto rows = storedRows(kTrades);
    ASSERT_EQ(rows.size(), 2);
    EXPECT_EQ(rows[0][2].toString(), QStringLiteral("云赛B股"));
    EXPECT_EQ(rows[0][4].toDouble(), 0.75);
    EXPECT_EQ(rows[0][5].toDouble(), 500.0);
    EXPECT_EQ(rows[0][6].toFloat(), feeOfColumn(5));
    EXPECT_EQ(rows[0][7].toString(), QStringLiteral("卖出"));
    EXPECT_EQ(rows[0][8].toString(), QStringLiteral("卖出"));
    EXPECT_EQ(rows[1][4].toDouble(), 0.0); // price left empty
    EXPECT_EQ(rows[1][6].toFloat(), feeOfColumn(1));
    EXPECT_EQ(rows[1][8].toString(), QStringLiteral("止损"));
    EXPECT_EQ(stored.count(), 2);
    expectBoxes(boxes(*w), {});
    EXPECT_EQ(w->focusWidget(), control<QDateEdit>(*w, "DTPicker1"));
}

TEST_F(TradeWindowTest, StoredRateFollowsTheCodePrefix)
{
    const struct {
        const char *code;
        float rate;
    } cases[] = {
        {"000002", feeOfColumn(1)}, {"200012", feeOfColumn(6)}, {"184688", feeOfColumn(2)},
        {"600036", feeOfColumn(1)}, {"900901", feeOfColumn(5)},
        // Three characters of the trimmed code decide; nothing else is checked.
        {"  600000 ", feeOfColumn(1)}, {"000", feeOfColumn(1)}, {"9001234567", feeOfColumn(5)}, {"184abc", feeOfColumn(2)},
        // Unknown prefixes and codes too short to carry one.
        {"300001", 0.0f}, {"601988", 0.0f}, {"1", 0.0f}, {"60", 0.0f}, {" 00 0", 0.0f}};
    for (const Kind *kind : {&kBuyWindow, &kSellWindow}) {
        auto w = open(*kind);
        for (const auto &c : cases) {
            fill(*w, {QString::fromLatin1(c.code), QString(), QStringLiteral("1"), QStringLiteral("100"), QString()});
            confirm(*w);
        }
    }
    const auto rows = storedRows(kTrades);
    const int n = static_cast<int>(std::size(cases));
    ASSERT_EQ(rows.size(), 2 * n);
    for (int i = 0; i < rows.size(); ++i) {
        EXPECT_EQ(rows[i][1].toString(), QString::fromLatin1(cases[i % n].code).trimmed());
        EXPECT_EQ(rows[i][6].toFloat(), cases[i % n].rate) << cases[i % n].code;
    }
}

TEST_F(TradeWindowTest, RefusedEntriesShowTheMessageAndStoreNothing)
{
    for (const Kind *kind : {&kBuyWindow, &kSellWindow}) {
        SCOPED_TRACE(kind->name);
        auto w = open(*kind);
        QSignalSpy stored(w.get(), &entry::TradeWindow::tradeStored);
        const auto before = storedRows(kTrades).size();
        const Boxes refused[] = {
            {QString(), QStringLiteral("名"), QStringLiteral("1"), QStringLiteral("100"), QStringLiteral("因")},
            {QString(), QString(), QString(), QString(), QString()},
            {QStringLiteral("600000"), QString(), QStringLiteral("1"), QString(), QString()},
        };
        const QString expected[] = {QStringLiteral("没有输入代码！"), QStringLiteral("没有输入代码！"),
                                    kind->quantityMessage};
        for (int i = 0; i < 3; ++i) {
            messages.clear();
            fill(*w, refused[i]);
            confirm(*w);
            EXPECT_EQ(messages, QStringList{expected[i]}) << i;
            expectBoxes(boxes(*w), refused[i]);
        }
        EXPECT_EQ(stored.count(), 0);
        EXPECT_EQ(storedRows(kTrades).size(), before);

        // Blanks are text: a code of blanks and a quantity of blanks pass.
        messages.clear();
        fill(*w, {QStringLiteral("   "), QString(), QString(), QStringLiteral(" "), QString()});
        confirm(*w);
        EXPECT_TRUE(messages.isEmpty());
        EXPECT_EQ(stored.count(), 1);
        const auto rows = storedRows(kTrades);
        ASSERT_EQ(rows.size(), before + 1);
        EXPECT_EQ(rows.last()[1].toString(), QString());
        EXPECT_EQ(rows.last()[5].toDouble(), 0.0);
        EXPECT_EQ(rows.last()[6].toFloat(), 0.0f);
        EXPECT_EQ(rows.last()[7].toString(), kind->operation);
    }
}

TEST_F(TradeWindowTest, TextsGoInExactlyAndNumbersByTheLeadingNumberRule)
{
    auto w = open(kBuyWindow);
    fill(*w, {QStringLiteral("600000"), QStringLiteral("O'Neil 股份"), QStringLiteral(" 12.5abc"),
              QStringLiteral("abc"), QStringLiteral("it's '便宜' ; drop table havewhat")});
    confirm(*w);
    const auto rows = storedRows(kTrades);
    ASSERT_EQ(rows.size(), 1);
    EXPECT_EQ(rows[0][2].toString(), QStringLiteral("O'Neil 股份"));
    EXPECT_EQ(rows[0][4].toDouble(), 12.5);
    EXPECT_EQ(rows[0][5].toDouble(), 0.0); // a non-numeric quantity is accepted as 0
    EXPECT_EQ(rows[0][8].toString(), QStringLiteral("it's '便宜' ; drop table havewhat"));
}

TEST_F(TradeWindowTest, BuyCodeBoxEmptiesTheNameAndLooksItUpOnEnter)
{
    marketdata::setStockList(0, QStringLiteral("000001 平安银行"));
    marketdata::setStockList(1, QStringLiteral("600000 浦发银行"));
    marketdata::setStockList(2, QStringLiteral("6000001 七位"));
    marketdata::setStockCount(2);
    auto w = open(kBuyWindow);
    QLineEdit *code = box(*w, 2);
    QLineEdit *name = box(*w, 3);

    // Any key empties the name box, also one that does nothing else.
    name->setText(QStringLiteral("旧名称"));
    QTest::keyClick(code, Qt::Key_Shift);
    EXPECT_EQ(name->text(), QString());
    name->setText(QStringLiteral("旧名称"));
    QTest::keyClicks(code, QStringLiteral("600000"));
    EXPECT_EQ(name->text(), QString());
    EXPECT_EQ(code->text(), QStringLiteral("600000"));

    QTest::keyClick(code, Qt::Key_Return);
    EXPECT_EQ(name->text(), QStringLiteral("浦发银行"));
    EXPECT_EQ(w->focusWidget(), name);
    EXPECT_EQ(name->selectedText(), QStringLiteral("浦发银行"));

    // Five and seven characters are not searched, but the name box is emptied all the same.
    for (const QString &typed : {QStringLiteral("60000"), QStringLiteral("6000001")}) {
        code->setText(typed);
        name->setText(QStringLiteral("旧名称"));
        QTest::keyClick(code, Qt::Key_Enter);
        EXPECT_EQ(name->text(), QString()) << qPrintable(typed);
        EXPECT_EQ(w->focusWidget(), name);
    }
    // A six-character code that is not in the list leaves the name empty.
    code->setText(QStringLiteral("123456"));
    name->setText(QStringLiteral("旧名称"));
    QTest::keyClick(code, Qt::Key_Return);
    EXPECT_EQ(name->text(), QString());
}

TEST_F(TradeWindowTest, EnterMovesThroughTheBoxesToConfirm)
{
    for (const Kind *kind : {&kBuyWindow, &kSellWindow}) {
        SCOPED_TRACE(kind->name);
        auto w = open(*kind);
        fill(*w, {QStringLiteral("600000"), QStringLiteral("名"), QStringLiteral("1"), QStringLiteral("2"),
                  QStringLiteral("因")});
        QTest::keyClick(control<QDateEdit>(*w, "DTPicker1"), Qt::Key_Return);
        EXPECT_EQ(w->focusWidget(), box(*w, 2));
        // Only the sell window selects the code on the way in from the date.
        EXPECT_EQ(box(*w, 2)->hasSelectedText(), kind == &kSellWindow);
        // Only the buy window empties the name box (the stock list is empty here).
        QTest::keyClick(box(*w, 2), Qt::Key_Return);
        EXPECT_EQ(box(*w, 3)->text(), kind == &kSellWindow ? QStringLiteral("名") : QString());
        EXPECT_EQ(w->focusWidget(), box(*w, 3));
        EXPECT_EQ(box(*w, 3)->selectedText(), box(*w, 3)->text());
        for (int n = 3; n <= 5; ++n) {
            box(*w, n + 1)->deselect();
            QTest::keyClick(box(*w, n), Qt::Key_Return);
            EXPECT_EQ(w->focusWidget(), box(*w, n + 1)) << n;
            EXPECT_EQ(box(*w, n + 1)->selectedText(), box(*w, n + 1)->text()) << n;
        }
        QTest::keyClick(box(*w, 6), Qt::Key_Return);
        EXPECT_EQ(w->focusWidget(), control<QPushButton>(*w, "Command2"));
        // Enter moves only; nothing was stored on the way.
        EXPECT_TRUE(storedRows(kTrades).isEmpty());
        EXPECT_TRUE(messages.isEmpty());
    }
}
