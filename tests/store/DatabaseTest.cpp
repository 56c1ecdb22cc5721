// Opening the journal file: the key, the failures that must leave the file
// alone, the table list and the life of a handle.

#include "StoreTestUtil.h"
#include "support/TestFolder.h"

#include "base/Paths.h"
#include "store/CipherKey.h"
#include "store/Database.h"
#include "store/Schema.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <gtest/gtest.h>

using namespace store;

namespace {

Database openWith(const QString &connect)
{
    return Database::open(base::programFolder() + QStringLiteral("\\user2.mdb"), 1, false, connect);
}

QStringList folderEntries(const TestFolder &folder)
{
    return QDir(folder.path()).entryList(QDir::Files | QDir::Hidden | QDir::System);
}

} // namespace

TEST(CipherKey, MatchesThePbkdf2ReferenceVectors)
{
    // RFC 6070 test vectors for PBKDF2-HMAC-SHA1.
    EXPECT_EQ(pbkdf2Sha1("password", "salt", 1, 20).toHex(), "0c60c80f961f0e71f3a9b524af6012062fe037a6");
    EXPECT_EQ(pbkdf2Sha1("passwordPASSWORDpassword", "saltSALTsaltSALTsaltSALTsaltSALTsalt", 4096, 25).toHex(),
              "3d2eec4fe41c849b80c8d83662c0e44a8b291a964cf2f07038");
    EXPECT_EQ(pbkdf2Sha1(QByteArray("pass\0word", 9), QByteArray("sa\0lt", 5), 4096, 16).toHex(),
              "56fa6aa75548099dcc37d7f03425e0c3");
}

TEST(OpenDatabase, FailuresLeaveTheFileAsItWasAndCreateNothing)
{
    TestFolder folder;
    const QByteArray original = fileBytes(folder.databasePath());
    const QStringList entries = folderEntries(folder);
    ASSERT_FALSE(original.isEmpty());

    // Right password first, so that a remembered key cannot open for a wrong one.
    openUserDatabase().close();
    for (const QString &connect : {QStringLiteral(";pwd=qtr.vemblox.nzK"), QStringLiteral(";pwd="), QString()})
        EXPECT_EQ(errorOf([&] { openWith(connect); }), ErrNotValidPassword) << connect.toStdString();
    EXPECT_EQ(fileBytes(folder.databasePath()), original);
    EXPECT_EQ(folderEntries(folder), entries);

    // Missing file: an error, and no file appears.
    TestFolder empty(false);
    EXPECT_EQ(errorOf([] { openUserDatabase(); }), ErrFileNotFound);
    EXPECT_FALSE(QFileInfo::exists(empty.databasePath()));
    EXPECT_TRUE(folderEntries(empty).isEmpty());
    // A folder of that name is no database file either.
    ASSERT_TRUE(QDir(empty.path()).mkdir(QStringLiteral("user2.mdb")));
    EXPECT_EQ(errorOf([] { openUserDatabase(); }), ErrFileNotFound);
}

TEST(OpenDatabase, AnyBytesInPlaceOfTheFileGiveADefinedError)
{
    TestFolder folder(false);
    QRandomGenerator rng(42);
    QByteArray random(4096, '\0');
    for (char &c : random)
        c = char(rng.bounded(256));
    const QByteArray journal = [] {
        TestFolder source;
        return fileBytes(source.databasePath());
    }();
    for (const QByteArray &bytes : {QByteArray(), QByteArray("short"), random, random.left(1500),
                                    QByteArray("SQLite format 3") + QByteArray(2033, '\0'), journal.left(1024),
                                    journal.left(3000), journal.left(journal.size() - 1024)}) {
        writeFile(folder.databasePath(), bytes);
        const int e = errorOf([] {
            Database db = openUserDatabase();
            for (const char *table : {"user", "havewhat", "资金表", "税率表"})
                for (Recordset rs = db.openRecordset(QStringLiteral("select * from ") + QString::fromUtf8(table)); !rs.EOF_();)
                    rs.MoveNext();
        });
        EXPECT_NE(e, 0) << "size " << bytes.size();
        EXPECT_EQ(fileBytes(folder.databasePath()), bytes) << "size " << bytes.size();
    }
}

TEST(OpenDatabase, KeepsOpeningAFileReplacedUnderTheSameName)
{
    TestFolder folder;
    {
        Database db = openUserDatabase();
        db.execute(QStringLiteral("update user set password='first'"));
    }
    // A new file has a new salt: the remembered key of the old one must not be used.
    ASSERT_TRUE(QFile::remove(folder.databasePath()));
    createJournal(folder.databasePath());
    Database db = openUserDatabase();
    EXPECT_EQ(scalar(db, QStringLiteral("select password from user")).toString(), kAdminPassword);
}

