// Start-up: from starting the program to its login window on the screen.
// The built program is copied with a fresh journal into a temporary program
// folder and started with TESSALY_REPORT_SHOWN=1, which makes it print
// "login-shown" after the login window's first paint.
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
    const QString program = folder.path() + QStringLiteral("/tessaly");
    if (!QFile::copy(QStringLiteral(TESSALY_EXECUTABLE), program)) {
        std::fprintf(stderr, "startup bench: cannot copy %s\n", TESSALY_EXECUTABLE);
        return;
    }
    store::createJournal(folder.path() + QStringLiteral("/user2.mdb"));

    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    env.insert(QStringLiteral("TESSALY_REPORT_SHOWN"), QStringLiteral("1"));

    std::vector<double> samples;
    for (int run = 0; run < kRuns; ++run) {
        const double ms = timeOneStart(program, env);
        if (ms < 0) {
            std::fprintf(stderr, "startup bench: no login window within %d ms\n", kTimeoutMs);
            return;
        }
        samples.push_back(ms);
    }
    bench::figure(QStringLiteral("startup_login_ms"), bench::median(samples), QStringLiteral("ms"));
}
