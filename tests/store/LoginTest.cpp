// The login window driven through its controls.

#include "StoreTestUtil.h"
#include "support/TestFolder.h"

#include "base/ErrorGuard.h"
#include "store/Accounts.h"
#include "store/Schema.h"
#include "store/frmGuanli.h"
#include "store/frmLogin.h"
#include "ui/MsgBox.h"

#include <QApplication>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>
#include <gtest/gtest.h>

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
        ui::setMsgBoxRecorder(&messages);
        form.show();
        ASSERT_TRUE(form.isLoaded());
    }
    void TearDown() override { ui::setMsgBoxRecorder(nullptr); }

    QLineEdit *edit(const char *name) { return form.findChild<QLineEdit *>(QLatin1String(name)); }
    QPushButton *button(const char *name) { return form.findChild<QPushButton *>(QLatin1String(name)); }

    void type(const QString &name, const QString &password)
    {
        edit("txtUserName")->setText(name);
        edit("txtPassword")->setText(password);
    }

    TestFolder folder;
    QStringList messages;
    frmLogin form;
};

// Runs `action`, which opens a modal window, and returns the caption of that
// window after closing it through its button "取消".
QString captionOfModal(const std::function<void()> &action)
{
    QString caption;
    QTimer::singleShot(0, [&] {
        QWidget *modal = QApplication::activeModalWidget();
        if (!modal)
            return;
        caption = modal->windowTitle();
        if (auto *cancel = modal->findChild<QPushButton *>(QStringLiteral("Command3")))
            cancel->click();
        else
            modal->close();
    });
    action();
    return caption;
}

} // namespace

TEST_F(LoginTest, ShowsItsControlsAndCaptions)
{
    EXPECT_EQ(form.windowTitle(), QStringLiteral("登录--Tessaly"));
    EXPECT_NE(form.findChild<QGroupBox *>(QStringLiteral("Frame1")), nullptr);
    EXPECT_EQ(form.findChild<QLabel *>(QStringLiteral("lblLabels_0"))->text(), QStringLiteral("用户名称(&U):"));
    EXPECT_EQ(form.findChild<QLabel *>(QStringLiteral("lblLabels_1"))->text(), QStringLiteral("密码(&P):"));
    EXPECT_EQ(button("cmdOK")->text(), QStringLiteral("确定"));
    EXPECT_TRUE(button("cmdOK")->isDefault());
    EXPECT_EQ(button("cmdCancel")->text(), QStringLiteral("取消"));
    EXPECT_EQ(button("Command1")->text(), QStringLiteral("管理"));
    EXPECT_TRUE(edit("txtUserName")->text().isEmpty());
    EXPECT_EQ(edit("txtPassword")->echoMode(), QLineEdit::Password);
}

TEST_F(LoginTest, AliceWithBlanksLogsInAsAlice)
{
    QSignalSpy spy(&form, &frmLogin::loggedIn);
    QSignalSpy abandoned(&form, &frmLogin::closedWithoutLogin);
    type(QStringLiteral(" alice  "), QStringLiteral("  secret "));
    QTest::keyClick(edit("txtPassword"), Qt::Key_Return); // Enter presses 确定
    ASSERT_EQ(spy.count(), 1);
    EXPECT_EQ(spy.at(0).at(0).toString(), QStringLiteral("ALICE"));
    EXPECT_EQ(spy.at(0).at(1).toString(), QStringLiteral("user"));
    EXPECT_TRUE(messages.isEmpty());
    EXPECT_FALSE(form.isVisible());
    EXPECT_FALSE(form.isLoaded());
    EXPECT_EQ(abandoned.count(), 0);
}

TEST_F(LoginTest, WrongPasswordOrNameIsRefusedWithOneMessage)
{
    QSignalSpy spy(&form, &frmLogin::loggedIn);
    type(QStringLiteral("alice"), QStringLiteral("SECRET"));
    button("cmdOK")->click();
    type(QStringLiteral("nobody"), QStringLiteral("secret"));
    button("cmdOK")->click();
    EXPECT_EQ(messages, QStringList(2, QStringLiteral("用户名或密码错误！")));
    EXPECT_EQ(spy.count(), 0);
    EXPECT_TRUE(form.isVisible());
    // The boxes keep what was typed.
    EXPECT_EQ(edit("txtUserName")->text(), QStringLiteral("nobody"));
    EXPECT_EQ(edit("txtPassword")->text(), QStringLiteral("secret"));
}

