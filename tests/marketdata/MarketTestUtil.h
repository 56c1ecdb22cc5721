#pragma once
// Fixture helpers of the market-data tests: a temporary data folder,
// byte-level builders of the package files (written independently of the
// readers), and one call form for every reader.

#include "base/RuntimeError.h"
#include "marketdata/Readers.h"
#include "marketdata/StockBar.h"

#include <QByteArray>
#include <QDate>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QtEndian>

#include <cstdint>
#include <functional>
#include <vector>

namespace mdtest {

using namespace marketdata;

// The out arguments of a reader; -7 marks "not written".
struct Out {
    int16_t count = -7;
    float minLow = -7, maxHigh = -7;
    int32_t minLowDate = -7, maxHighDate = -7;
    bool untouched() const
    {
        return count == -7 && minLow == -7 && maxHigh == -7 && minLowDate == -7 && maxHighDate == -7;
    }
};

using ReaderFn = void (*)(const QString &, const QString &, int16_t, int32_t, int32_t, BarArray &, int16_t &,
                          float &, float &, int32_t &, int32_t &);

inline Out readBars(ReaderFn fn, const QString &dir, const QString &code, int16_t period, BarArray &bars,
                    int32_t from = 0, int32_t to = 0)
{
    Out o;
    fn(dir, code, period, from, to, bars, o.count, o.minLow, o.maxHigh, o.minLowDate, o.maxHighDate);
    return o;
}

// Number of the runtime error `f` raises, 0 when it raises none.
inline int errorOf(const std::function<void()> &f)
{
    try {
        f();
    } catch (const base::RuntimeError &e) {
        return e.number();
    }
    return 0;
}

inline const char *kRealData = "/work/shared/testdata/real/";

inline QByteArray realFile(const char *name)
{
    QFile f(QString::fromLatin1(kRealData) + QLatin1String(name));
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

class DataFolder {
public:
    QString path() const { return m_dir.path(); }
    // Writes `bytes` at `relative` ("/" separated) under the folder.
    void write(const QString &relative, const QByteArray &bytes) const
    {
        const QString full = m_dir.path() + u'/' + relative;
        QDir().mkpath(QFileInfo(full).absolutePath());
        QFile f(full);
        f.open(QIODevice::WriteOnly | QIODevice::Truncate);
        f.write(bytes);
    }

private:
    QTemporaryDir m_dir;
};

inline void put32(QByteArray &b, int at, int32_t v)
{
    qToLittleEndian<int32_t>(v, b.data() + at);
}

// A 40-byte record with the fields in file order: date, then the five next
// 32-bit values (for 钱龙 open, high, low, close x1000, amount, volume; for
// 胜龙 open, close, high, low x1000, amount, volume).
inline QByteArray rec40(int32_t date, int32_t a, int32_t b, int32_t c, int32_t d, int32_t amount, int32_t volume)
{
    QByteArray r(40, '\0');
    put32(r, 0, date);
    put32(r, 4, a);
    put32(r, 8, b);
    put32(r, 12, c);
    put32(r, 16, d);
    put32(r, 20, amount);
    put32(r, 24, volume);
    return r;
}

// 钱龙 record of a bar given in yuan.
inline QByteArray qlRec(int32_t date, double open, double high, double low, double close, int32_t amount = 0,
                        int32_t volume = 0)
{
    auto m = [](double v) { return static_cast<int32_t>(v * 1000 + (v < 0 ? -0.5 : 0.5)); };
    return rec40(date, m(open), m(high), m(low), m(close), amount, volume);
}

// 分析家 day.dat ------------------------------------------------------------

struct FxjRecord {
    int32_t time;
    float open, high, low, close, volume, amount;
};

struct FxjStock {
    QByteArray code;               // up to 10 bytes
    std::vector<FxjRecord> records;
    int recordCount = -1;          // R in the index; -1: the number of records
};

inline QByteArray fxjFile(const std::vector<FxjStock> &stocks)
{
    const int entries = static_cast<int>(stocks.size());
    const int indexEnd = 24 + 64 * entries;
    const int blockBase = 8 + (indexEnd + 511) / 512;
    const int dataStart = (blockBase - 8) * 512;
    QByteArray out(dataStart, '\0');
    put32(out, 4, blockBase);
    put32(out, 12, entries - 1);
    int nextBlock = 0;
    QByteArray data;
    for (int i = 0; i < entries; ++i) {
        const FxjStock &s = stocks[size_t(i)];
        char *e = out.data() + 24 + 64 * i;
        memcpy(e, s.code.constData(), size_t(std::min<qsizetype>(10, s.code.size())));
        qToLittleEndian<int16_t>(int16_t(s.recordCount < 0 ? int(s.records.size()) : s.recordCount), e + 10);
        const int blocks = int((s.records.size() + 255) / 256);
        for (int j = 0; j < 25; ++j)
            qToLittleEndian<uint16_t>(j < blocks ? uint16_t(nextBlock + j) : uint16_t(65535), e + 14 + 2 * j);
        QByteArray area(blocks * 8192, '\0');
        for (size_t r = 0; r < s.records.size(); ++r) {
            char *p = area.data() + 32 * r;
            const FxjRecord &x = s.records[r];
            qToLittleEndian<int32_t>(x.time, p);
            const float f[6] = {x.open, x.high, x.low, x.close, x.volume, x.amount};
            for (int k = 0; k < 6; ++k)
                qToLittleEndian<float>(f[k], p + 4 + 4 * k);
        }
        data += area;
        nextBlock += blocks;
    }
    return out + data;
}

// Seconds since 1970 of midnight in Beijing (16:00 UTC the day before), as
// the package stamps its days.
inline int32_t beijingMidnight(int y, int m, int d)
{
    return static_cast<int32_t>(QDate(y, m, d).startOfDay(Qt::UTC).toSecsSinceEpoch() - 8 * 3600);
}

} // namespace mdtest
