// The user-management window driven through its controls.

#include "support/Helpers.h"

#include "store/Accounts.h"
#include "store/Schema.h"
#include "accounts/frmGuanli.h"

namespace {

class GuanliTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        db = store::openUserDatabase();
        store::Recordset rs;
        store::addAccount(db, rs, QStringLiteral("Alice"), QStringLiteral("a1"));
        store::addAccount(db, rs, QStringLiteral("Bob"), QStringLiteral("b1"));
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
        QTest::mouseClick(list()->viewport(), Qt::LeftButton, {}, list()->visualItemRect(items.first()).center());
    }
    // Types the three boxes (name, password, repetition), then presses `button`.
    void enter(const QString &name, const QString &password, const QString &again, const char *button)
    {
        for (int n = 1; const QString &t : {name, password, again})
            text(n++)->setText(t);
        press(button);
    }
    QString passwordOf(const QString &name)
    {
        return scalar(db, store::accountQuery(name).replace(u'*', QStringLiteral("password"))).toString();
    }
    int users() { return scalar(db, QStringLiteral("select count(*) from user")).toInt(); }
    QStringList boxes() { return {text(1)->text(), text(2)->text(), text(3)->text()}; }

    TestFolder folder;
    store::Database db;
    QStringList messages;
    const MessageRecorder recording{messages};
    std::unique_ptr<frmGuanli> form;
};

} // namespace

TEST_F(GuanliTest, ASystemCallerDeletesAnyAccountButTheAdministrator)
{
    db.execute(QStringLiteral("update user set username='SUPERVISOR' where power='System'"));
    open(QStringLiteral("SUPERVISOR"), QStringLiteral("System"));
    EXPECT_EQ(form->windowTitle(), QStringLiteral("用户管理--Tessaly"));
    EXPECT_EQ(listed(), (QStringList{"Alice", "Bob"})); // the administrator in any letter case is left out
    click(QStringLiteral("Bob"));
    EXPECT_EQ(boxes(), (QStringList{"Bob", "b1", "b1"}));
    QTest::keyClick(text(3), Qt::Key_Return); // Enter moves on and presses no button
    EXPECT_EQ(form->focusWidget(), text(1));
    EXPECT_EQ(users(), 3);

    // Trades and cash rows of Bob stay when his account goes.
    db.execute(QStringLiteral("insert into havewhat (userid, 股票代码) values ('BOB', '600000')"));
    db.execute(QStringLiteral("insert into 资金表 (userid, 资金数量) values ('BOB', 100)"));
    press("Command2");
    EXPECT_EQ(listed(), QStringList{"Alice"});
    EXPECT_EQ(scalar(db, QStringLiteral("select (select count(*) from havewhat) + (select count(*) from 资金表)")).toInt(), 2);

    // The clicked row with the administrator's name typed over it: refused.
    click(QStringLiteral("Alice"));
    text(1)->setText(QStringLiteral(" Supervisor "));
    press("Command2");
    enter(QStringLiteral("supervisor"), QStringLiteral("x"), QStringLiteral("x"), "Command4");
    EXPECT_EQ(std::make_tuple(users(), passwordOf(store::kAdminName)), std::make_tuple(2, QString(store::kAdminPassword)));

    // 删除 with nothing clicked since the list was filled deletes nothing; a
    // quote in a changed name is skipped silently.
    text(1)->setText(QStringLiteral("Alice"));
    press("Command2");
    enter(QStringLiteral("o'neil"), QStringLiteral("x"), QStringLiteral("x"), "Command4");
    press("Command2");
    EXPECT_EQ(std::make_tuple(users(), messages), std::make_tuple(2, QStringList()));
    press("Command3"); // 取消 closes the window and its handle
    EXPECT_FALSE(form->isLoaded());
}

