// ReadShenglong on any bytes. Selector: bits 0-1 the period (1..4), bit 2 a
// date range. The input is the 胜龙 file and the 钱龙 daily file that
// BuildCurrentBar reads for weeks and months.

#include "FuzzSupport.h"

#include "marketdata/MarketSettings.h"
#include "marketdata/Readers.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static const char *dirs[] = {"day/", "week/", "month/", "min/"};
    static const char *exts[] = {".day", ".wek", ".mnt", ".min"};
    const fuzz::Input in = fuzz::split(data, size);
    const int16_t period = static_cast<int16_t>(1 + (in.selector & 3));
    fuzz::writeFile(QStringLiteral("data/sz/") + QLatin1String(dirs[period - 1]) + QStringLiteral("000002")
                        + QLatin1String(exts[period - 1]),
                    in.data, in.size);
    fuzz::writeFile(QStringLiteral("data/sznse/day/000002.day"), in.data, in.size);
    marketdata::setDataPath(fuzz::folder());

    fuzz::readAnyBytes([&](marketdata::BarArray &bars) {
        return marketdata::ReadShenglong({fuzz::folder(), QStringLiteral("000002"), period,
                                          (in.selector & 4) ? 19990101 : 0, (in.selector & 4) ? 20201231 : 0},
                                         bars);
    });
    return 0;
}
