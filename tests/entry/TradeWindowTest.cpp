// The buy and sell windows driven through their controls, with the rows they
// store read back from the journal; the captions of all four entry windows.
#include "EntryFixture.h"

#include "entry/CashWindow.h"
#include "entry/TradeWindow.h"

#include "support/Helpers.h"

using namespace entrytest;

namespace {

const QString kTrades = QStringLiteral("havewhat");
const QDate kDay(2024, 1, 5);

struct Kind {
    const char *name;
    std::unique_ptr<entry::TradeWindow> (*open)();
    QString operation;
    QString quantityMessage;
};

const Kind kBuy{"frmBuy", []() -> std::unique_ptr<entry::TradeWindow> { return openWindow<frmBuy>("ALICE", kDay); },
                QStringLiteral("买进"), QStringLiteral("没有输入买入数量！")};
const Kind kSell{"frmShell",
                 []() -> std::unique_ptr<entry::TradeWindow> { return openWindow<frmShell>("ALICE", kDay); },
                 QStringLiteral("卖出"), QStringLiteral("没有输入卖出数量！")};

// A stored row as texts, the date in ISO form.
QStringList rowTexts(const QVariantList &row)
{
    QStringList out;
    for (const QVariant &v : row)
        out << (v.typeId() == QMetaType::QDate ? v.toDate().toString(Qt::ISODate) : v.toString());
    return out;
}

} // namespace

TEST_F(EntryTest, TradesStoreTheRowEmptyTheBoxesAndKeepTheDate)
{
    // Texts go in exactly (quotes included) but trimmed; numbers by the
    // leading-number rule; a stock never bought is sold like any other.
    const struct {
        const Kind *kind;
        QStringList typed;
        QStringList stored;
    } cases[] = {
        {&kBuy, {" 600000 ", "", "10.5", "1000", ""}, {"ALICE", "600000", "股票", "2024-01-05", "10.5", "1000", "1.5", "买进", "买进"}},
        {&kBuy, {"000001", "O'Neil 股份", " 12.5abc", "abc", "it's '便宜' ; drop table havewhat"},
         {"ALICE", "000001", "O'Neil 股份", "2024-01-05", "12.5", "0", "1.5", "买进", "it's '便宜' ; drop table havewhat"}},
        {&kSell, {"900901", " 云赛B股 ", "0.75", "500", ""}, {"ALICE", "900901", "云赛B股", "2024-01-05", "0.75", "500", "5.5", "卖出", "卖出"}},
        {&kSell, {"000001", "", "", "100", " 止损 "}, {"ALICE", "000001", "股票", "2024-01-05", "0", "100", "1.5", "卖出", "止损"}},
    };
    int stored = 0;
    for (const Kind *kind : {&kBuy, &kSell}) {
        auto w = kind->open();
        QSignalSpy spy(w.get(), &entry::TradeWindow::tradeStored);
        int own = 0;
        for (const auto &c : cases) {
            if (c.kind != kind)
                continue;
            confirmWith(*w, c.typed);
            const auto rows = storedRows(kTrades);
            ASSERT_EQ(rows.size(), ++stored);
            auto *date = child<QDateEdit>(*w, "DTPicker1");
            EXPECT_EQ(std::make_tuple(rowTexts(rows.last()), spy.count(), boxTexts(*w, 6), date->date(), w->focusWidget()),
                      std::make_tuple(c.stored, ++own, QStringList(5, QString()), kDay, static_cast<QWidget *>(date)));
        }
    }
    EXPECT_TRUE(messages.isEmpty());
}

