#include "MarketSettings.h"
#include "ListInput.h"

#include "base/ErrorGuard.h"
#include "base/Gbk.h"

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

QByteArray dateSetFileBytes(int16_t index, const QString &directory)
{
    const QString number = (index < 0 ? QString() : QStringLiteral(" ")) + QString::number(index) + u' ';
    return base::toGbk(number + QStringLiteral("\r\n") + directory + QStringLiteral("\r\n"));
}

void readDateSetItems(const QString &text, int16_t &index, QString &directory)
{
    ListInput in(text);
    base::resumeNext([&] { index = in.readInt16(); });
    base::resumeNext([&] { directory = in.readText(); });
}

} // namespace marketdata
