// Record sets: navigation, adding, changing and deleting rows, the values
// they hand out and the conversions of assigned values.

#include "support/Helpers.h"

#include "store/Schema.h"

using namespace store;
using namespace testjournal;

namespace {

class RecordsetTest : public ::testing::Test {
protected:
    void SetUp() override { db = openUserDatabase(); }

    int count(const QString &sql) { return scalar(db, sql).toInt(); }

    TestFolder folder;
    Database db;
};

} // namespace

TEST_F(RecordsetTest, NavigatesTheSnapshot)
{
    for (int i = 1; i <= 3; ++i)
        addCash(i * 100.0, true, QStringLiteral("ALICE"), QDate(2024, 1, i));
    Recordset rs = db.openRecordset(QStringLiteral("select * from 资金表 where userid='ALICE' order by 操作日期"));
    EXPECT_EQ(rs.RecordCount(), 3);
    EXPECT_EQ(rs.fieldName(2), QStringLiteral("资金数量"));
    const auto amount = [&] { return rs.field(2).toInt(); };
    rs.MoveLast();
    rs.MoveNext();
    EXPECT_TRUE(rs.EOF_() && !rs.BOF());
    EXPECT_EQ(errorOf([&] { rs.field(0); }), ErrNoCurrentRecord);
    rs.MoveLast();
    rs.Move(-2);
    EXPECT_EQ(amount(), 100);
    rs.MovePrevious();
    EXPECT_TRUE(rs.BOF());
    EXPECT_EQ(errorOf([&] { rs.MovePrevious(); }), ErrNoCurrentRecord);
    rs.Move(2); // from before the first row
    EXPECT_EQ(amount(), 200);
    rs.Move(5);
    EXPECT_TRUE(rs.EOF_());
    rs.MoveFirst();
    EXPECT_EQ(errorOf([&] { rs.field(5); }), ErrItemNotFound);
}

TEST_F(RecordsetTest, RowsReadAfterAnAppendKeepTheQuerysOrderBeforeTheAddedRow)
{
    // More rows than a record set reads when it opens.
    db.execute(QStringLiteral("with recursive n(i) as (select 1 union all select i + 1 from n where i < 100) "
                              "insert into 资金表 select 'ALICE', '2024-01-01', i, '', '存入' from n"));
    Recordset rs = db.openRecordset(QStringLiteral("select * from 资金表 order by 资金数量 desc"));
    rs.AddNew();
    rs.setField(2, 500.0); // the query would now put it first
    rs.Update();
    EXPECT_EQ(std::make_tuple(rs.field(2).toInt(), rs.RecordCount()), std::make_tuple(100, 101));
    rs.MoveLast();
    EXPECT_EQ(rs.field(2).toInt(), 500);
    rs.MovePrevious();
    EXPECT_EQ(rs.field(2).toInt(), 1);
    rs.MoveNext();
    rs.MoveNext();
    EXPECT_TRUE(rs.EOF_());
}

TEST_F(RecordsetTest, AddNewAndEditStoreTheCurrentRowOnly)
{
    Recordset rs = db.openRecordset(QStringLiteral("select * from user where username='Bob'"));
    ASSERT_TRUE(rs.BOF() && rs.EOF_());
    rs.AddNew();
    rs.setField(1, QStringLiteral("Bob"));
    rs.setField(2, QStringLiteral("it's"));
    EXPECT_EQ(rs.field(1).toString(), QStringLiteral("Bob")); // the row being added
    rs.Update();
    Recordset back = db.openRecordset(QStringLiteral("select * from user where username='bob'"));
    ASSERT_EQ(back.RecordCount(), 1);
    EXPECT_EQ(std::make_tuple(back.field(0).toInt(), back.field(2).toString()), std::make_tuple(2, QStringLiteral("it's"))); // numbered by the engine

    // A row abandoned before Update is not stored.
    back.AddNew();
    back.setField(1, QStringLiteral("Carol"));
    back.CancelUpdate();
    EXPECT_EQ(count(QStringLiteral("select count(*) from user")), 2);
    EXPECT_EQ(errorOf([&] { back.setField(1, QStringLiteral("x")); }), ErrUpdateWithoutEdit);

    addCash(100.0, true, QStringLiteral("ALICE"), QDate(2024, 1, 1), QStringLiteral("a"));
    addCash(200.0, true, QStringLiteral("ALICE"), QDate(2024, 1, 2), QStringLiteral("b"));
    Recordset cash = db.openRecordset(QStringLiteral("select 操作原因, 资金数量 from 资金表 order by 操作日期"));
    cash.MoveNext();
    cash.Edit();
    cash.setField(1, 250.0);
    cash.Update();
    EXPECT_EQ(std::make_tuple(cash.field(1).toDouble(), count(QStringLiteral("select sum(资金数量) from 资金表"))), std::make_tuple(250.0, 350));
    cash.MoveNext();
    EXPECT_EQ(errorOf([&] { cash.Edit(); }), ErrNoCurrentRecord);
}

