// The user-management window driven through its controls.

#include "StoreTestUtil.h"
#include "support/TestFolder.h"

#include "store/Accounts.h"
#include "store/Schema.h"
#include "store/frmGuanli.h"
#include "ui/MsgBox.h"

#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTest>
#include <gtest/gtest.h>

#include <memory>

namespace {

class GuanliTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        db = store::openUserDatabase();
        store::Recordset rs;
        store::addAccount(db, rs, QStringLiteral("Alice"), QStringLiteral("a1"));
        store::addAccount(db, rs, QStringLiteral("Bob"), QStringLiteral("b1"));
        ui::setMsgBoxRecorder(&messages);
    }
    void TearDown() override
    {
        form.reset();
        ui::setMsgBoxRecorder(nullptr);
    }

    void open(const QString &name, const QString &role)
    {
        form = std::make_unique<frmGuanli>();
        form->GetName(name, role);
        form->show();
    }

    QLineEdit *text(int n) { return form->findChild<QLineEdit *>(QStringLiteral("Text%1").arg(n)); }
    QListWidget *list() { return form->findChild<QListWidget *>(QStringLiteral("List1")); }
    void press(const char *name) { form->findChild<QPushButton *>(QLatin1String(name))->click(); }

    QStringList listed()
    {
        QStringList names;
        for (int i = 0; i < list()->count(); ++i)
            names << list()->item(i)->text();
        return names;
    }

    void click(const QString &name)
    {
        const auto items = list()->findItems(name, Qt::MatchExactly);
        ASSERT_EQ(items.size(), 1) << name.toStdString();
        QListWidget *l = list();
        QTest::mouseClick(l->viewport(), Qt::LeftButton, {}, l->visualItemRect(items.first()).center());
    }

    void fill(const QString &name, const QString &password, const QString &again)
    {
        text(1)->setText(name);
        text(2)->setText(password);
        text(3)->setText(again);
    }

    QString passwordOf(const QString &name)
    {
        const QVariant v = scalar(db, store::accountQuery(name).replace(QStringLiteral("*"), QStringLiteral("password")));
        return v.toString();
    }
    int users() { return scalar(db, QStringLiteral("select count(*) from user")).toInt(); }

    void expectBoxesEmpty()
    {
        for (int i = 1; i <= 3; ++i)
            EXPECT_TRUE(text(i)->text().isEmpty()) << "Text" << i;
    }

    TestFolder folder;
    store::Database db;
    QStringList messages;
    std::unique_ptr<frmGuanli> form;
};

} // namespace

TEST_F(GuanliTest, ListsTheAccountsButNeverTheAdministrator)
{
    db.execute(QStringLiteral("update user set username='SUPERVISOR' where power='System'"));
    open(QStringLiteral("SUPERVISOR"), QStringLiteral("System"));
    EXPECT_EQ(form->windowTitle(), QStringLiteral("用户管理--Tessaly"));
    EXPECT_EQ(form->findChild<QLabel *>(QStringLiteral("Label1"))->text(), QStringLiteral("用户列表"));
    EXPECT_EQ(form->findChild<QLabel *>(QStringLiteral("Label4"))->text(), QStringLiteral("再次"));
    EXPECT_EQ(form->findChild<QPushButton *>(QStringLiteral("Command4"))->text(), QStringLiteral("修改"));
    EXPECT_EQ(listed(), (QStringList{QStringLiteral("Alice"), QStringLiteral("Bob")}));

    click(QStringLiteral("Bob"));
    EXPECT_EQ(text(1)->text(), QStringLiteral("Bob"));
    EXPECT_EQ(text(2)->text(), QStringLiteral("b1"));
    EXPECT_EQ(text(3)->text(), QStringLiteral("b1"));
}

TEST_F(GuanliTest, AnOrdinaryCallerChangesAndDeletesOnlyHisOwnAccount)
{
    open(QStringLiteral("ALICE"), QStringLiteral("user"));
    click(QStringLiteral("Bob"));
    fill(QStringLiteral("Bob"), QStringLiteral("x"), QStringLiteral("x"));
    press("Command4");
    EXPECT_EQ(passwordOf(QStringLiteral("Bob")), QStringLiteral("b1"));
    click(QStringLiteral("Bob"));
    press("Command2");
    EXPECT_EQ(users(), 3);
    expectBoxesEmpty();

    click(QStringLiteral("Alice"));
    fill(QStringLiteral("alice"), QStringLiteral("a2"), QStringLiteral("a2"));
    press("Command4");
    EXPECT_EQ(passwordOf(QStringLiteral("ALICE")), QStringLiteral("a2"));
    EXPECT_EQ(listed(), (QStringList{QStringLiteral("alice"), QStringLiteral("Bob")})); // the name's new case
    EXPECT_EQ(scalar(db, QStringLiteral("select power from user where username='alice'")).toString(),
              QStringLiteral("user"));

    click(QStringLiteral("alice"));
    press("Command2");
    EXPECT_EQ(listed(), QStringList{QStringLiteral("Bob")});
    EXPECT_TRUE(messages.isEmpty());
}

