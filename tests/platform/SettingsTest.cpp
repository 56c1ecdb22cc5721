#include "support/Helpers.h"
#include "base/Numbers.h"
#include "platform/frmBefor.h"
#include "platform/frmDataEnv.h"
#include "store/FeeRates.h"
#include "store/Schema.h"
#include "ui/FlexGrid.h"

namespace {

QLineEdit *box(QWidget &w, int i)
{
    return w.findChild<QLineEdit *>(QStringLiteral("SetShui_%1").arg(i));
}

QVariant feeColumn(int column)
{
    store::Database db = store::openUserDatabase();
    return db.openRecordset(QStringLiteral("select * from 税率表")).field(column);
}

} // namespace

TEST(FeeSettings, LoadListsOrdinaryTablesAndShowsTheFeeRow)
{
    TestFolder folder;
    frmDataEnv w;
    w.load();
    EXPECT_EQ(w.windowTitle(), "设置");
    const store::FeeRow defaults;
    for (int i = 0; i < 6; ++i)
        EXPECT_EQ(box(w, i)->text(), base::singleText(defaults.values[i])) << i;
    QStringList tables;
    auto *list = w.findChild<QListWidget *>(QStringLiteral("List1"));
    for (int i = 0; i < list->count(); ++i)
        tables << list->item(i)->text();
    // In the file's order, without the engine's own tables.
    EXPECT_EQ(tables, (QStringList{"user", "havewhat", "资金表", "税率表"}));
}

TEST(FeeSettings, EachBoxIsSavedToItsColumnAndTheMainWindowLoadsThemInOrder)
{
    TestFolder folder;
    {
        frmDataEnv w;
        w.show();
        for (int i = 0; i < 6; ++i)
            retype(box(w, i), i == 3 ? QStringLiteral(" 4.25 ") : QStringLiteral("%1.25").arg(i + 1));
        QTest::mouseClick(w.findChild<QPushButton *>(QStringLiteral("Command1")), Qt::LeftButton);
        for (int c = 1; c <= 6; ++c)
            EXPECT_FLOAT_EQ(feeColumn(c).toFloat(), c + 0.25f) << c;

        // The console runs nothing.
        typeText(w.findChild<QLineEdit *>(QStringLiteral("Text10")), QStringLiteral("select * from user"));
        QTest::mouseClick(w.findChild<QPushButton *>(QStringLiteral("Command2")), Qt::LeftButton);
        auto *grid = w.findChild<ui::FlexGrid *>(QStringLiteral("MSHFlexGrid1"));
        for (int r = 0; r < grid->rows(); ++r)
            for (int c = 0; c < grid->cols(); ++c)
                EXPECT_EQ(grid->textMatrix(r, c), "");
    }
    // The main window's load copies column n into fee value n.
    for (int c = 1; c <= 6; ++c)
        store::setFeeValue(c, -1);
    frmBefor main;
    main.GetMame(QStringLiteral("ALICE"), QStringLiteral("user"));
    main.load();
    for (int c = 1; c <= 6; ++c)
        EXPECT_EQ(store::feeValue(c), c + 0.25f) << c;
}

TEST(FeeSettings, EnterMovesToTheNextBoxWithItsTextSelected)
{
    TestFolder folder;
    frmDataEnv w;
    w.show();
    QApplication::setActiveWindow(&w);
    box(w, 0)->setFocus();
    QTest::keyClick(box(w, 0), Qt::Key_Return);
    EXPECT_EQ(std::make_tuple(box(w, 1)->hasFocus(), box(w, 1)->selectedText()), std::make_tuple(true, box(w, 1)->text()));
    box(w, 5)->setFocus();
    QTest::keyClick(box(w, 5), Qt::Key_Return);
    EXPECT_TRUE(box(w, 5)->hasFocus());
}

TEST(FeeSettings, AValueTheColumnCannotTakeEndsTheProgramWithNothingWritten)
{
    TestFolder folder;
    const QVariant before = feeColumn(1);
    {
        frmDataEnv w;
        w.load();
        box(w, 0)->setText(QStringLiteral("--"));
        box(w, 1)->setText(QStringLiteral("0.9"));
        EXPECT_EXIT(w.findChild<QPushButton *>(QStringLiteral("Command1"))->click(), ::testing::ExitedWithCode(1),
                    "运行时错误");
    }
    EXPECT_EQ(feeColumn(1), before);
    EXPECT_FLOAT_EQ(feeColumn(2).toFloat(), store::FeeRow().values[1]);
}
