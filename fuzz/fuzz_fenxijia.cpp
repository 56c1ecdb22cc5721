// ReadFenxijia on any day.dat. Selector: bits 0-1 the period (1..3, 0 counts
// as 1), bit 2 a date range, bits 3-4 the code looked up.

#include "FuzzSupport.h"

#include "marketdata/Readers.h"

#include <algorithm>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static const char *codes[] = {"600000", "1A0001", "8000", "000001"};
    const fuzz::Input in = fuzz::split(data, size);
    const int16_t period = static_cast<int16_t>(std::max(1, in.selector & 3));
    const QString code = QLatin1String(codes[(in.selector >> 3) & 3]);
    const bool shanghai = code.startsWith(u'6') || code.startsWith(u'1');
    fuzz::writeFile(shanghai ? QStringLiteral("DATA/SH/day.dat") : QStringLiteral("DATA/SZ/day.dat"), in.data, in.size);

    fuzz::readAnyBytes([&](marketdata::BarArray &bars) {
        return marketdata::ReadFenxijia(
            {fuzz::folder(), code, period, (in.selector & 4) ? 20000101 : 0, (in.selector & 4) ? 20201231 : 0}, bars);
    });
    return 0;
}
