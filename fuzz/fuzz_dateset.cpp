// dateset.dat as the settings window reads it: GBK text, list input.

#include "FuzzSupport.h"

#include "base/Gbk.h"
#include "marketdata/MarketSettings.h"

#include <QByteArray>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    int16_t index = 0;
    QString directory;
    // readDateSetItems skips failing reads itself: nothing may escape it.
    marketdata::readDateSetItems(
        base::fromGbk(QByteArray(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size))), index, directory);
    // What is read must be written back in the same form.
    (void)marketdata::dateSetFileBytes(index, directory);
    return 0;
}
