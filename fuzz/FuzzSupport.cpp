#include "FuzzSupport.h"

#include "base/Paths.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

namespace fuzz {

const QString &folder()
{
    // Memory-backed when possible: every run writes its input as a file.
    static QTemporaryDir dir(QFileInfo(QStringLiteral("/dev/shm")).isWritable()
                                 ? QStringLiteral("/dev/shm/tessaly-fuzz-XXXXXX")
                                 : QDir::tempPath() + QStringLiteral("/tessaly-fuzz-XXXXXX"));
    static const QString path = [] {
        base::setProgramFolder(dir.path());
        return dir.path();
    }();
    return path;
}

void writeFile(const QString &relative, const uint8_t *data, size_t size)
{
    const QString full = folder() + u'/' + relative;
    QDir().mkpath(QFileInfo(full).absolutePath());
    QFile f(full);
    if (f.open(QIODevice::WriteOnly | QIODevice::Truncate))
        f.write(reinterpret_cast<const char *>(data), static_cast<qint64>(size));
}

Input split(const uint8_t *data, size_t size)
{
    if (size == 0)
        return {};
    return {data[0], data + 1, size - 1};
}

} // namespace fuzz
