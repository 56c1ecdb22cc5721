#pragma once
// tessaly-bench: each benchmark registers itself and prints its figures as
// "name value unit", one a line, so that a script can read them.

#include <QApplication>
#include <QElapsedTimer>
#include <QString>

#include <functional>
#include <vector>

namespace bench {

void figure(const QString &name, double value, const QString &unit);

// Median of the samples (milliseconds or whatever they hold).
double median(std::vector<double> samples);

// Resident memory of this process in MB, from /proc/self/status.
double residentMb();

// Median time of opening a window (load and fill) until it has been painted.
template <typename Window, typename Setup>
double timeWindow(Setup setup, int runs = 5)
{
    std::vector<double> samples;
    for (int run = 0; run < runs; ++run) {
        QElapsedTimer t;
        t.start();
        Window w;
        setup(w);
        w.show();
        QApplication::processEvents();
        samples.push_back(t.nsecsElapsed() / 1e6);
        w.close();
    }
    return median(samples);
}

struct Registration {
    Registration(const char *name, std::function<void()> run);
};

} // namespace bench

#define TESSALY_BENCH(id) \
    static void bench_##id(); \
    static const ::bench::Registration reg_##id(#id, bench_##id); \
    static void bench_##id()
