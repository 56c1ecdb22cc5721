// Kills a process that is storing trades and cash movements at random moments
// and checks what it leaves behind: the file passes the engine's integrity
// check, every store that had returned is there, and no row is partial.
#include "support/TestFolder.h"
#include "store/Database.h"

#include <QProcess>
#include <QRandomGenerator>
#include <QSet>
#include <QThread>
#include <gtest/gtest.h>

#ifndef CRASH_WRITER
#error "CRASH_WRITER must name the writer executable"
#endif

namespace {

constexpr int kRounds = 60;

int count(store::Database &db, const QString &sql)
{
    store::Recordset rs = db.openRecordset(sql);
    return rs.field(0).toInt();
}

} // namespace

TEST(CrashSafety, KilledWritersLoseNothingThatWasAcknowledgedAndLeaveNoPartialRow)
{
    TestFolder folder;
    QSet<int> trades, cash;
    int next = 0;
    QRandomGenerator rng(20261122);
    int killedMidRun = 0;

    for (int round = 0; round < kRounds; ++round) {
        QProcess writer;
        writer.start(QStringLiteral(CRASH_WRITER), {folder.path(), QString::number(next)});
        ASSERT_TRUE(writer.waitForStarted());
        // Let it get going, then kill it at a random moment.
        writer.waitForReadyRead(10000);
        QThread::usleep(rng.bounded(0, 40000));
        if (writer.state() == QProcess::Running)
            ++killedMidRun;
        writer.kill(); // SIGKILL
        writer.waitForFinished();
        const QList<QByteArray> lines = writer.readAllStandardOutput().split('\n');
        int highest = next;
        for (const QByteArray &line : lines) {
            const QList<QByteArray> parts = line.split(' ');
            if (parts.size() != 2)
                continue;
            const int n = parts[1].toInt();
            (parts[0] == "T" ? trades : cash).insert(n);
            highest = std::max(highest, n + 1);
        }
        next = highest + 1; // leave a gap for a store that may have landed unacknowledged
    }
    EXPECT_EQ(killedMidRun, kRounds);
    ASSERT_GT(trades.size(), kRounds);

    store::Database db = store::openUserDatabase();
    {
        store::Recordset rs = db.openRecordset(QStringLiteral("pragma integrity_check"));
        EXPECT_EQ(rs.field(0).toString(), "ok");
    }
    for (int n : trades) {
        const QString code = QStringLiteral("%1").arg(n, 6, 10, QLatin1Char('0'));
        EXPECT_EQ(count(db, QStringLiteral("select count(*) from havewhat where 股票代码='") + code + "'"), 1) << n;
    }
    for (int n : cash)
        EXPECT_EQ(count(db, QStringLiteral("select count(*) from 资金表 where 资金数量=") + QString::number(n)), 1)
            << n;

    // At most one unacknowledged store per round, and every row whole.
    const int tradeRows = count(db, QStringLiteral("select count(*) from havewhat"));
    const int cashRows = count(db, QStringLiteral("select count(*) from 资金表"));
    EXPECT_GE(tradeRows, trades.size());
    EXPECT_LE(tradeRows + cashRows, trades.size() + cash.size() + kRounds);
    EXPECT_EQ(count(db, QStringLiteral("select count(*) from havewhat where userid is null or 股票代码 is null or "
                                       "股票名称 is null or 成交日期 is null or 成交价格 is null or 成交股数 is null "
                                       "or 交易费率 is null or 操作记录 is null or 操作原因 is null")),
              0);
    EXPECT_EQ(count(db, QStringLiteral("select count(*) from 资金表 where userid is null or 操作日期 is null or "
                                       "资金数量 is null or 操作原因 is null or 操作表示 is null")),
              0);
    std::printf("crash safety: %d rounds, %lld acknowledged trades, %lld acknowledged cash movements, "
                "%d trade rows, %d cash rows\n",
                kRounds, static_cast<long long>(trades.size()), static_cast<long long>(cash.size()), tradeRows,
                cashRows);
}