TEST_F(GuanliTest, ASystemCallerDeletesAnyAccountButTheAdministrator)
{
    open(QStringLiteral("SUPERVISOR"), QStringLiteral("System"));
    // Some trades and cash rows of Bob stay when his account goes.
    db.execute(QStringLiteral("insert into havewhat (userid, 股票代码) values ('BOB', '600000')"));
    db.execute(QStringLiteral("insert into 资金表 (userid, 资金数量) values ('BOB', 100)"));
    click(QStringLiteral("Bob"));
    press("Command2");
    EXPECT_EQ(listed(), QStringList{QStringLiteral("Alice")});
    EXPECT_EQ(scalar(db, QStringLiteral("select count(*) from havewhat where userid='BOB'")).toInt(), 1);
    EXPECT_EQ(scalar(db, QStringLiteral("select count(*) from 资金表 where userid='BOB'")).toInt(), 1);

    // The clicked row with the administrator's name typed over it: refused.
    click(QStringLiteral("Alice"));
    text(1)->setText(QStringLiteral(" Supervisor "));
    press("Command2");
    fill(QStringLiteral("supervisor"), QStringLiteral("x"), QStringLiteral("x"));
    press("Command4");
    EXPECT_EQ(users(), 2);
    EXPECT_EQ(passwordOf(store::kAdminName), store::kAdminPassword);

    // Pressing 删除 with nothing clicked since the list was filled deletes nothing.
    text(1)->setText(QStringLiteral("Alice"));
    press("Command2");
    EXPECT_EQ(users(), 2);
    EXPECT_TRUE(messages.isEmpty());
}

TEST_F(GuanliTest, AddRefusesDifferentRepetitionsAndExistingNames)
{
    open(QString(), QString());
    fill(QStringLiteral("Carol"), QStringLiteral("c1"), QStringLiteral("c2"));
    press("Command1");
    EXPECT_EQ(messages, QStringList{QStringLiteral("两次输入密码不相同")});
    expectBoxesEmpty();
    fill(QStringLiteral("Alice"), QStringLiteral("c1"), QStringLiteral("c2"));
    press("Command4");
    EXPECT_EQ(messages.size(), 2);
    EXPECT_EQ(users(), 3);

    fill(QStringLiteral("bob"), QStringLiteral("new"), QStringLiteral("new"));
    press("Command1");
    EXPECT_EQ(users(), 3);
    EXPECT_EQ(passwordOf(QStringLiteral("Bob")), QStringLiteral("b1"));

    fill(QStringLiteral(" Carol "), QStringLiteral(" c1"), QStringLiteral("c1 "));
    press("Command1");
    EXPECT_EQ(listed(), (QStringList{QStringLiteral("Alice"), QStringLiteral("Bob"), QStringLiteral("Carol")}));
    EXPECT_EQ(passwordOf(QStringLiteral("carol")), QStringLiteral("c1"));
    EXPECT_EQ(scalar(db, QStringLiteral("select power from user where username='carol'")).toString(),
              QStringLiteral("user"));
    expectBoxesEmpty();

    // An empty box adds nothing; blanks only add an account with an empty name.
    fill(QString(), QStringLiteral("p"), QStringLiteral("p"));
    press("Command1");
    EXPECT_EQ(users(), 4);
    fill(QStringLiteral("   "), QStringLiteral("p"), QStringLiteral("p"));
    press("Command1");
    EXPECT_EQ(users(), 5);
    EXPECT_EQ(passwordOf(QString()), QStringLiteral("p"));
}

TEST_F(GuanliTest, TheCallerWithEmptyBoxesDeletesTheClickedAccountWhenText1IsEmptied)
{
    open(QString(), QString());
    click(QStringLiteral("Bob"));
    fill(QStringLiteral("Bob"), QStringLiteral("b1"), QStringLiteral("b1"));
    press("Command2");
    EXPECT_EQ(users(), 3); // the rule refuses BOB for an empty caller
    click(QStringLiteral("Bob"));
    text(1)->clear();
    press("Command2");
    EXPECT_EQ(listed(), QStringList{QStringLiteral("Alice")});
}

TEST_F(GuanliTest, AQuoteInAChangedNameIsSkippedSilently)
{
    open(QStringLiteral("SUPERVISOR"), QStringLiteral("System"));
    fill(QStringLiteral("o'neil"), QStringLiteral("x"), QStringLiteral("x"));
    press("Command4");
    press("Command2");
    EXPECT_EQ(users(), 3);
    EXPECT_EQ(listed(), (QStringList{QStringLiteral("Alice"), QStringLiteral("Bob")}));
}

TEST_F(GuanliTest, EnterGoesRoundTheThreeBoxes)
{
    open(QStringLiteral("ALICE"), QStringLiteral("user"));
    text(2)->setText(QStringLiteral("abc"));
    QTest::keyClick(text(1), Qt::Key_Return);
    EXPECT_EQ(form->focusWidget(), text(2));
    EXPECT_EQ(text(2)->selectedText(), QStringLiteral("abc"));
    QTest::keyClick(text(2), Qt::Key_Enter);
    EXPECT_EQ(form->focusWidget(), text(3));
    QTest::keyClick(text(3), Qt::Key_Return);
    EXPECT_EQ(form->focusWidget(), text(1));
    EXPECT_EQ(users(), 3); // Enter pressed no button
    EXPECT_TRUE(messages.isEmpty());
}

TEST_F(GuanliTest, CancelClosesTheWindowAndItsHandle)
{
    open(QStringLiteral("ALICE"), QStringLiteral("user"));
    press("Command3");
    EXPECT_FALSE(form->isVisible());
    EXPECT_FALSE(form->isLoaded());
}

TEST(GuanliLoad, AMissingDatabaseShowsAnEmptyList)
{
    TestFolder folder(false);
    frmGuanli form;
    form.GetName(QStringLiteral("ALICE"), QStringLiteral("user"));
    form.show();
    EXPECT_EQ(form.findChild<QListWidget *>(QStringLiteral("List1"))->count(), 0);
    // Deleting and changing skip their errors too.
    form.findChild<QPushButton *>(QStringLiteral("Command2"))->click();
    form.findChild<QPushButton *>(QStringLiteral("Command4"))->click();
    EXPECT_TRUE(form.isVisible());
}
