// The deposit and withdrawal windows driven through their controls, with the
// rows they store read back from the journal.
#include "EntryFixture.h"

#include "entry/CashWindow.h"

#include <QTest>

#include <memory>

using entrytest::control;
using entrytest::storedRows;

namespace {

const QString kCash = QStringLiteral("资金表");
const QDate kDay(2023, 12, 29);

class CashWindowTest : public entrytest::EntryTest {
protected:
    template <typename W>
    std::unique_ptr<W> open()
    {
        auto w = std::make_unique<W>();
        w->GetMame(QStringLiteral("BOB"), QStringLiteral("user"));
        w->show();
        control<QDateEdit>(*w, "DTPicker1")->setDate(kDay);
        return w;
    }
    QLineEdit *box(QWidget &w, int n) { return w.findChild<QLineEdit *>(QStringLiteral("Text%1").arg(n)); }
    void enter(QWidget &w, const QString &amount, const QString &reason)
    {
        box(w, 2)->setText(amount);
        box(w, 3)->setText(reason);
        QTest::mouseClick(control<QPushButton>(w, "Command2"), Qt::LeftButton);
    }
};

} // namespace

TEST_F(CashWindowTest, CaptionsAndLabels)
{
    frmMoneyIn in;
    frmMoneyOut out;
    const struct {
        QWidget *w;
        QString caption;
        QString labels;
    } cases[] = {
        {&in, QStringLiteral("BOB  存入资金"), QStringLiteral("存入资金日期 存入资金数量 存入资金原因")},
        {&out, QStringLiteral("BOB  提取资金"), QStringLiteral("提取资金日期 提取资金数量 提取资金原因")},
    };
    in.GetMame(QStringLiteral("BOB"), QStringLiteral("user"));
    out.GetMame(QStringLiteral("BOB"), QStringLiteral("user"));
    for (const auto &c : cases) {
        EXPECT_EQ(c.w->windowTitle(), QStringLiteral("Tessaly"));
        c.w->show();
        EXPECT_EQ(c.w->windowTitle(), c.caption);
        QStringList labels;
        for (int i = 1; i <= 3; ++i)
            labels << c.w->findChild<QLabel *>(QStringLiteral("Label%1").arg(i))->text();
        EXPECT_EQ(labels.join(u' '), c.labels);
        EXPECT_EQ(control<QPushButton>(*c.w, "Command2")->text(), QStringLiteral("确认"));
        EXPECT_EQ(control<QPushButton>(*c.w, "Command3")->text(), QStringLiteral("取消"));
        EXPECT_EQ(control<QDateEdit>(*c.w, "DTPicker1")->date(), QDate::currentDate());
        EXPECT_NE(c.w->findChild<QWidget *>(QStringLiteral("Frame1")), nullptr);
        EXPECT_EQ(c.w->findChild<QLineEdit *>(QStringLiteral("Text4")), nullptr);
    }
}

TEST_F(CashWindowTest, DepositKeepsTheReasonTextWithdrawalItsNumberNoMessageEver)
{
    auto in = open<frmMoneyIn>();
    enter(*in, QStringLiteral("10000"), QStringLiteral(" 工资 "));
    enter(*in, QStringLiteral(" 50.5元"), QStringLiteral("it's 'mine'"));
    enter(*in, QString(), QString());
    auto out = open<frmMoneyOut>();
    enter(*out, QStringLiteral("500"), QStringLiteral("买房"));
    enter(*out, QStringLiteral("200"), QStringLiteral(" 100元"));
    enter(*out, QStringLiteral("1"), QStringLiteral("2.5e1x"));
    enter(*out, QString(), QString());

    const auto rows = storedRows(kCash);
    ASSERT_EQ(rows.size(), 7);
    const struct {
        double amount;
        QString reason;
        QString operation;
    } expected[] = {
        {10000, QStringLiteral("工资"), QStringLiteral("存入")},
        {50.5, QStringLiteral("it's 'mine'"), QStringLiteral("存入")},
        {0, QString(), QStringLiteral("存入")}, // nothing is checked, nothing refused
        {500, QStringLiteral("0"), QStringLiteral("提取")},
        {200, QStringLiteral("100"), QStringLiteral("提取")},
        {1, QStringLiteral("25"), QStringLiteral("提取")},
        {0, QStringLiteral("0"), QStringLiteral("提取")},
    };
    for (int i = 0; i < 7; ++i) {
        EXPECT_EQ(rows[i][0].toString(), QStringLiteral("BOB")) << i;
        EXPECT_EQ(rows[i][1].toDate(), kDay) << i;
        EXPECT_EQ(rows[i][2].toDouble(), expected[i].amount) << i;
        EXPECT_EQ(rows[i][3].toString(), expected[i].reason) << i;
        EXPECT_EQ(rows[i][4].toString(), expected[i].operation) << i;
    }
    EXPECT_TRUE(messages.isEmpty());
}

TEST_F(CashWindowTest, AfterStoringTheBoxesAreEmptyAndTheDateKeepsTheFocus)
{
    auto out = open<frmMoneyOut>();
    enter(*out, QStringLiteral("300"), QStringLiteral("学费"));
    EXPECT_EQ(box(*out, 2)->text(), QString());
    EXPECT_EQ(box(*out, 3)->text(), QString());
    auto *picker = control<QDateEdit>(*out, "DTPicker1");
    EXPECT_EQ(picker->date(), kDay);
    EXPECT_EQ(out->focusWidget(), picker);
    EXPECT_TRUE(out->isVisible());
    EXPECT_EQ(storedRows(kCash).size(), 1);
}

TEST_F(CashWindowTest, EnterMovesToConfirmAndCancelStoresNothing)
{
    auto in = open<frmMoneyIn>();
    box(*in, 2)->setText(QStringLiteral("100"));
    box(*in, 3)->setText(QStringLiteral("奖金"));
    QTest::keyClick(control<QDateEdit>(*in, "DTPicker1"), Qt::Key_Return);
    EXPECT_EQ(in->focusWidget(), box(*in, 2));
    EXPECT_EQ(box(*in, 2)->selectedText(), QStringLiteral("100"));
    QTest::keyClick(box(*in, 2), Qt::Key_Return);
    EXPECT_EQ(in->focusWidget(), box(*in, 3));
    EXPECT_EQ(box(*in, 3)->selectedText(), QStringLiteral("奖金"));
    QTest::keyClick(box(*in, 3), Qt::Key_Return);
    EXPECT_EQ(in->focusWidget(), control<QPushButton>(*in, "Command2"));
    EXPECT_TRUE(storedRows(kCash).isEmpty());

    QTest::mouseClick(control<QPushButton>(*in, "Command3"), Qt::LeftButton);
    EXPECT_FALSE(in->isVisible());
    EXPECT_TRUE(storedRows(kCash).isEmpty());
}
