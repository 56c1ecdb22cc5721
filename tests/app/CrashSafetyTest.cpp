// A writer process stores trades and cash movements through the entry code
// and is cut off at random moments by a simulated power loss that also
// decides which unsynced writes reached the disk. Afterwards
// the file passes the engine's integrity check, every store that had returned
// is there, no row is partial, and the program starts again.
#include "support/PowerLossVfs.h"
#include "support/Helpers.h"

#include "platform/frmBefor.h"
#include "store/Backup.h"
#include "store/Schema.h"
#include "accounts/frmLogin.h"

#include <QMap>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QSet>

#ifndef CRASH_WRITER
#error "CRASH_WRITER must name the writer executable"
#endif

namespace {

// Power losses in every test run; TESSALY_POWER_LOSS_ROUNDS sets another count.
constexpr int kPowerLossRounds = 50;
constexpr int kStoresPerRound = 2; // each a trade and a cash movement

// What the writers acknowledged: trade n has code n, cash movement n amount n.
struct Acknowledged {
    QSet<int> trades, cash;
    int next = 0;       // first number of the next writer
    int unanswered = 0; // writers that may have left one store unacknowledged
    QByteArray powerLoss; // the writer's "P" line, without the P

    void read(const QByteArray &output)
    {
        int highest = next;
        powerLoss.clear();
        for (const QByteArray &line : output.split('\n')) {
            const qsizetype space = line.indexOf(' ');
            if (line.startsWith("P "))
                powerLoss = line.mid(2);
            if (space != 1 || (line[0] != 'T' && line[0] != 'C'))
                continue;
            const int n = line.mid(2).toInt();
            (line[0] == 'T' ? trades : cash).insert(n);
            highest = std::max(highest, n + 1);
        }
        next = highest + 1; // leaves a gap for a store that may have landed unacknowledged
        ++unanswered;
    }
};

QSet<int> numbers(store::Database &db, const QString &sql)
{
    QSet<int> found;
    for (store::Recordset rs = db.openRecordset(sql); !rs.EOF_(); rs.MoveNext())
        found.insert(rs.field(0).toInt());
    return found;
}

// The journal after the writers: whole, holding every acknowledged store and
// at most one more per writer, with no partial row.
void expectJournalKeeps(const Acknowledged &ack)
{
    store::Database db = store::openUserDatabase();
    store::Recordset check = db.openRecordset(QStringLiteral("pragma integrity_check"));
    EXPECT_EQ(check.field(0).toString(), "ok");
    const QSet<int> trades = numbers(db, QStringLiteral("select 股票代码 from havewhat"));
    const QSet<int> cash = numbers(db, QStringLiteral("select 资金数量 from 资金表"));
    EXPECT_TRUE(trades.contains(ack.trades)) << "acknowledged trades lost";
    EXPECT_TRUE(cash.contains(ack.cash)) << "acknowledged cash movements lost";
    store::Recordset rows = db.openRecordset(QStringLiteral(
        "select (select count(*) from havewhat), (select count(*) from 资金表), "
        "(select count(*) from havewhat where userid is null or 股票代码 is null or 股票名称 is null or 成交日期 "
        "is null or 成交价格 is null or 成交股数 is null or 交易费率 is null or 操作记录 is null or 操作原因 is null)"
        " + (select count(*) from 资金表 where userid is null or 操作日期 is null or 资金数量 is null or 操作原因 is "
        "null or 操作表示 is null)"));
    EXPECT_EQ(rows.field(0).toInt(), trades.size()) << "a trade stored twice";
    EXPECT_EQ(rows.field(1).toInt(), cash.size()) << "a cash movement stored twice";
    EXPECT_LE(trades.size() + cash.size(), ack.trades.size() + ack.cash.size() + ack.unanswered);
    EXPECT_EQ(rows.field(2).toInt(), 0) << "partial rows";
}

// The program's next start: its login window opens the journal and removes
// unfinished backups, a login reaches the main window, which loads the
// writer's entries. Every backup copy left is a whole, readable journal.
void expectNextStartWorks(QSet<QString> &checkedCopies)
{
    store::resetBackupState();
    frmLogin login;
    QSignalSpy loggedIn(&login, &frmLogin::loggedIn);
    login.show();
    login.findChild<QLineEdit *>(QStringLiteral("txtUserName"))->setText(store::kAdminName);
    login.findChild<QLineEdit *>(QStringLiteral("txtPassword"))->setText(store::kAdminPassword);
    login.findChild<QPushButton *>(QStringLiteral("cmdOK"))->click();
    ASSERT_EQ(loggedIn.count(), 1);
    frmBefor main;
    main.GetMame(QStringLiteral("CRASH"), QStringLiteral("user"));
    main.load();

    static const QRegularExpression copyName(QStringLiteral("^user2-\\d{8}-\\d{6}(-\\d+)?\\.mdb$"));
    const QString backups = store::backupFolder();
    for (const QString &name : QDir(backups).entryList(QDir::Files | QDir::Hidden)) {
        EXPECT_TRUE(copyName.match(name).hasMatch()) << "left in the backup folder: " << qPrintable(name);
        if (checkedCopies.contains(name))
            continue;
        checkedCopies.insert(name);
        store::Database copy = store::Database::open(backups + u'/' + name, 0, true, store::kConnect);
        EXPECT_EQ(copy.openRecordset(QStringLiteral("pragma integrity_check")).field(0).toString(), "ok") << qPrintable(name);
    }
}

} // namespace

