// LoadStockList on any GpSz and GpSh. Selector bit 0: also a GpSh (the input
// split in two at its middle); bit 1: no GpSz.

#include "FuzzSupport.h"

#include "base/RuntimeError.h"
#include "marketdata/StockList.h"

#include <QFile>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const fuzz::Input in = fuzz::split(data, size);
    const size_t half = (in.selector & 1) ? in.size / 2 : in.size;
    QFile::remove(fuzz::folder() + QStringLiteral("/GpSz"));
    QFile::remove(fuzz::folder() + QStringLiteral("/GpSh"));
    if (!(in.selector & 2))
        fuzz::writeFile(QStringLiteral("GpSz"), in.data, half);
    if (in.selector & 1)
        fuzz::writeFile(QStringLiteral("GpSh"), in.data + half, in.size - half);
    try {
        marketdata::LoadStockList();
    } catch (const base::RuntimeError &) {
    }
    return 0;
}