TEST_F(RecordsetTest, DeleteRemovesTheCurrentRowFromTheTable)
{
    for (int i = 1; i <= 3; ++i)
        addCash(i * 1.0, true, QStringLiteral("ALICE"), QDate(2024, 1, i));
    Recordset rs = db.openRecordset(QStringLiteral("select * from 资金表 order by 操作日期"));
    rs.MoveNext();
    rs.Delete();
    EXPECT_EQ(errorOf([&] { rs.field(2); }), ErrRecordDeleted);
    EXPECT_EQ(std::make_tuple(rs.RecordCount(), count(QStringLiteral("select count(*) from 资金表 where 资金数量=2"))), std::make_tuple(2, 0));
    rs.MoveNext();
    EXPECT_EQ(rs.field(2).toDouble(), 3.0);
    rs.MovePrevious(); // skips the deleted row
    EXPECT_EQ(rs.field(2).toDouble(), 1.0);

    // Before the beginning there is no current record to delete.
    rs.MoveFirst();
    rs.MovePrevious();
    EXPECT_EQ(errorOf([&] { rs.Delete(); }), ErrNoCurrentRecord);
    EXPECT_EQ(count(QStringLiteral("select count(*) from 资金表")), 2);

    // The row deleted through another handle cannot be deleted again.
    Recordset stale = db.openRecordset(QStringLiteral("select * from 资金表"));
    openUserDatabase().execute(QStringLiteral("delete from 资金表"));
    EXPECT_EQ(errorOf([&] { stale.Delete(); }), ErrRecordDeleted);
}

TEST_F(RecordsetTest, AggregatesAndDistinctAreReadOnly)
{
    addTrades({{.code = "600000", .date = QDate(2024, 1, 5), .price = 10.0, .shares = 100.0, .rate = 0.35f},
               {.code = "600000", .date = QDate(2024, 1, 5), .price = 11.0, .shares = 100.0, .rate = 0.35f, .buy = false}});
    Recordset sum = db.openRecordset(QStringLiteral("select sum(成交股数) from havewhat where userid='ALICE'"));
    Recordset codes = db.openRecordset(QStringLiteral("select distinct 股票代码 from havewhat where userid='ALICE'"));
    EXPECT_EQ(std::make_tuple(sum.field(0).toDouble(), errorOf([&] { sum.Edit(); }), codes.RecordCount(), errorOf([&] { codes.Delete(); })),
              std::make_tuple(200.0, ErrReadOnly, 1, ErrReadOnly));
    EXPECT_EQ(count(QStringLiteral("select count(*) from havewhat")), 2);
    // A keyword inside a value does not make the rows read-only.
    addTrades({{.code = "600000", .date = QDate(2024, 1, 5), .price = 1.0, .shares = 1.0, .user = QStringLiteral("GROUP")}});
    db.openRecordset(QStringLiteral("select * from havewhat where userid='Group'")).Delete();
    EXPECT_EQ(count(QStringLiteral("select count(*) from havewhat")), 2);
}

TEST_F(RecordsetTest, FeeArithmeticIsNeverIntegerDivision)
{
    // Whole numbers, even written by plain SQL as integers, divide as reals.
    addTrades({{.code = "600000", .date = QDate(2024, 1, 5), .price = 10.0, .shares = 1000.0, .rate = 5.0f}});
    db.execute(QStringLiteral("update havewhat set 交易费率=3, 成交价格=7, 成交股数=3"));
    EXPECT_EQ((std::vector<double>{scalar(db, QStringLiteral("select 交易费率/100 from havewhat")).toDouble(),
                                   scalar(db, QStringLiteral("select 成交价格/成交股数 from havewhat")).toDouble()}),
              (std::vector<double>{0.03, 7.0 / 3.0}));
}

