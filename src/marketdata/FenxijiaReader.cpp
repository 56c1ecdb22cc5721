// The 分析家 reader: one day.dat per market holding every stock, an index of
// 64-byte entries and a data area of 8192-byte blocks of 32-byte records.

#include "BarFile.h"
#include "MarketCodes.h"
#include "Readers.h"

#include "base/Gbk.h"
#include "base/Numbers.h"
#include "base/RuntimeError.h"

#include <QDate>

#include <limits>
#include <memory>
#include <optional>

namespace marketdata {

namespace {

constexpr const char *kFenxijiaShanghai[] = {"60", "50", "90", "1A", "1B", "1C", "80"};
constexpr int kHeaderSize = 24;
constexpr int kEntrySize = 64;
constexpr int kBlockSize = 8192;
constexpr int kRecordSize = 32;
constexpr int kRecordsPerBlock = 256;
constexpr int kBlocksPerEntry = 25;
constexpr uint16_t kEndOfBlocks = 65535;

// Offsets are 32-bit sums and products; one that leaves that range raises
// the overflow error, one before the file's start the bad-record error.
int32_t offset32(int64_t v)
{
    if (v > std::numeric_limits<int32_t>::max() || v < std::numeric_limits<int32_t>::min())
        base::raiseOverflow();
    if (v < 0)
        raiseBadRecordNumber();
    return static_cast<int32_t>(v);
}

int32_t dateOfTime(int32_t seconds)
{
    const auto days = static_cast<qint64>(base::roundHalfEven(seconds / 86400.0));
    const QDate d = QDate(1970, 1, 1).addDays(days);
    return d.year() * 10000 + d.month() * 100 + d.day();
}

// Price to the cent: round(value x 100) / 100 with halves to even.
float cents(float v) { return static_cast<float>(base::toInt32(static_cast<double>(v) * 100) / 100.0); }

} // namespace

std::optional<BarRead> ReadFenxijia(const BarRequest &request, BarArray &bars)
{
    const QString &code = request.code;
    const int16_t period = request.period;
    const int32_t fromDate = request.first();
    const int32_t toDate = request.last();

    QString name;
    switch (marketOf(code, kFenxijiaShanghai)) {
    case Market::Shanghai:
        name = request.dataDir + QStringLiteral("\\DATA\\SH\\day.dat");
        break;
    case Market::Shenzhen:
        name = request.dataDir + QStringLiteral("\\DATA\\SZ\\day.dat");
        break;
    case Market::None:
        return std::nullopt;
    }
    BarFile file;
    if (!file.open(name))
        return std::nullopt;

    unsigned char header[kHeaderSize];
    file.read(0, header, kHeaderSize);
    const int32_t blockBase = le32(header + 4);
    const int32_t lastEntry = le32(header + 12);

    // Find the entry whose code begins with `code`. Entries past the end of
    // the file read as zeros and match no code, so the search stops there;
    // only the overflow of the offset of the last entry is still raised.
    unsigned char entry[kEntrySize];
    bool matched = false;
    for (int64_t i = 0; i <= lastEntry; ++i) {
        const int32_t at = offset32(kHeaderSize + static_cast<int64_t>(kEntrySize) * i);
        if (at >= file.size()) {
            offset32(kHeaderSize + static_cast<int64_t>(kEntrySize) * lastEntry);
            break;
        }
        file.read(at, entry, kEntrySize);
        const QString entryCode = base::fromGbk(QByteArray(reinterpret_cast<const char *>(entry), 10));
        if (entryCode.left(code.size()) == code) {
            matched = true;
            break;
        }
    }

    int16_t recordCount = 0;
    int k = 1;
    BarRead read;
    std::unique_ptr<BarArray> work;
    if (period != 1)
        work = std::make_unique<BarArray>();

    if (matched) {
        // Where the data begins matters only once an entry matched: a file
        // without a header (empty, or shorter) matches no code and reads nothing.
        const int32_t dataStart = offset32((static_cast<int64_t>(blockBase) - 8) * 512);
        recordCount = static_cast<int16_t>(le16(entry + 10));
        unsigned char rec[kRecordSize];
        for (int j = 0; j < kBlocksPerEntry; ++j) {
            const uint16_t block = le16(entry + 14 + 2 * j);
            if (block == kEndOfBlocks)
                break;
            const int32_t blockStart =
                offset32(static_cast<int64_t>(dataStart) + static_cast<int64_t>(block) * kBlockSize);
            for (int slot = 0; slot < kRecordsPerBlock; ++slot) {
                file.read(offset32(static_cast<int64_t>(blockStart) + slot * kRecordSize), rec, kRecordSize);
                const int32_t time = le32(rec);
                if (time < 2 || k > recordCount)
                    break;
                StockBar bar;
                bar.Date = dateOfTime(time);
                if (bar.Date < fromDate || bar.Date > toDate)
                    continue;
                bar.Open = cents(leFloat(rec + 4));
                bar.High = cents(leFloat(rec + 8));
                bar.Low = cents(leFloat(rec + 12));
                bar.Close = cents(leFloat(rec + 16));
                bar.Volume = leFloat(rec + 20);
                bar.Amount = base::toSingle(static_cast<double>(leFloat(rec + 24)) / 1000);
                if (bar.High > read.maxHigh) {
                    read.maxHigh = bar.High;
                    read.maxHighDate = time; // the raw time stamp, not YYYYMMDD
                }
                if (bar.Low < read.minLow) {
                    read.minLow = bar.Low;
                    read.minLowDate = time;
                }
                if (period == 1)
                    bars[k] = bar;
                else
                    (*work)[k] = bar;
                ++k;
            }
        }
    }

    if (period == 1)
        read.count = recordCount;
    else if (period == 2 || period == 3)
        read.count = mergePeriodBars(*work, recordCount, period, bars);
    return read;
}

} // namespace marketdata
