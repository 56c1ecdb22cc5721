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
    EXPECT_EQ(pbkdf2Sha1("password", "salt", 2, 20).toHex(), "ea6c014dc72d6f8ccd1ed92ace1d41f0d8de8957");
    EXPECT_EQ(pbkdf2Sha1("password", "salt", 4096, 20).toHex(), "4b007901b765489abead49d926f721d065a429c1");
    EXPECT_EQ(pbkdf2Sha1("passwordPASSWORDpassword", "saltSALTsaltSALTsaltSALTsaltSALTsalt", 4096, 25).toHex(),
              "3d2eec4fe41c849b80c8d83662c0e44a8b291a964cf2f07038");
    EXPECT_EQ(pbkdf2Sha1(QByteArray("pass\0word", 9), QByteArray("sa\0lt", 5), 4096, 16).toHex(),
              "56fa6aa75548099dcc37d7f03425e0c3");
}

TEST(OpenDatabase, OpensTheDeliveredFileWithTheConnectPassword)
{
    TestFolder folder;
    Database db = openUserDatabase();
    EXPECT_TRUE(db.isOpen());
    EXPECT_EQ(scalar(db, QStringLiteral("select username from user")).toString(), kAdminName);
    // A second handle takes the key from memory and sees the same file.
    Database again = openUserDatabase();
    EXPECT_EQ(scalar(again, QStringLiteral("select count(*) from 税率表")).toInt(), 1);
}

TEST(OpenDatabase, FailuresLeaveTheFileAsItWasAndCreateNothing)
{
    TestFolder folder;
    const QByteArray original = fileBytes(folder.databasePath());
    const QStringList entries = folderEntries(folder);
    ASSERT_FALSE(original.isEmpty());

    // Right password first, so that a remembered key cannot open for a wrong one.
    openUserDatabase().close();
    EXPECT_EQ(errorOf([] { openWith(QStringLiteral(";pwd=qtr.vemblox.nzK")); }), ErrNotValidPassword);
    EXPECT_EQ(errorOf([] { openWith(QStringLiteral(";pwd=")); }), ErrNotValidPassword);
    EXPECT_EQ(errorOf([] { openWith(QString()); }), ErrNotValidPassword);
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
    const QList<QByteArray> contents = {
        QByteArray(),
        QByteArray("short"),
        random,
        random.left(1500),
        QByteArray("SQLite format 3") + QByteArray(2033, '\0'),
        journal.left(1024),
        journal.left(3000),
        journal.left(journal.size() - 1024),
    };
    for (const QByteArray &bytes : contents) {
        writeFile(folder.databasePath(), bytes);
        const int e = errorOf([] {
            Database db = openUserDatabase();
            for (const QString &table : {QStringLiteral("user"), QStringLiteral("havewhat"),
                                         QStringLiteral("资金表"), QStringLiteral("税率表")}) {
                Recordset rs = db.openRecordset(QStringLiteral("select * from ") + table);
                while (!rs.EOF_())
                    rs.MoveNext();
            }
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
    EXPECT_EQ(errorOf([&] { db.openRecordset(QStringLiteral("select * from user")); }), ErrObjectClosed);
    EXPECT_EQ(errorOf([&] { db.execute(QStringLiteral("delete from user")); }), ErrObjectClosed);
    EXPECT_EQ(errorOf([&] { db.close(); }), ErrObjectClosed);
    EXPECT_EQ(errorOf([&] { rs.field(1); }), ErrObjectClosed);
    EXPECT_EQ(errorOf([&] { rs.MoveNext(); }), ErrObjectClosed);

    Database none;
    EXPECT_FALSE(none.isOpen());
    EXPECT_EQ(errorOf([&] { none.openRecordset(QStringLiteral("select * from user")); }), ErrObjectNotSet);
    EXPECT_EQ(errorOf([&] { none.tableDefs(); }), ErrObjectNotSet);
    Recordset nothing;
    EXPECT_FALSE(nothing.isSet());
    EXPECT_EQ(errorOf([&] { nothing.BOF(); }), ErrObjectNotSet);
    EXPECT_EQ(errorOf([&] { nothing.Delete(); }), ErrObjectNotSet);
    EXPECT_EQ(errorOf([&] { nothing.AddNew(); }), ErrObjectNotSet);
}

TEST(OpenDatabase, ListsTheTablesInFileOrderWithTheEnginesOwnMarked)
{
    TestFolder folder;
    Database db = openUserDatabase();
    QStringList ordinary;
    QStringList own;
    for (const TableDef &t : db.tableDefs())
        (t.attributes == 0 ? ordinary : own) << t.name;
    EXPECT_EQ(ordinary, (QStringList{QStringLiteral("user"), QStringLiteral("havewhat"), QStringLiteral("资金表"),
                                     QStringLiteral("税率表")}));
    EXPECT_TRUE(own.contains(QStringLiteral("sqlite_sequence")));
    for (const QString &name : own)
        EXPECT_TRUE(name.startsWith(QLatin1String("sqlite_"))) << name.toStdString();
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

    Recordset add = b.openRecordset(QStringLiteral("select * from user"));
    add.AddNew();
    add.setField(1, QStringLiteral("Alice"));
    add.setField(2, QStringLiteral("pw"));
    add.setField(3, QStringLiteral("user"));
    add.Update();

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