TEST_F(EntryTest, DatesTypedAsTheyAreWrittenAreStoredAsTyped)
{
    // Typed over the year (as the window leaves the field), all (Ctrl+A) or
    // the day (End), in the buy and the deposit window by turns. A date that
    // does not exist is refused: the date before stays.
    const std::tuple<const char *, QKeyCombination, QDate> cases[] = {
        {"2023/1/5", {}, {2023, 1, 5}},        {"2023/12/31", {}, {2023, 12, 31}},
        {"2024-01-05", Qt::CTRL | Qt::Key_A, {2024, 1, 5}}, {"2023-1-5", Qt::Key_End, {2023, 1, 5}},
        {"2023.1.5", Qt::Key_End, {2023, 1, 5}}, {"20230105", Qt::CTRL | Qt::Key_A, {2023, 1, 5}},
        {"2023/02/30", {}, {2023, 1, 5}},      {"2023/2/2", {}, {2023, 2, 2}}};
    const std::unique_ptr<QWidget> windows[] = {kBuy.open(), openWindow<frmMoneyIn>("ALICE", kDay)};
    for (int n = 0; const auto &[typed, select, stored] : cases) {
        const bool cash = n++ % 2;
        QWidget &w = *windows[cash];
        w.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&w));
        auto *date = child<QDateEdit>(w, "DTPicker1");
        date->setFocus();
        if (select != QKeyCombination())
            QTest::keyClick(date, select.key(), select.keyboardModifiers());
        QTest::keyClicks(date, QLatin1String(typed));
        QTest::keyClick(date, Qt::Key_Return);
        confirmWith(w, cash ? QStringList{"100"} : QStringList{"600000", "", "10", "100"});
        EXPECT_EQ(storedRows(cash ? QStringLiteral("资金表") : kTrades).last().at(cash ? 1 : 3).toDate(), stored) << typed;
    }
}

TEST_F(EntryTest, StoredRateFollowsTheCodePrefix)
{
    const struct {
        const char *code;
        float rate;
    } cases[] = {
        {"000002", feeOfColumn(1)}, {"200012", feeOfColumn(6)}, {"184688", feeOfColumn(2)},
        {"600036", feeOfColumn(1)}, {"900901", feeOfColumn(5)},
        // Three characters of the trimmed code decide; nothing else is checked.
        {"  600000 ", feeOfColumn(1)}, {"000", feeOfColumn(1)}, {"184abc", feeOfColumn(2)},
        // Unknown prefixes and codes too short to carry one.
        {"300001", 0.0f}, {"601988", 0.0f}, {"60", 0.0f}, {" 00 0", 0.0f}};
    for (const Kind *kind : {&kBuy, &kSell}) {
        auto w = kind->open();
        for (const auto &c : cases)
            confirmWith(*w, {QString::fromLatin1(c.code), QString(), QStringLiteral("1"), QStringLiteral("100")});
    }
    const auto rows = storedRows(kTrades);
    const int n = static_cast<int>(std::size(cases));
    ASSERT_EQ(rows.size(), 2 * n);
    for (int i = 0; i < rows.size(); ++i) {
        EXPECT_EQ(std::make_tuple(rows[i][1].toString(), rows[i][6].toFloat()),
                  std::make_tuple(QString::fromLatin1(cases[i % n].code).trimmed(), cases[i % n].rate)) << cases[i % n].code;
    }
}

TEST_F(EntryTest, RefusedTradesShowTheMessageAndStoreNothing)
{
    for (const Kind *kind : {&kBuy, &kSell}) {
        SCOPED_TRACE(kind->name);
        auto w = kind->open();
        QSignalSpy stored(w.get(), &entry::TradeWindow::tradeStored);
        const auto before = storedRows(kTrades).size();
        const struct {
            QStringList typed;
            QString message;
        } refused[] = {
            {{"", "名", "1", "100", "因"}, QStringLiteral("没有输入代码！")},
            {{"600000", "", "1", "", ""}, kind->quantityMessage},
        };
        for (const auto &r : refused) {
            messages.clear();
            confirmWith(*w, r.typed);
            EXPECT_EQ(std::make_tuple(messages, boxTexts(*w, 6)), std::make_tuple(QStringList{r.message}, r.typed));
        }
        EXPECT_EQ(std::make_tuple(stored.count(), storedRows(kTrades).size()), std::make_tuple(0, before));

        // Blanks are text: a code of blanks and a quantity of blanks pass.
        messages.clear();
        confirmWith(*w, {"   ", "", "", " ", ""});
        EXPECT_TRUE(messages.isEmpty());
        const auto rows = storedRows(kTrades);
        ASSERT_EQ(rows.size(), before + 1);
        EXPECT_EQ(rowTexts(rows.last()).mid(1, 1) + rowTexts(rows.last()).mid(5, 3), (QStringList{"", "0", "0", kind->operation}));
    }
}

