// Errors that end the program: each runs in a child process, which shows the
// standard error box (its text goes to stderr) and exits; the parent then
// checks that the journal was left as it was.
#include "JournalData.h"
#include "reports/frmCha.h"
#include "reports/frmJyrec.h"
#include "reports/frmYkui.h"
#include "reports/frmZjin.h"

#include "base/ErrorGuard.h"
#include "ui/FlexGrid.h"
#include "ui/MsgBox.h"

#include <QAction>
#include <gtest/gtest.h>

using journal::Trade;
using namespace reports;

namespace {

const QString kUser = QStringLiteral("ZHANG");
QDate day(int d) { return QDate(2024, 5, d); }

void installStandardErrorBox()
{
    qputenv("TESSALY_ERRORS_TO_STDERR", "1");
    ui::installErrorBox();
}

template <typename Window>
void openAndDelete(Window &w, int row)
{
    installStandardErrorBox();
    w.load();
    w.grid()->setRow(row);
    w.template findChild<QAction *>(QStringLiteral("mnudel"))->trigger();
}

} // namespace

TEST(ReportEndings, TradeDetailsSoldTotalAboveSixteenBits)
{
    journal::SharedFolder folder;
    if (!folder.inChild())
        journal::addTrades({
            {.code = "600000", .name = "浦发银行", .date = day(1), .price = 5, .shares = 20000, .buy = false},
            {.code = "600000", .name = "浦发银行", .date = day(2), .price = 5, .shares = 12768, .buy = false},
        });
    EXPECT_EXIT(
        {
            installStandardErrorBox();
            frmJyrec w;
            w.GetMame(kUser, QString());
            w.load();
        },
        ::testing::ExitedWithCode(1), "运行时错误 '6':");
    EXPECT_EQ(journal::count("havewhat"), 2);
}

TEST(ReportEndings, TradeDetailsBoughtTotalIsCheckedToo)
{
    journal::SharedFolder folder;
    if (!folder.inChild())
        journal::addTrades({
            {.code = "000001", .name = "平安银行", .date = day(1), .price = 5, .shares = 32767},
            {.code = "000001", .name = "平安银行", .date = day(2), .price = 5, .shares = 1},
        });
    EXPECT_EXIT(
        {
            installStandardErrorBox();
            frmJyrec w;
            w.GetMame(kUser, QString());
            w.load();
        },
        ::testing::ExitedWithCode(1), "运行时错误 '6':");
}

TEST(ReportEndings, ProfitAndLossProceedsAboveSixteenBits)
{
    journal::SharedFolder folder;
    if (!folder.inChild())
        journal::addTrades({
            {.code = "600000", .name = "浦发银行", .date = day(1), .price = 10, .shares = 3000},
            {.code = "600000", .name = "浦发银行", .date = day(2), .price = 11, .shares = 3000, .buy = false},
        });
    EXPECT_EXIT(
        {
            installStandardErrorBox();
            frmYkui w;
            w.GetMame(kUser, QString());
            w.load();
        },
        ::testing::ExitedWithCode(1), "运行时错误 '6':");
    EXPECT_EQ(journal::count("havewhat"), 2);
}

TEST(ReportEndings, ProfitAndLossZeroSharesBought)
{
    journal::SharedFolder folder;
    if (!folder.inChild())
        journal::addTrades({
            {.code = "600000", .name = "浦发银行", .date = day(1), .price = 10, .shares = 0},
            {.code = "600000", .name = "浦发银行", .date = day(2), .price = 11, .shares = 100, .buy = false},
        });
    EXPECT_EXIT(
        {
            installStandardErrorBox();
            frmYkui w;
            w.GetMame(kUser, QString());
            w.load();
        },
        ::testing::ExitedWithCode(1), "运行时错误 '6':");
}

TEST(ReportEndings, StockRecordsDeleteWithTheHeaderRowSelected)
{
    journal::SharedFolder folder;
    if (!folder.inChild())
        journal::addTrades({
            {.code = "600000", .name = "浦发银行", .date = day(1), .price = 10, .shares = 100},
            {.code = "600000", .name = "浦发银行", .date = day(2), .price = 11, .shares = 100, .buy = false},
        });
    EXPECT_EXIT(
        {
            frmCha w;
            w.GetMame(kUser, QString(), QStringLiteral("600000"));
            openAndDelete(w, 0);
        },
        ::testing::ExitedWithCode(1), "运行时错误 '3021':");
    EXPECT_EQ(journal::count("havewhat"), 2);
}

TEST(ReportEndings, FundRecordsDeleteWithTheHeaderRowSelected)
{
    journal::SharedFolder folder;
    if (!folder.inChild()) {
        journal::addCash(kUser, day(1), 1000, QStringLiteral("a"), true);
        journal::addCash(kUser, day(2), 300, QStringLiteral("300"), false);
    }
    EXPECT_EXIT(
        {
            frmZjin w;
            w.GetMame(kUser, QString());
            openAndDelete(w, 0);
        },
        ::testing::ExitedWithCode(1), "运行时错误 '3021':");
    EXPECT_EQ(journal::count("资金表"), 2);
}

TEST(ReportEndings, StockRecordsFillStopsOnAnError)
{
    journal::SharedFolder folder;
    EXPECT_EXIT(
        {
            installStandardErrorBox();
            frmCha w;
            w.GetMame(kUser, QString(), QStringLiteral("600000"));
            w.load();
            base::guard([&] { w.SeachA(QStringLiteral("select * from nowhere")); });
            std::exit(0);
        },
        ::testing::ExitedWithCode(1), "运行时错误");
}
