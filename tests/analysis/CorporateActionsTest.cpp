#include "analysis/CorporateActions.h"

#include "support/Helpers.h"

using namespace analysis;

namespace {

void addBuy(store::Database &db, const QString &user, const QString &code, const QDate &date, double shares)
{
    db.execute(QStringLiteral("insert into havewhat (userid, 股票代码, 股票名称, 成交日期, 成交价格, 成交股数, 交易费率, "
                              "操作记录, 操作原因) values (?, ?, 'X', ?, 10, ?, 0, '买进', '买进')"),
               {user, code, date.toString(Qt::ISODate), shares});
}

CorporateAction bonus(const QString &code, const QDate &date, int64_t per10)
{
    CorporateAction a;
    a.code = code;
    a.exDate = date;
    a.bonusPer10 = per10;
    return a;
}

} // namespace

TEST(CorporateActions, StoredListedAndDeletedPerUserInsideACallersTransaction)
{
    TestFolder folder;
    store::Database db = store::openUserDatabase();
    CorporateAction a = bonus(QStringLiteral("600000"), QDate(2024, 5, 6), 30000);
    a.cashPer10 = 12345;
    a.taxRate = 2000;
    a.rightsPer10 = 20000;
    a.rightsPrice = 85300;
    a.rightsTaken = true;
    a.note = QStringLiteral("O'Neil 的备注");
    db.execute(QStringLiteral("BEGIN"));
    addAction(db, QStringLiteral("ZHANG"), a);
    CorporateAction other = bonus(QStringLiteral("600000"), QDate(2024, 1, 2), 10000);
    addAction(db, QStringLiteral("LI"), other);
    db.execute(QStringLiteral("COMMIT"));
    EXPECT_GT(a.id, 0);

    // Rolled back with the caller's transaction: nothing of it stays.
    db.execute(QStringLiteral("BEGIN"));
    CorporateAction dropped = bonus(QStringLiteral("000001"), QDate(2020, 1, 1), 10000);
    addAction(db, QStringLiteral("ZHANG"), dropped);
    db.execute(QStringLiteral("ROLLBACK"));

    const std::vector<CorporateAction> listed = listActions(db, QStringLiteral("zhang"));
    ASSERT_EQ(listed.size(), 1u);
    EXPECT_EQ(listed[0], a);
    EXPECT_FALSE(deleteAction(db, QStringLiteral("ZHANG"), other.id)); // another user's row
    EXPECT_TRUE(deleteAction(db, QStringLiteral("ZHANG"), a.id));
    EXPECT_TRUE(listActions(db, QStringLiteral("ZHANG")).empty());
    EXPECT_EQ(listActions(db, QStringLiteral("LI")).size(), 1u);
}

TEST(CorporateActions, ValidationRefusesImpossibleFiguresAndDatesWithoutHoldings)
{
    TestFolder folder;
    store::Database db = store::openUserDatabase();
    const QString user = QStringLiteral("ZHANG");
    addBuy(db, user, QStringLiteral("600000"), QDate(2024, 3, 1), 1000);

    struct Case {
        const char *what;
        CorporateAction action;
        QString message;
    };
    CorporateAction negative = bonus(QStringLiteral("600000"), QDate(2024, 4, 1), -10000);
    CorporateAction huge = bonus(QStringLiteral("600000"), QDate(2024, 4, 1), 1000 * 10000 + 1);
    CorporateAction nothing = bonus(QStringLiteral("600000"), QDate(2024, 4, 1), 0);
    CorporateAction noPrice = nothing;
    noPrice.rightsPer10 = 30000;
    CorporateAction bothTaxes = nothing;
    bothTaxes.cashPer10 = 10000;
    bothTaxes.taxFen = 10;
    bothTaxes.taxRate = 1000;
    CorporateAction taxTooLarge = nothing;
    taxTooLarge.cashPer10 = 10000; // 1 yuan per 10 on 1000 shares: 100 yuan
    taxTooLarge.taxFen = 10001;
    CorporateAction sameDay = bonus(QStringLiteral("600000"), QDate(2024, 3, 1), 10000);
    CorporateAction otherStock = bonus(QStringLiteral("000001"), QDate(2024, 4, 1), 10000);
    CorporateAction fine = bonus(QStringLiteral("600000"), QDate(2024, 3, 2), 10000);
    CorporateAction bookedTax = nothing; // a tax charged later, on its own
    bookedTax.taxFen = 500;
    const Case cases[] = {
        {"negative", negative, QStringLiteral("送股、转增、派息、配股和扣税都不能是负数！")},
        {"huge", huge, QStringLiteral("比例过大，不可能是真实的分红送配方案！")},
        {"nothing", nothing, QStringLiteral("送股、转增、派息、配股都是 0，没有可以登记的内容！")},
        {"rights without price", noPrice, QStringLiteral("配股必须输入配股价格！")},
        {"two taxes", bothTaxes, QStringLiteral("扣税只能填写金额或比例之一！")},
        {"tax above dividend", taxTooLarge, QStringLiteral("扣税金额大于派息金额！")},
        {"bought on the ex-date", sameDay,
         QStringLiteral("除权日期 2024-03-01 之前没有持有 600000，不能登记分红送配！")},
        {"never held", otherStock, QStringLiteral("除权日期 2024-04-01 之前没有持有 000001，不能登记分红送配！")},
        {"held the day before", fine, QString()},
        {"booked tax", bookedTax, QString()},
    };
    for (const Case &c : cases)
        EXPECT_EQ(validateAction(db, user, c.action), c.message) << c.what;
}