TEST_F(LoginTest, BothBoxesEmptyConfirmRefusesManageAdmits)
{
    button("cmdOK")->click();
    EXPECT_EQ(messages, QStringList{QStringLiteral("用户名或密码错误！")});
    messages.clear();
    const QString caption = captionOfModal([&] { button("Command1")->click(); });
    EXPECT_EQ(caption, QStringLiteral("用户管理--Tessaly"));
    EXPECT_TRUE(messages.isEmpty());
    // Back in the login window, which still works.
    EXPECT_TRUE(form.isVisible());
    QSignalSpy spy(&form, &frmLogin::loggedIn);
    type(QStringLiteral("alice"), QStringLiteral("secret"));
    button("cmdOK")->click();
    EXPECT_EQ(spy.count(), 1);
}

TEST_F(LoginTest, ManageWithAWrongPasswordOpensNothing)
{
    type(QStringLiteral("alice"), QStringLiteral("nope"));
    const QString caption = captionOfModal([&] { button("Command1")->click(); });
    EXPECT_TRUE(caption.isEmpty());
    EXPECT_EQ(messages, QStringList{QStringLiteral("用户名或密码错误！")});
}

TEST_F(LoginTest, CancelClosesWithoutLogin)
{
    QSignalSpy abandoned(&form, &frmLogin::closedWithoutLogin);
    button("cmdCancel")->click();
    EXPECT_EQ(abandoned.count(), 1);
    EXPECT_FALSE(form.isVisible());
    EXPECT_FALSE(form.isLoaded());
}

TEST_F(LoginTest, AQuoteInTheNameEndsTheProgram)
{
    qputenv("TESSALY_ERRORS_TO_STDERR", "1");
    type(QStringLiteral("o'neil"), QStringLiteral("x"));
    EXPECT_EXIT(
        {
            ui::installErrorBox();
            button("cmdOK")->click();
        },
        ::testing::ExitedWithCode(1), "运行时错误 '3075'");
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
        ::testing::ExitedWithCode(1), "运行时错误 '3024'");
}

TEST(LoginHandOver, AnAccountAddedInUserManagementCanLogIn)
{
    TestFolder folder;
    QStringList messages;
    ui::setMsgBoxRecorder(&messages);
    {
        frmGuanli manager;
        manager.GetName(QString(), QString());
        manager.show();
        manager.findChild<QLineEdit *>(QStringLiteral("Text1"))->setText(QStringLiteral(" Carol "));
        manager.findChild<QLineEdit *>(QStringLiteral("Text2"))->setText(QStringLiteral("pw1"));
        manager.findChild<QLineEdit *>(QStringLiteral("Text3"))->setText(QStringLiteral("pw1 "));
        manager.findChild<QPushButton *>(QStringLiteral("Command1"))->click();
        manager.findChild<QPushButton *>(QStringLiteral("Command3"))->click();
    }
    frmLogin form;
    QSignalSpy spy(&form, &frmLogin::loggedIn);
    form.show();
    form.findChild<QLineEdit *>(QStringLiteral("txtUserName"))->setText(QStringLiteral("carol"));
    form.findChild<QLineEdit *>(QStringLiteral("txtPassword"))->setText(QStringLiteral("pw1"));
    form.findChild<QPushButton *>(QStringLiteral("cmdOK"))->click();
    ui::setMsgBoxRecorder(nullptr);
    EXPECT_TRUE(messages.isEmpty());
    ASSERT_EQ(spy.count(), 1);
    EXPECT_EQ(spy.at(0).at(0).toString(), QStringLiteral("CAROL"));
    EXPECT_EQ(spy.at(0).at(1).toString(), QStringLiteral("user"));
}
