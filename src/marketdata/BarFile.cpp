#include "BarFile.h"
#include "StockBar.h"

#include "base/Numbers.h"
#include "base/Paths.h"
#include "base/RuntimeError.h"

#include <QFileInfo>

#include <cstring>
#include <type_traits>

namespace marketdata {

namespace {
// Files up to this size are read in one call; larger ones are mapped.
constexpr qint64 kReadLimit = 4 * 1024 * 1024;
} // namespace

bool BarFile::open(const QString &text)
{
    if (text.isEmpty())
        return false;
    const QString real = base::resolvePath(text);
    const QFileInfo info(real);
    if (!info.exists() || info.isDir())
        return false;
    m_file.setFileName(real);
    if (!m_file.open(QIODevice::ReadOnly))
        throw base::RuntimeError(75, QStringLiteral("路径/文件访问错误"));
    m_size = m_file.size();
    if (m_size > kReadLimit) {
        if (uchar *p = m_file.map(0, m_size)) {
            m_data = reinterpret_cast<const char *>(p);
            return true;
        }
    }
    m_bytes = m_file.readAll();
    m_data = m_bytes.constData();
    m_size = m_bytes.size();
    m_file.close();
    return true;
}

int16_t BarFile::recordCount(int recordSize) const
{
    return base::toInt16(static_cast<double>(m_size) / recordSize);
}

void raiseBadRecordNumber()
{
    throw base::RuntimeError(63, QStringLiteral("记录号错误"));
}

void BarArray::clear()
{
    static_assert(std::is_trivially_copyable_v<StockBar>);
    std::memset(static_cast<void *>(m_bars.data()), 0, m_bars.size() * sizeof(StockBar));
}

size_t BarArray::checked(int i)
{
    if (i < 1 || i > kBarArrayLast)
        base::raiseSubscript();
    return static_cast<size_t>(i - 1);
}

} // namespace marketdata
