// The 钱龙 and 胜龙 readers: 40-byte records, one file per stock and period.
// Both run the same loop; what differs (folders, extensions, field offsets,
// absolute values, the index-code table) sits in one layout table each.

#include "BarFile.h"
#include "MarketCodes.h"
#include "MarketSettings.h"
#include "Readers.h"

#include "base/Numbers.h"
#include "base/RuntimeError.h"

#include <cmath>
#include <cstdlib>
#include <limits>
#include <optional>

namespace marketdata {

namespace {

constexpr int kRecordSize = 40;

constexpr const char *kQianlongShanghai[] = {"60", "50", "90", "1A", "1B", "1C", "80", "81", "82"};
// The 胜龙 reader and BuildCurrentBar know no "80".."82" codes.
constexpr const char *kShanghaiStocks[] = {"60", "50", "90", "1A", "1B", "1C"};

struct BinaryLayout {
    const char *source; // handed to BuildCurrentBar
    const char *shanghaiDirs[4];
    const char *shenzhenDirs[4];
    const char *extensions[4];
    std::span<const char *const> shanghaiPrefixes;
    bool indexTable; // Shanghai index codes map to other file names
    bool absolute;   // every field taken by its absolute value
    int closeOffset, highOffset, lowOffset;
};

constexpr BinaryLayout kQianlong{
    "钱龙",
    {"\\data\\shase\\day\\", "\\data\\shase\\week\\", "\\data\\shase\\month\\", "\\data\\shase\\min\\"},
    {"\\data\\sznse\\day\\", "\\data\\sznse\\week\\", "\\data\\sznse\\month\\", "\\data\\sznse\\min\\"},
    {".day", ".wek", ".mnt", ".nmn"},
    kQianlongShanghai,
    true,
    false,
    16,
    8,
    12,
};

constexpr BinaryLayout kShenglong{
    "胜龙",
    {"\\data\\sh\\day\\", "\\data\\sh\\week\\", "\\data\\sh\\month\\", "\\data\\sh\\min\\"},
    {"\\data\\sz\\day\\", "\\data\\sz\\week\\", "\\data\\sz\\month\\", "\\data\\sz\\min\\"},
    {".day", ".wek", ".mnt", ".min"},
    kShanghaiStocks,
    false,
    true,
    8,
    12,
    16,
};

// Absolute value of a stored 32-bit field; the most negative value has none.
int32_t absolute32(int32_t v)
{
    if (v == std::numeric_limits<int32_t>::min())
        base::raiseOverflow();
    return v < 0 ? -v : v;
}

QString fileNameFor(const BinaryLayout &layout, const QString &dataDir, const QString &code, int16_t period)
{
    QString shDir, szDir, ext;
    if (period >= 1 && period <= 4) {
        shDir = QString::fromLatin1(layout.shanghaiDirs[period - 1]);
        szDir = QString::fromLatin1(layout.shenzhenDirs[period - 1]);
        ext = QString::fromLatin1(layout.extensions[period - 1]);
    }
    switch (marketOf(code, layout.shanghaiPrefixes)) {
    case Market::Shanghai:
        return dataDir + shDir + (layout.indexTable ? qianlongIndexStem(code) : code) + ext;
    case Market::Shenzhen:
        return dataDir + szDir + code + ext;
    case Market::None:
        break;
    }
    return QString();
}

// Two doubles in one register: the four price divisions run as two vector
// divisions, each lane an ordinary IEEE division.
typedef double Pair __attribute__((vector_size(16)));

// Converts a record straight into its slot (no temporary bar: the loop stays
// free of store-to-load stalls). Prices are value / 1000 in double precision,
// stored as single precision; where fields are taken by their absolute value,
// a price's is taken after the division, so that every stored price has one.
template <const BinaryLayout &layout>
inline void fillBar(StockBar &bar, const unsigned char *rec)
{
    auto field = [&](int offset) {
        const int32_t v = le32(rec + offset);
        return layout.absolute ? absolute32(v) : v;
    };
    auto price = [&](double v) { return static_cast<float>(layout.absolute ? std::fabs(v) : v); };
    bar.Date = field(0);
    const Pair thousand = {1000.0, 1000.0};
    const Pair openClose = Pair{double(le32(rec + 4)), double(le32(rec + layout.closeOffset))} / thousand;
    const Pair highLow = Pair{double(le32(rec + layout.highOffset)), double(le32(rec + layout.lowOffset))} / thousand;
    bar.Open = price(openClose[0]);
    bar.Close = price(openClose[1]);
    bar.High = price(highLow[0]);
    bar.Low = price(highLow[1]);
    bar.Amount = static_cast<float>(field(20));
    bar.Volume = static_cast<float>(field(24));
}

template <const BinaryLayout &layout>
std::optional<BarRead> readBinary(const BarRequest &request, BarArray &bars)
{
    const int32_t fromDate = request.first();
    const int32_t toDate = request.last();

    BarFile file;
    if (!file.open(fileNameFor(layout, request.dataDir, request.code, request.period)))
        return std::nullopt;
    const int16_t n = file.recordCount(kRecordSize);
    if (n - 1 < 0)
        return std::nullopt;

    // The extremes stay in locals while the loop runs.
    float workLow = 100000, workHigh = 0;
    int32_t workLowDate = 0, workHighDate = 0;
    int k = 1;
    unsigned char scratch[kRecordSize];
    for (int i = 0; i <= n - 1; ++i) {
        const unsigned char *rec = file.at(static_cast<qint64>(i) * kRecordSize, scratch, kRecordSize);
        const int32_t rawDate = layout.absolute ? absolute32(le32(rec)) : le32(rec);
        if (rawDate < fromDate || rawDate > toDate)
            continue;
        StockBar &bar = bars[k];
        fillBar<layout>(bar, rec);
        if (workHigh < bar.High) {
            workHigh = bar.High;
            workHighDate = bar.Date;
        }
        if (workLow > bar.Low) {
            workLow = bar.Low;
            workLowDate = bar.Date;
        }
        ++k;
    }
    BarRead read{static_cast<int16_t>(k - 1), workLow, workHigh, workLowDate, workHighDate};

    if (request.period == 2 || request.period == 3) {
        const int32_t lastDate = bars[read.count].Date;
        StockBar &next = bars[read.count + 1];
        if (const std::optional<StockBar> current =
                BuildCurrentBar(lastDate, request.code, QString::fromUtf8(layout.source))) {
            next = *current;
            if (next.Date > lastDate) {
                if (next.Low < read.minLow) {
                    read.minLow = next.Low;
                    read.minLowDate = next.Date;
                }
                if (next.High > read.maxHigh) {
                    read.maxHigh = next.High;
                    read.maxHighDate = next.Date;
                }
                read.count = base::add16(read.count, 1);
            }
        }
    }
    return read;
}

// A running single-precision sum, each step taken in double and stored back.
void addTo(float &sum, int32_t v) { sum = static_cast<float>(static_cast<double>(sum) + v); }

} // namespace

std::optional<BarRead> ReadQianlong(const BarRequest &request, BarArray &bars)
{
    return readBinary<kQianlong>(request, bars);
}

std::optional<BarRead> ReadShenglong(const BarRequest &request, BarArray &bars)
{
    return readBinary<kShenglong>(request, bars);
}

std::optional<StockBar> BuildCurrentBar(int32_t lastDate, const QString &code, const QString &source)
{
    // Both sources read the 钱龙 daily folders; "80".."82" find nothing here.
    bool indexTable;
    if (source == QStringLiteral("钱龙"))
        indexTable = true;
    else if (source == QStringLiteral("胜龙"))
        indexTable = false;
    else
        return std::nullopt;

    QString name;
    switch (marketOf(code, kShanghaiStocks)) {
    case Market::Shanghai:
        name = DataPath() + QStringLiteral("\\data\\shase\\day\\") + (indexTable ? qianlongIndexStem(code) : code) +
               QStringLiteral(".day");
        break;
    case Market::Shenzhen:
        name = DataPath() + QStringLiteral("\\data\\sznse\\day\\") + code + QStringLiteral(".day");
        break;
    case Market::None:
        return std::nullopt;
    }

    BarFile file;
    if (!file.open(name))
        return std::nullopt;
    const int16_t n = file.recordCount(kRecordSize);
    if (n - 1 < 0)
        return std::nullopt;

    StockBar current;
    current.High = -100000;
    current.Low = 100000;
    unsigned char rec[kRecordSize];
    for (int i = n - 1; i >= 0; --i) {
        file.read(static_cast<qint64>(i) * kRecordSize, rec, kRecordSize);
        const int32_t d = le32(rec);
        if (d > lastDate) {
            StockBar bar;
            fillBar<kQianlong>(bar, rec);
            current.Open = bar.Open;
            if (bar.High > current.High)
                current.High = bar.High;
            if (bar.Low < current.Low)
                current.Low = bar.Low;
            addTo(current.Volume, le32(rec + 24));
            addTo(current.Amount, le32(rec + 20));
        }
        if (d < lastDate)
            break;
    }

    const int16_t last = base::toInt16(static_cast<double>(file.size()) / kRecordSize - 1);
    file.read(static_cast<qint64>(last) * kRecordSize, rec, kRecordSize);
    current.Close = static_cast<float>(le32(rec + 16) / 1000.0);
    current.Date = le32(rec);
    return current;
}

} // namespace marketdata
