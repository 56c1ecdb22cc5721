// An account added in user management, reached from the login window's
// "管理", logs in through the same login window.
#include "support/Helpers.h"

#include "store/Schema.h"
#include "accounts/frmLogin.h"
#include "ui/MsgBox.h"

namespace {

void setText(QWidget *w, const char *name, const QString &text)
{
    retype(w->findChild<QLineEdit *>(QLatin1String(name)), text);
}

void press(QWidget *w, const char *name)
{
    QTest::mouseClick(w->findChild<QPushButton *>(QLatin1String(name)), Qt::LeftButton);
}

} // namespace

TEST(AccountRoundTrip, AnAccountAddedInUserManagementLogsIn)
{
    TestFolder folder;
    QStringList messages;
    ui::setMsgBoxRecorder(&messages);
    frmLogin login;
    login.show();
    QSignalSpy loggedIn(&login, &frmLogin::loggedIn);

    setText(&login, "txtUserName", store::kAdminName);
    setText(&login, "txtPassword", store::kAdminPassword);
    // 管理 opens user management, where 增加 adds the account.
    EXPECT_EQ(modalOpenedBy([&] { press(&login, "Command1"); },
                            [](QWidget &manager) {
                                setText(&manager, "Text1", QStringLiteral(" Zhang "));
                                setText(&manager, "Text2", QStringLiteral("pass 1"));
                                setText(&manager, "Text3", QStringLiteral("pass 1"));
                                press(&manager, "Command1");
                            }),
              "frmGuanli 用户管理--Tessaly");
    EXPECT_TRUE(messages.isEmpty());
    ASSERT_TRUE(login.isVisible()) << "the login window stays for the login";

    // The password was stored trimmed; the name is found in any letter case.
    setText(&login, "txtUserName", QStringLiteral("zhang"));
    setText(&login, "txtPassword", QStringLiteral("pass 1 "));
    press(&login, "cmdOK");
    ASSERT_EQ(loggedIn.count(), 1);
    EXPECT_EQ(loggedIn.at(0).at(0).toString(), "ZHANG");
    EXPECT_EQ(loggedIn.at(0).at(1).toString(), "user");
    EXPECT_TRUE(messages.isEmpty());
    ui::setMsgBoxRecorder(nullptr);
}
