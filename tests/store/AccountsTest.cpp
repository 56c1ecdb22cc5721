// The account logic without windows: lookups, the login checks, the rights
// rule and the account list.

#include "StoreTestUtil.h"
#include "support/TestFolder.h"

#include "store/Accounts.h"
#include "store/Schema.h"

#include <gtest/gtest.h>

using namespace store;

namespace {

class AccountsTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        db = openUserDatabase();
        ASSERT_TRUE(addAccount(db, rs, QStringLiteral("Alice"), QStringLiteral("secret")));
    }

    LoginResult login(const QString &name, const QString &password, LoginButton button = LoginButton::Confirm)
    {
        Recordset own;
        return checkLogin(db, own, name, password, button);
    }

    TestFolder folder;
    Database db;
    Recordset rs;
};

} // namespace

TEST_F(AccountsTest, LoginTrimsUpperCasesAndComparesThePasswordExactly)
{
    const LoginResult r = login(QStringLiteral("  alice "), QStringLiteral(" secret  "));
    EXPECT_TRUE(r.accepted);
    EXPECT_EQ(r.name, QStringLiteral("ALICE"));
    EXPECT_EQ(r.role, QStringLiteral("user"));

    EXPECT_FALSE(login(QStringLiteral("alice"), QStringLiteral("Secret")).accepted);
    EXPECT_FALSE(login(QStringLiteral("alice"), QString()).accepted);
    EXPECT_FALSE(login(QStringLiteral("bob"), QStringLiteral("secret")).accepted);
    const LoginResult admin = login(QStringLiteral("Supervisor"), kAdminPassword);
    EXPECT_TRUE(admin.accepted);
    EXPECT_EQ(admin.role, QStringLiteral("System"));
}

TEST_F(AccountsTest, ManageAdmitsEmptyBoxesWhereConfirmRefuses)
{
    EXPECT_FALSE(login(QString(), QString(), LoginButton::Confirm).accepted);
    const LoginResult r = login(QStringLiteral("   "), QString(), LoginButton::Manage);
    EXPECT_TRUE(r.accepted);
    EXPECT_TRUE(r.name.isEmpty());
    EXPECT_TRUE(r.role.isEmpty());
    // With an empty name a password still has to equal the (empty) stored one.
    EXPECT_FALSE(login(QString(), QStringLiteral("x"), LoginButton::Manage).accepted);
    // With a name, Manage checks like Confirm.
    EXPECT_FALSE(login(QStringLiteral("bob"), QString(), LoginButton::Manage).accepted);
    EXPECT_TRUE(login(QStringLiteral("ALICE"), QStringLiteral("secret"), LoginButton::Manage).accepted);
}

TEST_F(AccountsTest, AQuoteInTheNameFailsTheLoginQuery)
{
    EXPECT_EQ(errorOf([&] { login(QStringLiteral("o'neil"), QString()); }), ErrSyntax);
}

TEST_F(AccountsTest, FindUserLeavesItsOutputsAloneWhenNothingIsFoundAndRefusesNulls)
{
    QString password = QStringLiteral("keep");
    QString role = QStringLiteral("keep");
    EXPECT_EQ(FindUser(db, rs, accountQuery(QStringLiteral("nobody")), password, role), 0);
    EXPECT_EQ(password, QStringLiteral("keep"));
    EXPECT_EQ(role, QStringLiteral("keep"));
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
    const QString sys = QStringLiteral("System");
    const QString user = QStringLiteral("user");
    EXPECT_TRUE(rightsAllow(QStringLiteral("ALICE"), QStringLiteral("ALICE"), user));
    EXPECT_FALSE(rightsAllow(QStringLiteral("BOB"), QStringLiteral("ALICE"), user));
    EXPECT_TRUE(rightsAllow(QStringLiteral("BOB"), QStringLiteral("SUPERVISOR"), sys));
    EXPECT_FALSE(rightsAllow(QStringLiteral("SUPERVISOR"), QStringLiteral("SUPERVISOR"), sys));
    EXPECT_FALSE(rightsAllow(QStringLiteral("BOB"), QStringLiteral("ALICE"), QStringLiteral("system")));
    // The caller admitted with empty boxes passes only for an empty target.
    EXPECT_TRUE(rightsAllow(QString(), QString(), QString()));
    EXPECT_FALSE(rightsAllow(QStringLiteral("BOB"), QString(), QString()));
}

TEST_F(AccountsTest, TheListLeavesOutTheAdministratorInAnyLetterCase)
{
    int count = -1;
    EXPECT_EQ(fillUserList(db, rs, count), QStringList{QStringLiteral("Alice")});
    EXPECT_EQ(count, 1);
    EXPECT_TRUE(rs.EOF_());

    db.execute(QStringLiteral("update user set username='SuperVisor' where power='System'"));
    EXPECT_EQ(fillUserList(db, rs, count), QStringList{QStringLiteral("Alice")});

    // With no account but the administrator, the list query is empty and moving fails.
    db.execute(QStringLiteral("delete from user where username='alice'"));
    EXPECT_EQ(errorOf([&] { fillUserList(db, rs, count); }), ErrNoCurrentRecord);
}

TEST_F(AccountsTest, AddingAnExistingNameInAnotherCaseStoresNothing)
{
    EXPECT_FALSE(addAccount(db, rs, QStringLiteral("ALICE"), QStringLiteral("other")));
    EXPECT_EQ(scalar(db, QStringLiteral("select count(*) from user")).toInt(), 2);
    EXPECT_TRUE(addAccount(db, rs, QStringLiteral("Bob"), QString()));
    Recordset bob = db.openRecordset(accountQuery(QStringLiteral("BOB")));
    EXPECT_EQ(bob.field(1).toString(), QStringLiteral("Bob"));
    EXPECT_EQ(bob.field(3).toString(), QStringLiteral("user"));
}

TEST_F(AccountsTest, ChangeKeepsTheRoleAndTakesTheNamesLetterCase)
{
    changeAccount(db, rs, QStringLiteral("ALICE"), QStringLiteral("new"));
    Recordset r = db.openRecordset(accountQuery(QStringLiteral("alice")));
    EXPECT_EQ(r.field(1).toString(), QStringLiteral("ALICE"));
    EXPECT_EQ(r.field(2).toString(), QStringLiteral("new"));
    EXPECT_EQ(r.field(3).toString(), QStringLiteral("user"));
    // An unknown account: nothing happens, nothing is raised.
    changeAccount(db, rs, QStringLiteral("nobody"), QStringLiteral("x"));
    EXPECT_EQ(scalar(db, QStringLiteral("select count(*) from user")).toInt(), 2);
}
