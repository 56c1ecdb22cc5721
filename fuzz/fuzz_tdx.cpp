// ReadTdx on any bytes. Selector: bits 0-1 the period (0..3; 0 reads
// nothing), bits 2-3 the code (a share, a fund, the Shanghai index, a
// Shenzhen share), bit 4 a date range.

#include "FuzzSupport.h"

#include "marketdata/Readers.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static const struct {
        const char *code;
        const char *file;
    } codes[] = {
        {"600000", "vipdoc/sh/lday/sh600000.day"},
        {"510300", "vipdoc/sh/lday/sh510300.day"},
        {"1A0001", "vipdoc/sh/lday/sh000001.day"},
        {"300425", "vipdoc/sz/lday/sz300425.day"},
    };
    const fuzz::Input in = fuzz::split(data, size);
    const int16_t period = static_cast<int16_t>(in.selector & 3);
    const auto &target = codes[(in.selector >> 2) & 3];
    const bool range = in.selector & 16;
    fuzz::writeFile(QLatin1String(target.file), in.data, in.size);

    fuzz::readAnyBytes([&](marketdata::BarArray &bars) {
        return marketdata::ReadTdx(
            {fuzz::folder(), QLatin1String(target.code), period, range ? 20150301 : 0, range ? 20151231 : 0}, bars);
    });
    return 0;
}
