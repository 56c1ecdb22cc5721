#pragma once
// tessaly-bench: each benchmark registers itself and prints its figures as
// "name value unit", one a line, so that a script can read them.

#include <QString>

#include <functional>
#include <vector>

namespace bench {

void figure(const QString &name, double value, const QString &unit);

// Median of the samples (milliseconds or whatever they hold).
double median(std::vector<double> samples);

struct Registration {
    Registration(const char *name, std::function<void()> run);
};

} // namespace bench

#define TESSALY_BENCH(id) \
    static void bench_##id(); \
    static const ::bench::Registration reg_##id(#id, bench_##id); \
    static void bench_##id()
