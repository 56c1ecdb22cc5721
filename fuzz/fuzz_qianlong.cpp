// ReadQianlong (with BuildCurrentBar for weeks and months) on any bytes.
// Selector: bits 0-1 the period (1..4), bit 2 a Shanghai index code, bit 3 a
// date range. The input is both the period file and the daily file.

#include "FuzzSupport.h"

#include "marketdata/MarketSettings.h"
#include "marketdata/Readers.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static const char *dirs[] = {"day/", "week/", "month/", "min/"};
    static const char *exts[] = {".day", ".wek", ".mnt", ".nmn"};
    const fuzz::Input in = fuzz::split(data, size);
    const int16_t period = static_cast<int16_t>(1 + (in.selector & 3));
    const bool index = in.selector & 4;
    const QString stem = index ? QStringLiteral("000001") : QStringLiteral("600000");
    fuzz::writeFile(QStringLiteral("data/shase/") + QLatin1String(dirs[period - 1]) + stem + QLatin1String(exts[period - 1]),
                    in.data, in.size);
    fuzz::writeFile(QStringLiteral("data/shase/day/") + stem + QStringLiteral(".day"), in.data, in.size);
    marketdata::setDataPath(fuzz::folder());

    fuzz::readAnyBytes([&](marketdata::BarArray &bars) {
        return marketdata::ReadQianlong({fuzz::folder(), index ? QStringLiteral("1A0001") : QStringLiteral("600000"),
                                         period, (in.selector & 8) ? 19990101 : 0, (in.selector & 8) ? 20201231 : 0},
                                        bars);
    });
    return 0;
}