TEST_F(EntryTest, BuyCodeBoxEmptiesTheNameAndLooksItUpOnEnter)
{
    marketdata::setStockList(0, QStringLiteral("000001 平安银行"));
    marketdata::setStockList(1, QStringLiteral("600000 浦发银行"));
    marketdata::setStockCount(1);
    auto w = kBuy.open();
    QLineEdit *code = box(*w, 2);
    QLineEdit *name = box(*w, 3);

    // Any key empties the name box, also one that does nothing else.
    name->setText(QStringLiteral("旧名称"));
    QTest::keyClick(code, Qt::Key_Shift);
    EXPECT_EQ(name->text(), QString());
    QTest::keyClicks(code, QStringLiteral("600000"));
    QTest::keyClick(code, Qt::Key_Return);
    EXPECT_EQ(std::make_tuple(name->text(), name->selectedText(), w->focusWidget()),
              std::make_tuple(QStringLiteral("浦发银行"), QStringLiteral("浦发银行"), static_cast<QWidget *>(name)));
}

TEST_F(EntryTest, CaptionsOfTheFourWindowsAndEnterMovesThroughTheBoxesToConfirm)
{
    // The user name handed over, two blanks, the window's word; labels follow
    // the same word; the date starts at today. Then the last box; whether
    // Enter on the date selects Text2; whether Enter on Text2 empties Text3
    // (the buy window's name box; the stock list is empty).
    const struct {
        std::unique_ptr<entry::EntryForm> window;
        QString caption, firstLabel;
        int last;
        bool selectsCode, emptiesName;
    } cases[] = {
        {std::make_unique<frmBuy>(), "ALICE  买入", "买入日期", 6, false, true},
        {std::make_unique<frmShell>(), "ALICE  卖出", "卖出日期", 6, true, false},
        {std::make_unique<frmMoneyIn>(), "ALICE  存入资金", "存入资金日期", 3, true, false},
        {std::make_unique<frmMoneyOut>(), "ALICE  提取资金", "提取资金日期", 3, true, false},
    };
    for (const auto &c : cases) {
        QWidget &w = *c.window;
        SCOPED_TRACE(w.metaObject()->className());
        c.window->GetMame(QStringLiteral("ALICE"), QStringLiteral("user"));
        w.show();
        EXPECT_EQ(std::make_tuple(w.windowTitle(), child<QLabel>(w, "Label1")->text(), child<QDateEdit>(w, "DTPicker1")->date()),
                  std::make_tuple(c.caption, c.firstLabel, QDate::currentDate()));
        for (int n = 2; n <= c.last; ++n)
            box(w, n)->setText(QStringLiteral("名%1").arg(n));
        QTest::keyClick(child<QDateEdit>(w, "DTPicker1"), Qt::Key_Return);
        EXPECT_EQ(std::make_tuple(w.focusWidget(), box(w, 2)->hasSelectedText()), std::make_tuple(static_cast<QWidget *>(box(w, 2)), c.selectsCode));
        for (int n = 2; n < c.last; ++n) {
            QTest::keyClick(box(w, n), Qt::Key_Return);
            EXPECT_EQ(std::make_tuple(w.focusWidget(), box(w, n + 1)->selectedText()),
                      std::make_tuple(static_cast<QWidget *>(box(w, n + 1)), box(w, n + 1)->text())) << n;
        }
        EXPECT_EQ(box(w, 3)->text(), c.emptiesName ? QString() : QStringLiteral("名3"));
        QTest::keyClick(box(w, c.last), Qt::Key_Return);
        EXPECT_EQ(w.focusWidget(), child<QPushButton>(w, "Command2"));
    }
    // Enter moves only; nothing was stored on the way. 取消 closes.
    EXPECT_TRUE(storedRows(kTrades).isEmpty() && storedRows(QStringLiteral("资金表")).isEmpty() && messages.isEmpty());
    QTest::mouseClick(child<QPushButton>(*cases[2].window, "Command3"), Qt::LeftButton);
    EXPECT_FALSE(cases[2].window->isVisible());
}
