// The deposit and withdrawal windows driven through their controls, with the
// rows they store read back from the journal.
#include "EntryFixture.h"

#include "entry/CashWindow.h"

using namespace entrytest;

namespace {
const QString kCash = QStringLiteral("资金表");
const QDate kDay(2023, 12, 29);
} // namespace

TEST_F(EntryTest, DepositKeepsTheReasonTextWithdrawalItsNumberNoMessageEver)
{
    auto in = openWindow<frmMoneyIn>("BOB", kDay);
    auto out = openWindow<frmMoneyOut>("BOB", kDay);
    // Amount and reason typed, then the stored amount, reason and operation;
    // nothing is checked, nothing refused.
    const struct {
        QWidget *window;
        QStringList typed;
        double amount;
        QString reason, operation;
    } cases[] = {
        {in.get(), {"10000", " 工资 "}, 10000, "工资", "存入"},
        {in.get(), {" 50.5元", "it's 'mine'"}, 50.5, "it's 'mine'", "存入"},
        {in.get(), {"", ""}, 0, "", "存入"},
        {out.get(), {"500", "买房"}, 500, "0", "提取"},
        {out.get(), {"1", "2.5e1x"}, 1, "25", "提取"},
    };
    for (const auto &c : cases) {
        confirmWith(*c.window, c.typed);
        const auto rows = storedRows(kCash);
        ASSERT_FALSE(rows.isEmpty());
        EXPECT_EQ(rows.last(), (QVariantList{"BOB", kDay, c.amount, c.reason, c.operation})) << c.typed.join(u'|').toStdString();
        // The boxes are emptied; the date stays and takes the focus.
        EXPECT_EQ(boxTexts(*c.window, 3), QStringList(2, QString()));
        EXPECT_EQ(c.window->focusWidget(), child<QDateEdit>(*c.window, "DTPicker1"));
    }
    EXPECT_EQ(storedRows(kCash).size(), 5);
    EXPECT_TRUE(messages.isEmpty());
}
