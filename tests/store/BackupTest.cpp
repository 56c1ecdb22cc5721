// Automatic backups: one encrypted copy of user2.mdb per run, made before the
// first write, the ten newest kept, and a failing backup never blocking the
// write.

#include "support/Helpers.h"

#include "store/Backup.h"

using namespace store;

namespace {

const QDateTime kRunTime(QDate(2026, 11, 22), QTime(21, 30, 5));

class BackupTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        resetBackupState();
        setBackupClock([this] { return clock; });
    }
    void TearDown() override
    {
        resetBackupState();
        setBackupClock({});
    }

    QStringList backups() const
    {
        return QDir(folder.file(QStringLiteral("backup"))).entryList(QDir::Files, QDir::Name);
    }
    QString backupPath(const QString &name) const { return folder.file(QStringLiteral("backup/") + name); }

    static void addCash(Database &db, double amount)
    {
        testjournal::addRows(db, QStringLiteral("资金表"),
                             {{QStringLiteral("DEMO"), QDate(2026, 1, 2), amount, QStringLiteral("工资"), QStringLiteral("存入")}});
    }
    static int cashRows(Database &db) { return scalar(db, QStringLiteral("select count(*) from 资金表")).toInt(); }
    static int cashRows(const QString &path)
    {
        Database db = Database::open(path, 1, false, kConnect);
        return cashRows(db);
    }

    TestFolder folder;
    QDateTime clock = kRunTime;
};

TEST_F(BackupTest, FirstWriteCopiesTheJournalAsItWasAndLaterWritesDoNot)
{
    // Writing another file first does not use up the run's backup.
    ASSERT_TRUE(QFile::copy(folder.databasePath(), folder.file(QStringLiteral("other.mdb"))));
    Database other = Database::open(folder.file(QStringLiteral("other.mdb")), 1, false, kConnect);
    addCash(other, 5);
    EXPECT_TRUE(backups().isEmpty());

    Database db = openUserDatabase();
    addCash(db, 100);
    ASSERT_EQ(backups(), QStringList{QStringLiteral("user2-20261122-213005.mdb")});
    const QString copy = backupPath(backups().first());
    EXPECT_EQ(std::make_tuple(fileBytes(copy).startsWith("SQLite format 3"), cashRows(copy)), std::make_tuple(false, 0)); // still encrypted

    // More writes in the same run, on this and on a second handle, add no copy.
    clock = kRunTime.addSecs(60);
    addCash(db, 200);
    Recordset rs = openUserDatabase().openRecordset(QStringLiteral("select * from 资金表"));
    rs.Delete();
    EXPECT_EQ(std::make_tuple(backups().size(), cashRows(db), cashRows(copy)), std::make_tuple(1, 1, 0));
}

TEST_F(BackupTest, DeleteAndExecuteAreWritesToo)
{
    Database db = openUserDatabase();
    addCash(db, 100);
    QDir(folder.file(QStringLiteral("backup"))).removeRecursively();

    resetBackupState();
    Recordset rs = db.openRecordset(QStringLiteral("select * from 资金表"));
    rs.Delete();
    ASSERT_EQ(backups().size(), 1);
    EXPECT_EQ(std::make_tuple(cashRows(backupPath(backups().first())), cashRows(db)), std::make_tuple(1, 0)); // the copy has the row before its deletion

    // A refused select copies nothing; an insert is a write.
    resetBackupState();
    clock = kRunTime.addSecs(1);
    EXPECT_NE(errorOf([&] { db.execute(QStringLiteral("select * from user")); }), 0);
    EXPECT_EQ(backups().size(), 1);
    db.execute(QStringLiteral("insert into 税率表 select * from 税率表"));
    EXPECT_EQ(backups().size(), 2);
}

TEST_F(BackupTest, CopiesKeepTheJournalsModeAndPruneByAgeOnDisk)
{
    // Ten copies made while the clock was set years ahead, then one now;
    // files of other names in the folder are left alone.
    ASSERT_TRUE(QFile::setPermissions(folder.databasePath(), QFile::ReadOwner | QFile::WriteOwner));
    QDir().mkpath(folder.file(QStringLiteral("backup")));
    writeFile(backupPath(QStringLiteral("notes.txt")), "mine");
    writeFile(backupPath(QStringLiteral("user2.mdb")), "mine");
    for (int run = 0; run <= kBackupsKept; ++run) {
        resetBackupState();
        clock = run < kBackupsKept ? kRunTime.addYears(4).addDays(run) : kRunTime;
        Database db = openUserDatabase();
        addCash(db, run);
        if (run < kBackupsKept) // dated on disk as named
            QFile(backupPath(QStringLiteral("user2-%1.mdb").arg(clock.toString(QStringLiteral("yyyyMMdd-hhmmss")))))
                .setFileTime(clock, QFileDevice::FileModificationTime);
    }
    QStringList copies = backups();
    EXPECT_TRUE(copies.removeOne(QStringLiteral("notes.txt")) && copies.removeOne(QStringLiteral("user2.mdb")));
    ASSERT_EQ(copies.size(), kBackupsKept);
    // The copy just made stays; the oldest on disk went.
    EXPECT_EQ(copies.mid(0, 2), (QStringList{"user2-20261122-213005.mdb", "user2-20301123-213005.mdb"}));
    // Owner, group and other bits: 0600 like the journal, the folder 0700.
    EXPECT_EQ(std::make_tuple(int(QFile::permissions(backupPath(copies.first()))) & 0x7077, int(QFile::permissions(folder.file(QStringLiteral("backup")))) & 0x7077),
              std::make_tuple(0x6000, 0x7000));
}

TEST_F(BackupTest, CopiesWithinOneSecondGetNumberedAndPruneInOrder)
{
    for (int run = 0; run < 3; ++run) {
        resetBackupState();
        Database db = openUserDatabase();
        addCash(db, run);
    }
    pruneBackups(folder.file(QStringLiteral("backup")), 2); // the unnumbered first copy is the oldest
    EXPECT_EQ(backups(), (QStringList{"user2-20261122-213005-2.mdb", "user2-20261122-213005-3.mdb"}));
    EXPECT_EQ(cashRows(backupPath(QStringLiteral("user2-20261122-213005-3.mdb"))), 2);
}

TEST_F(BackupTest, AFailingBackupIsReportedAndTheWriteGoesOn)
{
    // A plain file where the folder should be: the folder cannot be made.
    writeFile(folder.file(QStringLiteral("backup")), "not a folder");
    Database db = openUserDatabase();
    testing::internal::CaptureStderr();
    addCash(db, 100);
    addCash(db, 200);
    const QString err = QString::fromStdString(testing::internal::GetCapturedStderr());
    EXPECT_EQ(cashRows(db), 2);
    EXPECT_EQ(err.count(QStringLiteral("数据库备份失败")), 1) << err.toStdString(); // not retried
    EXPECT_TRUE(err.contains(folder.file(QStringLiteral("backup")))) << err.toStdString();

    // A copy that cannot be written (its temporary name is a folder) leaves no file.
    QFile::remove(folder.file(QStringLiteral("backup")));
    QDir().mkpath(backupPath(QStringLiteral("user2-20261122-213005.mdb.part/blocked")));
    resetBackupState();
    testing::internal::CaptureStderr();
    addCash(db, 300);
    const QString err2 = QString::fromStdString(testing::internal::GetCapturedStderr());
    EXPECT_EQ(std::make_tuple(err2.contains(QStringLiteral("数据库备份失败")), backups()), std::make_tuple(true, QStringList())) << err2.toStdString();
}

} // namespace
