// The login window driven through its controls.

#include "support/Helpers.h"

#include "base/ErrorGuard.h"
#include "store/Accounts.h"
#include "store/Schema.h"
#include "accounts/frmLogin.h"
#include "ui/MsgBox.h"

namespace {

class LoginTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        {
            store::Database db = store::openUserDatabase();
            store::Recordset rs;
            store::addAccount(db, rs, QStringLiteral("Alice"), QStringLiteral("secret"));
        }
        form.show();
        ASSERT_TRUE(form.isLoaded());
    }

    QLineEdit *edit(const char *name) { return form.findChild<QLineEdit *>(QLatin1String(name)); }
    QPushButton *button(const char *name) { return form.findChild<QPushButton *>(QLatin1String(name)); }

    void type(const QString &name, const QString &password)
    {
        retype(edit("txtUserName"), name);
        retype(edit("txtPassword"), password);
    }

    TestFolder folder;
    QStringList messages;
    const MessageRecorder recording{messages};
    frmLogin form;
};

} // namespace

TEST_F(LoginTest, RefusalsKeepTheBoxesThenEnterLogsInTrimmedAndUpperCased)
{
    EXPECT_EQ(form.windowTitle() + button("cmdOK")->text() + button("Command1")->text(), QStringLiteral("登录--Tessaly确定管理"));
    EXPECT_EQ(edit("txtPassword")->echoMode(), QLineEdit::Password);
    QSignalSpy spy(&form, &frmLogin::loggedIn);
    QSignalSpy abandoned(&form, &frmLogin::closedWithoutLogin);
    const std::pair<const char *, const char *> refused[] = {{"", ""}, {"alice", "SECRET"}, {"nobody", "secret"}};
    for (const auto &[name, password] : refused) {
        type(QLatin1String(name), QLatin1String(password));
        button("cmdOK")->click();
        EXPECT_EQ(edit("txtUserName")->text() + edit("txtPassword")->text(), QLatin1String(name) + QLatin1String(password));
    }
    EXPECT_EQ(std::make_tuple(messages, spy.count(), form.isVisible()), std::make_tuple(QStringList(3, QStringLiteral("用户名或密码错误！")), 0, true));

    messages.clear();
    type(QStringLiteral(" alice  "), QStringLiteral("  secret "));
    QTest::keyClick(edit("txtPassword"), Qt::Key_Return); // Enter presses 确定
    ASSERT_EQ(spy.count(), 1);
    EXPECT_EQ(spy.at(0).at(0).toString() + u'/' + spy.at(0).at(1).toString(), QStringLiteral("ALICE/user"));
    EXPECT_EQ(std::make_tuple(form.isLoaded(), abandoned.count()), std::make_tuple(false, 0));
}

TEST_F(LoginTest, ManageOpensUserManagementOnlyAfterItsCheck)
{
    // Both boxes empty (or blank): 确定 refuses (above), 管理 admits; with a
    // name or a password it checks like 确定.
    const auto manage = [&](const char *name, const char *password) {
        type(QLatin1String(name), QLatin1String(password));
        return modalOpenedBy([&] { button("Command1")->click(); });
    };
    const QString opened = QStringLiteral("frmGuanli 用户管理--Tessaly");
    EXPECT_EQ(QStringList({manage("", ""), manage("  ", ""), manage("ALICE", "secret")}), QStringList(3, opened));
    EXPECT_TRUE(messages.isEmpty());
    EXPECT_EQ(QStringList({manage("alice", "nope"), manage("", "x"), manage("bob", "")}), QStringList(3, QString()));
    EXPECT_EQ(messages, QStringList(3, QStringLiteral("用户名或密码错误！")));
    // Still in the login window, which still works; 取消 closes it without a login.
    EXPECT_TRUE(form.isVisible());
    QSignalSpy abandoned(&form, &frmLogin::closedWithoutLogin);
    button("cmdCancel")->click();
    EXPECT_EQ(std::make_tuple(form.isLoaded(), abandoned.count()), std::make_tuple(false, 1));
}

TEST_F(LoginTest, AQuoteInTheNameEndsTheProgramWithTheFileUnchanged)
{
    qputenv("TESSALY_ERRORS_TO_STDERR", "1");
    const QByteArray before = fileBytes(folder.databasePath());
    for (const char *name : {"o'neil", "kb'--", "X' UNION SELECT 9,'A',LOWER('PW'),'S'||LOWER('YSTEM') FROM USER WHERE 'A'='A",
                             "X' OR ROWID>2 AND 'A'='A"}) {
        edit("txtUserName")->clear();
        edit("txtPassword")->clear();
        QTest::keyClicks(edit("txtUserName"), QLatin1String(name));
        QTest::keyClicks(edit("txtPassword"), QStringLiteral("pw"));
        EXPECT_EXIT(
            {
                ui::installErrorBox();
                button("cmdOK")->click();
            },
            ::testing::ExitedWithCode(1), "运行时错误 '3075'")
            << name;
        EXPECT_EQ(fileBytes(folder.databasePath()), before) << name;
    }
}

TEST(LoginStart, AMissingDatabaseEndsTheProgramAtLoad)
{
    qputenv("TESSALY_ERRORS_TO_STDERR", "1");
    TestFolder folder(false);
    EXPECT_EXIT(
        {
            ui::installErrorBox();
            frmLogin form;
            form.show();
        },
        // The path is shown with one kind of separator.
        ::testing::ExitedWithCode(1), "运行时错误 '3024'[^\\\\]*/user2\\.mdb'");
}
