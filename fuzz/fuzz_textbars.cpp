// ReadTextBars on any text. Selector: bits 0-1 the period (1..3, 0 counts as
// 1), bits 2-4 the layout name.

#include "FuzzSupport.h"

#include "marketdata/Readers.h"

#include <algorithm>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static const char *layouts[] = {"CSV", "GET", "METATEXT", "TT2", "csv", "tt2", "Csv", "metatext"};
    const fuzz::Input in = fuzz::split(data, size);
    const int16_t period = static_cast<int16_t>(std::max(1, in.selector & 3));
    fuzz::writeFile(QStringLiteral("600000.txt"), in.data, in.size);

    fuzz::readAnyBytes([&](marketdata::BarArray &bars) {
        return marketdata::ReadTextBars({fuzz::folder(), QStringLiteral("600000"), period, 0, 0},
                                        QLatin1String(layouts[(in.selector >> 2) & 7]), bars);
    });
    return 0;
}
