// Errors during a confirmation are not caught by the entry windows: the
// standard error report ends the program.
#include "EntryFixture.h"

#include "entry/CashWindow.h"
#include "entry/TradeWindow.h"

using namespace entrytest;

namespace {

// Fills the boxes from Text2 on and presses 确认; returns the messages, which
// are recorded, so a window that refuses instead of failing does not wait for a box.
template <typename W>
QStringList confirmIn(const QStringList &texts)
{
    QStringList messages;
    const MessageRecorder recording{messages};
    W w;
    w.GetMame(QStringLiteral("ALICE"), QStringLiteral("user"));
    w.show();
    confirmWith(w, texts);
    return messages;
}

const QStringList kTrade{"600000", "", "1", "100", ""};

} // namespace

TEST(EntryDeathTest, MissingDatabaseEndsTheProgram)
{
    const std::function<void()> confirms[] = {[] { confirmIn<frmBuy>(kTrade); }, [] { confirmIn<frmShell>(kTrade); },
                                              [] { confirmIn<frmMoneyOut>({"1", "x"}); }};
    for (const auto &confirm : confirms) {
        EXPECT_EXIT(
            {
                TestFolder noDatabase(false);
                confirm();
            },
            ::testing::ExitedWithCode(1), "运行时错误 '3024'");
    }
}

// The buy window reads price and quantity before it checks the code, the sell
// window after: an overflowing price ends the buy window even with the code
// missing, while the sell window refuses the entry first.
TEST(EntryDeathTest, BuyReadsTheNumbersBeforeTheChecks)
{
    const QStringList noCode{"", "", "1e999", "100", ""};
    EXPECT_EXIT(
        {
            TestFolder folder;
            confirmIn<frmBuy>(noCode);
        },
        ::testing::ExitedWithCode(1), "运行时错误 '6'");

    TestFolder folder;
    EXPECT_EQ(confirmIn<frmShell>(noCode), QStringList{QStringLiteral("没有输入代码！")});
    EXPECT_TRUE(storedRows(QStringLiteral("havewhat")).isEmpty());
}
