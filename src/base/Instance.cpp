#include "Instance.h"

#include "Paths.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace base {

namespace {

// The lock lives in the program folder, so that it goes with the program;
// a folder that cannot be written falls back to a name in the runtime folder.
QString fallbackLockPath()
{
    const QByteArray runtime = qgetenv("XDG_RUNTIME_DIR");
    const QString dir = runtime.isEmpty() ? QDir::tempPath() : QFile::decodeName(runtime);
    const QByteArray key =
        QCryptographicHash::hash(QDir(programFolder()).absolutePath().toUtf8(), QCryptographicHash::Sha256)
            .toHex()
            .left(16);
    return dir + QStringLiteral("/tessaly-") + QString::fromLatin1(key) + QStringLiteral(".lock");
}

int openLock(const QString &path)
{
    return ::open(QFile::encodeName(path).constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
}

} // namespace

bool previousInstance()
{
    static int lockFd = -1;
    if (lockFd >= 0)
        return false; // this process holds the lock already
    int fd = openLock(programFolder() + QStringLiteral("/.tessaly.lock"));
    if (fd < 0)
        fd = openLock(fallbackLockPath());
    if (fd < 0)
        return false; // no lock possible: do not refuse to start
    if (::flock(fd, LOCK_EX | LOCK_NB) != 0) {
        ::close(fd);
        return true;
    }
    lockFd = fd; // kept open for the life of the process
    return false;
}

} // namespace base
