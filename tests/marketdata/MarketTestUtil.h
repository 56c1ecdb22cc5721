#pragma once
// Market-data test helpers: a temporary data folder, byte-level builders of
// the package files (independent of the readers), one call form per reader.

#include "support/Helpers.h"
#include "marketdata/Readers.h"

#include <QtEndian>

namespace mdtest {

using namespace marketdata;

inline QByteArray realFile(const char *name) { return fileBytes(QStringLiteral(TESSALY_TEST_DATA "/real/") + QLatin1String(name)); }

struct DataFolder {
    QTemporaryDir dir;
    QString path() const { return dir.path(); }
    void write(const QString &relative, const QByteArray &bytes) const // relative: "/" separated
    {
        const QString full = dir.path() + u'/' + relative;
        QDir().mkpath(QFileInfo(full).absolutePath());
        writeFile(full, bytes);
    }
};

// A reader's result; -7 everywhere when no file was read.
struct Out : BarRead {
    Out(const std::optional<BarRead> &r) : BarRead(r.value_or(BarRead{-7, -7, -7, -7, -7})) {}
    bool untouched() const { return count == -7 && minLow == -7 && maxHigh == -7 && minLowDate + maxHighDate == -14; }
};

using ReaderFn = std::optional<BarRead> (*)(const BarRequest &, BarArray &);

inline Out readBars(ReaderFn fn, const QString &dir, const QString &code, int16_t period, BarArray &bars,
                    int32_t from = 0, int32_t to = 0)
{
    return fn({dir, code, period, from, to}, bars);
}

inline void put32(QByteArray &b, int at, int32_t v) { qToLittleEndian<int32_t>(v, b.data() + at); }

// A 40-byte record: the date, then six 32-bit values in file order (钱龙:
// open, high, low, close x1000, amount, volume; 胜龙: open, close, high, low).
inline QByteArray rec40(int32_t date, int32_t a, int32_t b, int32_t c, int32_t d, int32_t amount, int32_t volume)
{
    QByteArray r(40, '\0');
    for (int i = 0; const int32_t v : {date, a, b, c, d, amount, volume})
        put32(r, 4 * i++, v);
    return r;
}

// 钱龙 record of a bar given in yuan (positive prices).
inline QByteArray qlRec(int32_t date, double open, double high, double low, double close, int32_t amount = 0,
                        int32_t volume = 0)
{
    auto m = [](double v) { return static_cast<int32_t>(v * 1000 + 0.5); };
    return rec40(date, m(open), m(high), m(low), m(close), amount, volume);
}

// A 32-byte 通达信 record: date, open, high, low, close as stored (whole
// hundredths or thousandths), amount as a float, volume, 4 reserved bytes.
inline QByteArray tdxRec(uint32_t date, uint32_t open, uint32_t high, uint32_t low, uint32_t close, float amount = 0,
                         uint32_t volume = 0)
{
    QByteArray r(32, '\x5a');
    for (int i = 0; const uint32_t v : {date, open, high, low, close})
        qToLittleEndian<uint32_t>(v, r.data() + 4 * i++);
    qToLittleEndian<float>(amount, r.data() + 20);
    qToLittleEndian<uint32_t>(volume, r.data() + 24);
    return r;
}

// 分析家 day.dat: a header, 64-byte index entries (code, record count R, 25
// block numbers), then 8192-byte blocks of 32-byte records.
struct FxjRecord {
    int32_t time;
    float open, high, low, close, volume, amount;
};

struct FxjStock {
    QByteArray code;      // up to 10 bytes
    std::vector<FxjRecord> records;
    int recordCount = -1; // R in the index; -1: the number of records
};

inline QByteArray fxjFile(const std::vector<FxjStock> &stocks)
{
    const int entries = static_cast<int>(stocks.size());
    const int blockBase = 8 + (24 + 64 * entries + 511) / 512;
    QByteArray out((blockBase - 8) * 512, '\0');
    put32(out, 4, blockBase);
    put32(out, 12, entries - 1);
    int nextBlock = 0;
    for (int i = 0; i < entries; ++i) {
        const FxjStock &s = stocks[size_t(i)];
        char *e = out.data() + 24 + 64 * i;
        memcpy(e, s.code.constData(), size_t(std::min<qsizetype>(10, s.code.size())));
        qToLittleEndian<int16_t>(int16_t(s.recordCount < 0 ? int(s.records.size()) : s.recordCount), e + 10);
        const int blocks = int((s.records.size() + 255) / 256);
        for (int j = 0; j < 25; ++j)
            qToLittleEndian<uint16_t>(j < blocks ? uint16_t(nextBlock + j) : uint16_t(65535), e + 14 + 2 * j);
        nextBlock += blocks;
    }
    for (const FxjStock &s : stocks) {
        QByteArray area(int((s.records.size() + 255) / 256) * 8192, '\0');
        for (size_t r = 0; r < s.records.size(); ++r) {
            const FxjRecord &x = s.records[r];
            qToLittleEndian<int32_t>(x.time, area.data() + 32 * r);
            const float f[6] = {x.open, x.high, x.low, x.close, x.volume, x.amount};
            for (int k = 0; k < 6; ++k)
                qToLittleEndian<float>(f[k], area.data() + 32 * r + 4 + 4 * k);
        }
        out += area;
    }
    return out;
}

// Seconds since 1970 of midnight in Beijing, as the package stamps its days.
inline int32_t beijingMidnight(int y, int m, int d)
{
    return static_cast<int32_t>(QDate(y, m, d).startOfDay(Qt::UTC).toSecsSinceEpoch() - 8 * 3600);
}

} // namespace mdtest