TEST(CrashSafety, PowerLossesLoseNothingThatWasAcknowledgedAndLeaveNoHalfBackup)
{
    const int rounds = qEnvironmentVariableIsSet("TESSALY_POWER_LOSS_ROUNDS")
                           ? qEnvironmentVariableIntValue("TESSALY_POWER_LOSS_ROUNDS")
                           : kPowerLossRounds;
    TestFolder folder;
    Acknowledged ack;
    QSet<QString> checkedCopies;
    QMap<QByteArray, int> moments; // where the power failed, by the layer's words
    QRandomGenerator rng(20261123);
    qint64 operations = 0; // of the last writer that ran to its end
    int exitCode = 0;
    const auto run = [&](qint64 crashAt) {
        QProcess writer;
        writer.start(QStringLiteral(CRASH_WRITER),
                     {folder.path(), QString::number(ack.next), QString::number(crashAt),
                      QString::number(rng.generate()), QString::number(kStoresPerRound)});
        writer.waitForFinished(-1);
        exitCode = writer.exitStatus() == QProcess::NormalExit ? writer.exitCode() : -1;
        const QByteArray output = writer.readAllStandardOutput();
        for (const QByteArray &line : output.split('\n'))
            if (line.startsWith("O "))
                operations = line.mid(2).toLongLong();
        ack.read(output);
    };
    run(0); // a writer without power loss tells how many operations one makes
    ASSERT_EQ(exitCode, 0);
    ASSERT_GT(operations, 0);

    int round = 0;
    for (; round < rounds && !::testing::Test::HasFailure(); ++round) {
        // One random moment in each slice of a writer's operations, a tenth
        // of them beyond its last one: a writer that finishes.
        run(1 + qint64((round + rng.generateDouble()) / rounds * double(operations + operations / 10)));
        if (exitCode == powerloss::kPowerLossExit) {
            ASSERT_FALSE(ack.powerLoss.isEmpty());
            for (const QByteArray &word : ack.powerLoss.split(' '))
                ++moments[word];
            ++moments["power losses"];
        } else {
            ASSERT_EQ(exitCode, 0);
        }
        expectJournalKeeps(ack);
        expectNextStartWorks(checkedCopies);
    }
    std::printf("power loss: %d rounds, %lld acknowledged trades, %lld acknowledged cash movements, %lld backup "
                "copies checked;",
                round, static_cast<long long>(ack.trades.size()), static_cast<long long>(ack.cash.size()),
                static_cast<long long>(checkedCopies.size()));
    for (auto it = moments.cbegin(); it != moments.cend(); ++it)
        std::printf(" %s %d", it.key().constData(), it.value());
    std::printf("\n");
    if (rounds < kPowerLossRounds)
        return;
    for (const char *moment : {"backup", "journal", "database", "mid-sector"})
        EXPECT_GT(moments.value(moment), 0) << "no power loss at a moment of kind " << moment;
}