TEST_F(GuanliTest, AnOrdinaryCallerChangesAndDeletesOnlyHisOwnAccount)
{
    open(QStringLiteral("ALICE"), QStringLiteral("user"));
    click(QStringLiteral("Bob"));
    enter(QStringLiteral("Bob"), QStringLiteral("x"), QStringLiteral("x"), "Command4");
    EXPECT_EQ(passwordOf(QStringLiteral("Bob")), QStringLiteral("b1"));
    click(QStringLiteral("Bob"));
    press("Command2");
    EXPECT_EQ(users(), 3);

    click(QStringLiteral("Alice"));
    enter(QStringLiteral("alice"), QStringLiteral("a2"), QStringLiteral("a2"), "Command4");
    EXPECT_EQ(std::make_tuple(passwordOf(QStringLiteral("ALICE")), listed()), std::make_tuple(QStringLiteral("a2"), QStringList{"alice", "Bob"})); // the name's new case
    click(QStringLiteral("alice"));
    press("Command2");
    EXPECT_EQ(std::make_tuple(listed(), messages), std::make_tuple(QStringList{"Bob"}, QStringList()));
}

TEST_F(GuanliTest, KeysChooseTheAccountAndNamesBeyondAsciiFoldTheirCase)
{
    open(QStringLiteral("SUPERVISOR"), QStringLiteral("System"));
    for (const char *name : {"josé", "ｗａｎｇ", "JOSÉ", "ＷａＮＧ", " bOB "}) {
        typeText(text(1), QString::fromUtf8(name));
        for (int n : {2, 3})
            QTest::keyClicks(text(n), QStringLiteral("pw"));
        press("Command1");
    }
    // The other-case duplicates are refused.
    EXPECT_EQ(listed(), (QStringList{"Alice", "Bob", "josé", "ｗａｎｇ"}));

    click(QStringLiteral("Alice"));
    QTest::keyClick(list(), Qt::Key_Down);
    QTest::keyClick(list(), Qt::Key_Down);
    EXPECT_EQ(text(1)->text(), QStringLiteral("josé"));
    press("Command2");
    EXPECT_EQ(listed(), (QStringList{"Alice", "Bob", "ｗａｎｇ"}));
    click(QStringLiteral("Alice"));
    QTest::keyClick(list(), Qt::Key_End);
    press("Command2");
    EXPECT_EQ(listed(), (QStringList{"Alice", "Bob"}));
}

TEST_F(GuanliTest, AddRefusesDifferentRepetitionsAndExistingNames)
{
    open(QString(), QString());
    enter(QStringLiteral("Carol"), QStringLiteral("c1"), QStringLiteral("c2"), "Command1");
    EXPECT_EQ(messages, QStringList{QStringLiteral("两次输入密码不相同")});
    EXPECT_EQ(boxes(), QStringList(3, QString()));
    enter(QStringLiteral("bob"), QStringLiteral("new"), QStringLiteral("new"), "Command1");
    EXPECT_EQ(std::make_tuple(passwordOf(QStringLiteral("Bob")), users()), std::make_tuple(QStringLiteral("b1"), 3));

    enter(QStringLiteral(" Carol "), QStringLiteral(" c1"), QStringLiteral("c1 "), "Command1");
    EXPECT_EQ(listed(), (QStringList{"Alice", "Bob", "Carol"}));
    EXPECT_EQ(scalar(db, QStringLiteral("select password || power from user where username='carol'")).toString(),
              QStringLiteral("c1user"));

    // An empty box adds nothing; blanks only add an account with an empty name.
    enter(QString(), QStringLiteral("p"), QStringLiteral("p"), "Command1");
    EXPECT_EQ(users(), 4);
    enter(QStringLiteral("   "), QStringLiteral("p"), QStringLiteral("p"), "Command1");
    EXPECT_EQ(passwordOf(QString()), QStringLiteral("p"));

    // The caller with empty boxes may delete only an empty name: the clicked
    // account goes when Text1 is emptied.
    click(QStringLiteral("Bob"));
    press("Command2");
    EXPECT_EQ(users(), 5);
    click(QStringLiteral("Bob"));
    text(1)->clear();
    press("Command2");
    EXPECT_FALSE(listed().contains(QStringLiteral("Bob")));
}

TEST(GuanliLoad, AMissingDatabaseShowsAnEmptyListAndSkipsTheErrors)
{
    TestFolder folder(false);
    frmGuanli form;
    form.GetName(QStringLiteral("ALICE"), QStringLiteral("user"));
    form.show();
    EXPECT_EQ(form.findChild<QListWidget *>(QStringLiteral("List1"))->count(), 0);
    form.findChild<QPushButton *>(QStringLiteral("Command2"))->click();
    form.findChild<QPushButton *>(QStringLiteral("Command4"))->click();
    EXPECT_TRUE(form.isVisible());
}