TEST(OpenDatabase, TheFileOpensInTheSqlcipherShellWithThePasswordAlone)
{
    if (QStandardPaths::findExecutable(QStringLiteral("sqlcipher")).isEmpty())
        GTEST_SKIP() << "sqlcipher shell not installed";
    TestFolder folder;
    QProcess shell;
    shell.start(QStringLiteral("sqlcipher"), {folder.databasePath()});
    ASSERT_TRUE(shell.waitForStarted());
    shell.write("PRAGMA key='qtr.vemblox.nzk';\nselect username || '/' || power from user;\n");
    shell.closeWriteChannel();
    ASSERT_TRUE(shell.waitForFinished());
    EXPECT_EQ(QString::fromUtf8(shell.readAllStandardOutput()).trimmed(), QStringLiteral("supervisor/System"));
}

TEST(OpenDatabase, ClosedAndUnsetObjectsRaiseTheirErrors)
{
    TestFolder folder;
    Database db = openUserDatabase();
    Recordset rs = db.openRecordset(QStringLiteral("select * from user"));
    db.close();
    EXPECT_FALSE(db.isOpen());
    EXPECT_EQ(errorOf([&] { db.execute(QStringLiteral("delete from user")); }), ErrObjectClosed);
    EXPECT_EQ(errorOf([&] { db.close(); }), ErrObjectClosed);
    EXPECT_EQ(errorOf([&] { rs.MoveNext(); }), ErrObjectClosed);

    Database none;
    EXPECT_EQ(errorOf([&] { none.openRecordset(QStringLiteral("select * from user")); }), ErrObjectNotSet);
    EXPECT_EQ(errorOf([&] { none.tableDefs(); }), ErrObjectNotSet);
    Recordset nothing;
    EXPECT_FALSE(nothing.isSet());
    EXPECT_EQ(errorOf([&] { nothing.BOF(); }), ErrObjectNotSet);
    EXPECT_EQ(errorOf([&] { nothing.AddNew(); }), ErrObjectNotSet);
}

TEST(OpenDatabase, ListsTheTablesInFileOrderWithTheEnginesOwnMarked)
{
    TestFolder folder;
    Database db = openUserDatabase();
    QStringList ordinary, own;
    for (const TableDef &t : db.tableDefs())
        (t.attributes == 0 ? ordinary : own) << t.name;
    EXPECT_EQ(ordinary, (QStringList{"user", "havewhat", "资金表", "税率表"}));
    EXPECT_TRUE(own.contains(QStringLiteral("sqlite_sequence")));
    EXPECT_TRUE(own.filter(QRegularExpression(QStringLiteral("^(?!sqlite_)"))).isEmpty()) << own.join(u' ').toStdString();
}

TEST(OpenDatabase, BadStatementsFailWithTheirErrors)
{
    TestFolder folder;
    Database db = openUserDatabase();
    // A quote inside a pasted value breaks the statement.
    EXPECT_EQ(errorOf([&] { db.openRecordset(QStringLiteral("select * from user where username='o'neil'")); }),
              ErrSyntax);
    EXPECT_EQ(errorOf([&] { db.openRecordset(QStringLiteral("select * from nothing")); }), ErrNoSuchTable);
    EXPECT_EQ(errorOf([&] { db.openRecordset(QStringLiteral("select nothing from user")); }), ErrTooFewParameters);
    EXPECT_EQ(errorOf([&] { db.openRecordset(QStringLiteral("select * from user; delete from user")); }),
              ErrTrailingCharacters);
    EXPECT_EQ(errorOf([&] { db.openRecordset(QStringLiteral("delete from user")); }), ErrInvalidOperation);
    EXPECT_EQ(errorOf([&] { db.openRecordset(QStringLiteral("   ")); }), ErrInvalidSqlStatement);
    EXPECT_EQ(errorOf([&] { db.execute(QStringLiteral("select * from user")); }), ErrSelectNotExecutable);
    // None of them ran: the administrator is still there.
    EXPECT_EQ(scalar(db, QStringLiteral("select count(*) from user")).toInt(), 1);
    // A trailing semicolon or blanks are no second statement.
    EXPECT_EQ(errorOf([&] { db.openRecordset(QStringLiteral("select * from user; ")); }), 0);
}

TEST(OpenDatabase, SeveralHandlesWorkOnTheFileAtOnce)
{
    TestFolder folder;
    Database a = openUserDatabase();
    Database b = openUserDatabase();
    Recordset list = a.openRecordset(QStringLiteral("select * from user"));

    b.execute(QStringLiteral("insert into user (username, password, power) values ('Alice', 'pw', 'user')"));

    a.execute(QStringLiteral("update user set password='changed' where username='alice'"));
    EXPECT_EQ(scalar(b, QStringLiteral("select password from user where username='ALICE'")).toString(),
              QStringLiteral("changed"));
    // The snapshot of the first handle stays as it was read; it can still be
    // changed through, while the other handle is open.
    EXPECT_EQ(list.RecordCount(), 1);
    list.Edit();
    list.setField(2, QStringLiteral("new"));
    list.Update();
    EXPECT_EQ(scalar(b, QStringLiteral("select password from user where username='supervisor'")).toString(),
              QStringLiteral("new"));
    b.close();
    EXPECT_EQ(scalar(a, QStringLiteral("select count(*) from user")).toInt(), 2);
}
