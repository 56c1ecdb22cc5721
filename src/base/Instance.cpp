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

QString lockPath()
{
    const QByteArray runtime = qgetenv("XDG_RUNTIME_DIR");
    const QString dir = runtime.isEmpty() ? QDir::tempPath() : QFile::decodeName(runtime);
    const QByteArray key = QCryptographicHash::hash(QDir(programFolder()).absolutePath().toUtf8(),
                                                    QCryptographicHash::Sha1)
                               .toHex()
                               .left(16);
    return dir + QStringLiteral("/tessaly-") + QString::fromLatin1(key) + QStringLiteral(".lock");
}

} // namespace

bool previousInstance()
{
    static int lockFd = -1;
    if (lockFd >= 0)
        return false; // this process holds the lock already
    const int fd = ::open(QFile::encodeName(lockPath()).constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
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
