// The account logic without windows: lookups, the rights rule and the
// account list (the login checks are driven through the login window).

#include "support/Helpers.h"

#include "store/Accounts.h"
#include "store/Schema.h"

using namespace store;

namespace {

class AccountsTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        db = openUserDatabase();
        ASSERT_TRUE(addAccount(db, rs, QStringLiteral("Alice"), QStringLiteral("secret")));
    }

    TestFolder folder;
    Database db;
    Recordset rs;
};

} // namespace

TEST_F(AccountsTest, FindUserLeavesItsOutputsAloneWhenNothingIsFoundAndRefusesNulls)
{
    QString password = QStringLiteral("keep");
    QString role = QStringLiteral("keep");
    EXPECT_EQ(FindUser(db, rs, accountQuery(QStringLiteral("nobody")), password, role), 0);
    EXPECT_EQ(password + role, QStringLiteral("keepkeep"));
    EXPECT_TRUE(rs.BOF() && rs.EOF_());

    db.execute(QStringLiteral("insert into user (username) values ('Nulls')"));
    EXPECT_EQ(errorOf([&] { FindUser(db, rs, accountQuery(QStringLiteral("NULLS")), password, role); }),
              ErrInvalidNull);

    // In user management the failing lookup is skipped and the old record set stays.
    Recordset kept = db.openRecordset(accountQuery(QStringLiteral("alice")));
    EXPECT_EQ(FindUser(db, kept, accountQuery(QStringLiteral("a'b")), password, role, OnError::ResumeNext), 1);
    EXPECT_EQ(password, QStringLiteral("secret"));
}

TEST(Rights, SystemCallersChangeAnyListedAccountOthersOnlyTheirOwn)
{
    // Target, caller, caller's role. The caller admitted with empty boxes
    // passes only for an empty target.
    const struct {
        const char *target, *caller, *role;
        bool allowed;
    } cases[] = {
        {"ALICE", "ALICE", "user", true},           {"BOB", "ALICE", "user", false},
        {"BOB", "SUPERVISOR", "System", true},      {"SUPERVISOR", "SUPERVISOR", "System", false},
        {"BOB", "ALICE", "system", false},          {"", "", "", true},
        {"BOB", "", "", false},
    };
    for (const auto &c : cases)
        EXPECT_EQ(rightsAllow(QLatin1String(c.target), QLatin1String(c.caller), QLatin1String(c.role)), c.allowed)
            << c.target << '/' << c.caller << '/' << c.role;
}

TEST_F(AccountsTest, TheListLeavesOutTheAdministratorInAnyLetterCase)
{
    int count = -1;
    db.execute(QStringLiteral("update user set username='SuperVisor' where power='System'"));
    EXPECT_EQ(fillUserList(db, rs, count), QStringList{QStringLiteral("Alice")});
    EXPECT_EQ(count, 1);
    EXPECT_TRUE(rs.EOF_());
    // With no account but the administrator, the list query is empty and moving fails.
    db.execute(QStringLiteral("delete from user where username='alice'"));
    EXPECT_EQ(errorOf([&] { fillUserList(db, rs, count); }), ErrNoCurrentRecord);
}
