// Errors during a confirmation are not caught by the entry windows: the
// standard error report ends the program.
#include "EntryFixture.h"

#include "entry/CashWindow.h"
#include "entry/TradeWindow.h"

#include <QTest>

using entrytest::control;

namespace {

QStringList g_messages;

// Fills the boxes from Text2 on and presses 确认. Messages are recorded in
// g_messages, so a window that refuses instead of failing does not wait for a box.
template <typename W>
void confirmIn(W &w, const QStringList &boxes)
{
    g_messages.clear();
    ui::setMsgBoxRecorder(&g_messages);
    w.GetMame(QStringLiteral("ALICE"), QStringLiteral("user"));
    w.show();
    for (int i = 0; i < boxes.size(); ++i)
        w.template findChild<QLineEdit *>(QStringLiteral("Text%1").arg(i + 2))->setText(boxes[i]);
    QTest::mouseClick(control<QPushButton>(w, "Command2"), Qt::LeftButton);
    ui::setMsgBoxRecorder(nullptr);
}

} // namespace

TEST(EntryDeathTest, MissingDatabaseEndsTheProgram)
{
    const QStringList trade{QStringLiteral("600000"), QString(), QStringLiteral("1"), QStringLiteral("100"),
                            QString()};
    EXPECT_EXIT(
        {
            TestFolder noDatabase(false);
            frmBuy w;
            confirmIn(w, trade);
        },
        ::testing::ExitedWithCode(1), "运行时错误 '3024'");
    EXPECT_EXIT(
        {
            TestFolder noDatabase(false);
            frmShell w;
            confirmIn(w, trade);
        },
        ::testing::ExitedWithCode(1), "运行时错误 '3024'");
    EXPECT_EXIT(
        {
            TestFolder noDatabase(false);
            frmMoneyOut w;
            confirmIn(w, {QStringLiteral("1"), QStringLiteral("x")});
        },
        ::testing::ExitedWithCode(1), "运行时错误 '3024'");
}

// The buy window reads price and quantity before it checks the code, the sell
// window after: an overflowing price ends the buy window even with the code
// missing, while the sell window refuses the entry first.
TEST(EntryDeathTest, BuyReadsTheNumbersBeforeTheChecks)
{
    const QStringList noCode{QString(), QString(), QStringLiteral("1e999"), QStringLiteral("100"), QString()};
    EXPECT_EXIT(
        {
            TestFolder folder;
            frmBuy w;
            confirmIn(w, noCode);
        },
        ::testing::ExitedWithCode(1), "运行时错误 '6'");

    TestFolder folder;
    frmShell w;
    confirmIn(w, noCode);
    EXPECT_EQ(g_messages, QStringList{QStringLiteral("没有输入代码！")});
    EXPECT_TRUE(entrytest::storedRows(QStringLiteral("havewhat")).isEmpty());
}