TEST_F(RecordsetTest, ValuesComeInTheirColumnsTypesAndAssignmentConverts)
{
    addTrades({{.code = "600000", .date = QDate(2024, 1, 5), .price = 10.01, .shares = 100.0, .rate = 0.35f}});
    Recordset rs = db.openRecordset(QStringLiteral("select * from havewhat"));
    EXPECT_EQ((std::vector<int>{rs.field(0).typeId(), rs.field(3).typeId(), rs.field(4).typeId(), rs.field(6).typeId()}),
              (std::vector<int>{QMetaType::QString, QMetaType::QDate, QMetaType::Double, QMetaType::Float}));
    EXPECT_EQ(rs.field(6).toFloat(), 0.35f);
    // Dates are ISO text in the file, so that they sort; a time of day is kept.
    const auto dateText = [&] { return scalar(db, QStringLiteral("select 成交日期 || '' from havewhat")).toString(); };
    EXPECT_EQ(dateText(), QStringLiteral("2024-01-05"));
    rs.Edit();
    rs.setField(3, QDateTime(QDate(2024, 2, 29), QTime(9, 30, 15)));
    rs.Update();
    EXPECT_EQ(rs.field(3).toDateTime(), QDateTime(QDate(2024, 2, 29), QTime(9, 30, 15)));
    EXPECT_EQ(dateText(), QStringLiteral("2024-02-29 09:30:15"));

    // Text a number or date column cannot take fails the whole update (how
    // each kind converts is tested on plain values).
    addCash(1500.5, true, QStringLiteral("ALICE"), QDate(2024, 3, 1), QStringLiteral("12.5"));
    Recordset cash = db.openRecordset(QStringLiteral("select * from 资金表"));
    for (const auto &[column, text] : {std::pair{2, "12abc"}, std::pair{1, "not a date"}}) {
        cash.Edit();
        cash.setField(3, QStringLiteral("changed"));
        cash.setField(column, QString::fromLatin1(text));
        EXPECT_EQ(errorOf([&] { cash.Update(); }), ErrConversion) << text;
        cash.CancelUpdate();
    }
    EXPECT_EQ(scalar(db, QStringLiteral("select 操作原因 from 资金表")).toString(), QStringLiteral("12.5"));
}

// A record set of more rows than it reads at open counts and moves on the row
// ids alone and reads values as rows are looked at. The rows must come in the
// order the query gives them (compared with a query whose computed column
// makes it read every value at once), and a row deleted meanwhile by another
// handle must say so instead of showing another row's values.
TEST_F(RecordsetTest, LongRecordSetsKeepTheQueryOrderWhenValuesAreReadLate)
{
    QList<QVariantList> trades;
    for (int i = 0; i < 600; ++i) // index order (user, code, operation) differs from insertion order
        trades.append({i % 2 ? QStringLiteral("ALICE") : QStringLiteral("BOB"), QStringLiteral("6000%1").arg(i % 7, 2, 10, QChar(u'0')),
                       QStringLiteral("股票"), QDate(2024, 1, 5), double(i), 100.0, 0.3f,
                       i % 3 ? QStringLiteral("买进") : QStringLiteral("卖出"), QString()});
    db.execute(QStringLiteral("begin"));
    testjournal::addRows(db, QStringLiteral("havewhat"), trades);
    db.execute(QStringLiteral("commit"));

    for (const char *where : {"where userid='ALICE'", "where 成交价格>=100",
                              "order by 股票代码 desc"}) {
        Recordset all = db.openRecordset(QStringLiteral("select 成交价格*1 from havewhat ") + QString::fromUtf8(where));
        QList<double> expected;
        for (all.MoveFirst(); !all.EOF_(); all.MoveNext())
            expected << all.field(0).toDouble();

        Recordset rs = db.openRecordset(QStringLiteral("select * from havewhat ") + QString::fromUtf8(where));
        ASSERT_EQ(rs.RecordCount(), expected.size()) << where;
        const Recordset::Rows rows = rs.rows();
        for (int r = int(expected.size()) - 1; r >= 0; r -= 7) // backwards: blocks read out of order
            ASSERT_EQ(rows.value(r, 4).toDouble(), expected[r]) << where << " row " << r;
        rs.MoveFirst();
        rs.Move(200);
        EXPECT_EQ(rs.field(4).toDouble(), expected[200]) << where;
        EXPECT_TRUE(rows.value(int(expected.size()), 4).isNull());
    }

    // Rows 250 and 280 (their block not read yet) deleted through another
    // handle; changing row 251 still reaches its own row.
    Recordset rs = db.openRecordset(QStringLiteral("select * from havewhat where userid='ALICE'"));
    rs.MoveLast();
    const QVariantList gone = {rs.rows().value(250, 4), rs.rows().value(280, 4)};
    Recordset fresh = db.openRecordset(QStringLiteral("select * from havewhat where userid='ALICE'"));
    ASSERT_EQ(fresh.RecordCount(), 300);
    Database other = openUserDatabase();
    other.execute(QStringLiteral("delete from havewhat where userid='ALICE' and (成交价格=%1 or 成交价格=%2)")
                      .arg(gone[0].toDouble()).arg(gone[1].toDouble()));
    fresh.MoveFirst();
    fresh.Move(250);
    EXPECT_EQ(errorOf([&] { fresh.field(4); }), ErrRecordDeleted);
    EXPECT_EQ(errorOf([&] { fresh.rows().value(280, 0); }), ErrRecordDeleted);
    fresh.MoveNext();
    const double price = fresh.field(4).toDouble();
    fresh.Edit();
    fresh.setField(8, QStringLiteral("late"));
    fresh.Update();
    EXPECT_EQ(scalar(db, QStringLiteral("select 操作原因 from havewhat where userid='ALICE' and 成交价格=%1").arg(price)),
              QStringLiteral("late"));
    EXPECT_EQ(fresh.RecordCount(), 300);
}
