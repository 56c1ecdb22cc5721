// Opening the journal file: the key, the failures that must leave the file
// alone, the table list and the life of a handle.

#include "support/Helpers.h"

#include "base/Paths.h"
#include "store/Schema.h"

#include <QStandardPaths>
#include <QRandomGenerator>

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
    EXPECT_EQ(std::make_tuple(fileBytes(folder.databasePath()), folderEntries(folder)), std::make_tuple(original, entries));

    // Missing file: an error, and no file appears; a folder of that name is no file either.
    TestFolder empty(false);
    EXPECT_EQ(errorOf([] { openUserDatabase(); }), ErrFileNotFound);
    EXPECT_TRUE(folderEntries(empty).isEmpty());
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
    Database none;
    Recordset nothing;
    EXPECT_EQ((std::vector<int>{errorOf([&] { db.execute(QStringLiteral("delete from user")); }), errorOf([&] { rs.MoveNext(); }),
                                errorOf([&] { none.openRecordset(QStringLiteral("select * from user")); }), errorOf([&] { nothing.BOF(); })}),
              (std::vector<int>{ErrObjectClosed, ErrObjectClosed, ErrObjectNotSet, ErrObjectNotSet}));
}

TEST(OpenDatabase, BadStatementsFailWithTheirErrors)
{
    TestFolder folder;
    Database db = openUserDatabase();
    const std::pair<const char *, int> cases[] = {
        {"select * from user where username='o'neil'", ErrSyntax}, // a quote pasted into a value
        {"select * from nothing", ErrNoSuchTable},
        {"select nothing from user", ErrTooFewParameters},
        {"select * from user; delete from user", ErrTrailingCharacters},
        {"delete from user", ErrInvalidOperation},
        {"   ", ErrInvalidSqlStatement},
        {"select * from user; ", 0}, // a trailing semicolon is no second statement
    };
    for (const auto &[sql, error] : cases)
        EXPECT_EQ(errorOf([&] { db.openRecordset(QString::fromUtf8(sql)); }), error) << sql;
    EXPECT_EQ(errorOf([&] { db.execute(QStringLiteral("select * from user")); }), ErrSelectNotExecutable);
    EXPECT_EQ(scalar(db, QStringLiteral("select count(*) from user")).toInt(), 1); // none of them ran
}

TEST(OpenDatabase, EveryHandleKeepsARollbackJournalAndSyncsTheFolderAtCommit)
{
    TestFolder folder;
    {
        // A file another tool left in write-ahead mode comes back to a journal.
        Database db = openUserDatabase();
        EXPECT_EQ(scalar(db, QStringLiteral("pragma journal_mode=wal")).toString(), "wal");
    }
    for (const bool readOnly : {false, true}) {
        Database db = Database::open(base::programFolder() + QStringLiteral("\\user2.mdb"), 1, readOnly, kConnect);
        EXPECT_EQ(std::make_tuple(scalar(db, QStringLiteral("pragma journal_mode")).toString(), scalar(db, QStringLiteral("pragma synchronous")).toInt()),
                  std::make_tuple(QStringLiteral("delete"), 3)) << readOnly; // synchronous EXTRA
    }
}

TEST(OpenDatabase, BatchesStoreTheirWritesAtTheEndAndAFailedTransactionNone)
{
    TestFolder folder;
    Database db = openUserDatabase();
    Database other = openUserDatabase();
    const auto users = [&] { return scalar(other, QStringLiteral("select count(*) from user")).toInt(); };
    const auto add = [&](const char *name) {
        db.execute(QStringLiteral("insert into user (username, password, power) values (?, 'pw', 'user')"),
                   {QString::fromLatin1(name)});
    };
    {
        const ReadBatch batch(db);
        add("A");
        EXPECT_EQ(users(), 1); // not stored before the batch ends
    }
    EXPECT_EQ(users(), 2);

    // A transaction left by an error stores nothing, a batch inside it included.
    const QByteArray before = fileBytes(folder.databasePath());
    EXPECT_EQ(errorOf([&] {
                  Transaction t(db);
                  const ReadBatch inner(db);
                  add("B");
                  db.execute(QStringLiteral("insert into nothing values (1)"));
                  t.commit();
              }),
              ErrNoSuchTable);
    EXPECT_EQ(std::make_tuple(users(), fileBytes(folder.databasePath())), std::make_tuple(2, before));
    {
        Transaction t(db);
        add("C");
        t.commit();
    }
    EXPECT_EQ(users(), 3);
}
