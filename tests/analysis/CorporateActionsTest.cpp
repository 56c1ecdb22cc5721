#include "analysis/CorporateActions.h"

#include "support/Helpers.h"

using namespace analysis;

namespace {

CorporateAction bonus(const QString &code, const QDate &date, int64_t per10)
{
    return {.code = code, .exDate = date, .bonusPer10 = per10, .note = {}};
}

} // namespace

TEST(CorporateActions, StoredListedAndDeletedPerUserInsideACallersTransaction)
{
    TestFolder folder;
    store::Database db = store::openUserDatabase();
    CorporateAction a{.code = QStringLiteral("600000"), .exDate = QDate(2024, 5, 6), .bonusPer10 = 30000, .cashPer10 = 12345,
                      .taxRate = 2000, .rightsPer10 = 20000, .rightsPrice = 85300, .rightsTaken = true,
                      .note = QStringLiteral("O'Neil 的备注")};
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
    testjournal::addTrades({{.code = "600000", .date = QDate(2024, 3, 1), .price = 10, .shares = 1000, .user = user}});

    struct Case {
        const char *what;
        CorporateAction action;
        QString message;
    };
    const QString code = QStringLiteral("600000");
    const QDate day(2024, 4, 1);
    const Case cases[] = {
        {"negative", bonus(code, day, -10000), QStringLiteral("送股、转增、派息、配股和扣税都不能是负数！")},
        {"huge", bonus(code, day, 1000 * 10000 + 1), QStringLiteral("比例过大，不可能是真实的分红送配方案！")},
        {"nothing", bonus(code, day, 0), QStringLiteral("送股、转增、派息、配股都是 0，没有可以登记的内容！")},
        {"rights without price", {.code = code, .exDate = day, .rightsPer10 = 30000, .note = {}}, QStringLiteral("配股必须输入配股价格！")},
        {"two taxes", {.code = code, .exDate = day, .cashPer10 = 10000, .taxFen = 10, .taxRate = 1000, .note = {}},
         QStringLiteral("扣税只能填写金额或比例之一！")},
        // 1 yuan per 10 on 1000 shares: 100 yuan
        {"tax above dividend", {.code = code, .exDate = day, .cashPer10 = 10000, .taxFen = 10001, .note = {}},
         QStringLiteral("扣税金额大于派息金额！")},
        {"bought on the ex-date", bonus(code, QDate(2024, 3, 1), 10000),
         QStringLiteral("除权日期 2024-03-01 之前没有持有 600000，不能登记分红送配！")},
        {"never held", bonus(QStringLiteral("000001"), day, 10000),
         QStringLiteral("除权日期 2024-04-01 之前没有持有 000001，不能登记分红送配！")},
        {"held the day before", bonus(code, QDate(2024, 3, 2), 10000), QString()},
        {"booked tax", {.code = code, .exDate = day, .taxFen = 500, .note = {}}, QString()}, // a tax charged later, on its own
    };
    for (const Case &c : cases)
        EXPECT_EQ(validateAction(db, user, c.action), c.message) << c.what;
}
