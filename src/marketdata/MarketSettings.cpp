#include "MarketSettings.h"

namespace marketdata {

namespace {
QString &path()
{
    static QString p;
    return p;
}
int16_t g_format = 0;
} // namespace

const QString &DataPath() { return path(); }
void setDataPath(const QString &p) { path() = p; }

int16_t DataFormat() { return g_format; }
void setDataFormat(int16_t format) { g_format = format; }

} // namespace marketdata
