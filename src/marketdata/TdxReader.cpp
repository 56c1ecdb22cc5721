// The 通达信 reader: one daily file per security under vipdoc, 32-byte
// little-endian records, oldest first: date YYYYMMDD, open, high, low, close
// as unsigned whole hundredths or thousandths (by the code's class), amount
// as a single float (yuan), volume, four reserved bytes.

#include "BarFile.h"
#include "MarketCodes.h"
#include "Readers.h"

#include "base/Numbers.h"
#include "base/RuntimeError.h"

#include <optional>

namespace marketdata {

namespace {

constexpr int kRecordSize = 32;
constexpr int kPathAccessError = 75;

uint32_t leU32(const unsigned char *p) { return static_cast<uint32_t>(le32(p)); }

// A file that exists but cannot be read (no permission, an unreadable
// device) values the stock as a missing one does.
bool openReadable(BarFile &file, const QString &name)
{
    try {
        return file.open(name);
    } catch (const base::RuntimeError &e) {
        if (e.number() != kPathAccessError)
            throw;
        return false;
    }
}

} // namespace

std::optional<BarRead> ReadTdx(const BarRequest &request, BarArray &bars)
{
    if (request.period < 1 || request.period > 3)
        return std::nullopt;
    const TdxSecurity security = tdxSecurity(request.code);
    if (security.market.isEmpty())
        return std::nullopt;
    const QString name = request.dataDir + QStringLiteral("\\vipdoc\\") + security.market + QStringLiteral("\\lday\\") +
                         security.market + security.stem + QStringLiteral(".day");
    BarFile file;
    if (!openReadable(file, name))
        return std::nullopt;

    // Whole records only; a count beyond 16 bits is the overflow error.
    const int16_t n = base::toInt16(static_cast<double>(file.size() / kRecordSize));
    const int64_t from = request.first();
    const int64_t to = request.last();
    const double divisor = security.priceDivisor;

    DayBars days(bars, request.period);
    unsigned char scratch[kRecordSize];
    for (int i = 0; i < n; ++i) {
        const unsigned char *rec = file.at(static_cast<qint64>(i) * kRecordSize, scratch, kRecordSize);
        const uint32_t date = leU32(rec);
        if (date < from || date > to)
            continue;
        StockBar bar;
        bar.Date = static_cast<int32_t>(date); // within the int32 range `to`
        bar.Open = static_cast<float>(leU32(rec + 4) / divisor);
        bar.High = static_cast<float>(leU32(rec + 8) / divisor);
        bar.Low = static_cast<float>(leU32(rec + 12) / divisor);
        bar.Close = static_cast<float>(leU32(rec + 16) / divisor);
        bar.Amount = leFloat(rec + 20);
        bar.Volume = static_cast<float>(leU32(rec + 24));
        days.add(bar);
    }
    return days.finish();
}

} // namespace marketdata
