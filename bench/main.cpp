// Runs every registered benchmark, or those whose name contains an argument.
#include "Bench.h"

#include <QApplication>
#include <QFile>

#include <algorithm>
#include <cstdio>
#include <map>
#include <string>

namespace bench {

namespace {
std::map<std::string, std::function<void()>> &registry()
{
    static std::map<std::string, std::function<void()>> r;
    return r;
}
} // namespace

Registration::Registration(const char *name, std::function<void()> run)
{
    registry()[name] = std::move(run);
}

void figure(const QString &name, double value, const QString &unit)
{
    std::printf("%s %.3f %s\n", qPrintable(name), value, qPrintable(unit));
    std::fflush(stdout);
}

double median(std::vector<double> samples)
{
    if (samples.empty())
        return 0;
    std::sort(samples.begin(), samples.end());
    const size_t n = samples.size();
    return n % 2 ? samples[n / 2] : (samples[n / 2 - 1] + samples[n / 2]) / 2;
}

double residentMb()
{
    QFile f(QStringLiteral("/proc/self/status"));
    if (!f.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray &line : f.readAll().split('\n'))
        if (line.startsWith("VmRSS:"))
            return line.mid(6).trimmed().split(' ').first().toDouble() / 1024.0;
    return 0;
}

} // namespace bench

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    for (auto &[name, run] : bench::registry()) {
        bool wanted = argc < 2;
        for (int i = 1; i < argc; ++i)
            if (name.find(argv[i]) != std::string::npos)
                wanted = true;
        if (wanted)
            run();
    }
    return 0;
}
