// Opening a handle on the journal: the first open of the process derives the
// file key; every later one must be quick.

#include "Bench.h"

#include "base/Paths.h"
#include "store/Database.h"
#include "store/Schema.h"

#include <QElapsedTimer>
#include <QTemporaryDir>

#include <vector>

TESSALY_BENCH(db_open)
{
    QTemporaryDir dir;
    const QString previous = base::programFolder();
    base::setProgramFolder(dir.path());
    store::createJournal(dir.path() + QStringLiteral("/user2.mdb"));

    QElapsedTimer timer;
    timer.start();
    store::openUserDatabase().close();
    bench::figure(QStringLiteral("db_first_open_ms"), double(timer.nsecsElapsed()) / 1e6, QStringLiteral("ms"));

    std::vector<double> samples;
    for (int i = 0; i < 200; ++i) {
        timer.restart();
        store::Database db = store::openUserDatabase();
        samples.push_back(double(timer.nsecsElapsed()) / 1e6);
        db.close();
    }
    bench::figure(QStringLiteral("db_open_ms"), bench::median(samples), QStringLiteral("ms"));

    // A typical read on an open handle: the account lookup of the login.
    store::Database db = store::openUserDatabase();
    samples.clear();
    for (int i = 0; i < 200; ++i) {
        timer.restart();
        store::Recordset rs = db.openRecordset(QStringLiteral("select * from user where username='SUPERVISOR'"));
        samples.push_back(double(timer.nsecsElapsed()) / 1e6);
    }
    bench::figure(QStringLiteral("db_lookup_ms"), bench::median(samples), QStringLiteral("ms"));
    db.close();
    base::setProgramFolder(previous);
}
