// Start-up: from starting the program to its login window on the screen,
// beside the same for a bare Qt Widgets dialog with as many controls
// (tessaly-floor), measured in the same run. Each program is copied with a
// fresh journal into a temporary program folder and started with
// TESSALY_REPORT_SHOWN=1, which makes the program print "login-shown" after
// the login window's first paint; the two are started in turn, so that the
// load of the machine weighs on both alike.
#include "Bench.h"

#include "store/Schema.h"

#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QProcessEnvironment>
#include <QTemporaryDir>

#include <cstdio>
#include <vector>

namespace {

constexpr int kRuns = 20;
constexpr int kTimeoutMs = 10000;

// Milliseconds from start to the marker line, or a negative value when the
// program ended or stayed silent.
double timeOneStart(const QString &program, const QProcessEnvironment &env)
{
    QProcess p;
    p.setProcessEnvironment(env);
    p.setProcessChannelMode(QProcess::SeparateChannels);
    QElapsedTimer t;
    t.start();
    p.start(program, {});
    QByteArray out;
    double elapsed = -1;
    while (t.elapsed() < kTimeoutMs) {
        if (!p.waitForReadyRead(kTimeoutMs - int(t.elapsed())))
            break;
        out += p.readAllStandardOutput();
        if (out.contains("login-shown\n")) {
            elapsed = t.nsecsElapsed() / 1e6;
            break;
        }
    }
    p.kill();
    p.waitForFinished(kTimeoutMs);
    return elapsed;
}

} // namespace

TESSALY_BENCH(startup)
{
    QTemporaryDir folder;
    const QString programs[] = {folder.path() + QStringLiteral("/tessaly"),
                                folder.path() + QStringLiteral("/tessaly-floor")};
    const char *const built[] = {TESSALY_EXECUTABLE, TESSALY_FLOOR_EXECUTABLE};
    for (int i = 0; i < 2; ++i)
        if (!QFile::copy(QString::fromUtf8(built[i]), programs[i])) {
            std::fprintf(stderr, "startup bench: cannot copy %s\n", built[i]);
            return;
        }
    store::createJournal(folder.path() + QStringLiteral("/user2.mdb"));

    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    env.insert(QStringLiteral("TESSALY_REPORT_SHOWN"), QStringLiteral("1"));

    std::vector<double> samples[2];
    for (int run = 0; run < kRuns; ++run)
        for (int i = 0; i < 2; ++i) {
            const double ms = timeOneStart(programs[i], env);
            if (ms < 0) {
                std::fprintf(stderr, "startup bench: no window from %s within %d ms\n", built[i], kTimeoutMs);
                return;
            }
            samples[i].push_back(ms);
        }
    const double login = bench::median(samples[0]);
    const double floor = bench::median(samples[1]);
    bench::figure(QStringLiteral("startup_login_ms"), login, QStringLiteral("ms"));
    bench::figure(QStringLiteral("startup_floor_ms"), floor, QStringLiteral("ms"));
    bench::figure(QStringLiteral("startup_ratio"), login / floor, QStringLiteral("x"));
}
