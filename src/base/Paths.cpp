#include "Paths.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>
#include <QStringList>

#include <sys/stat.h>

namespace base {

namespace {

QString &folderOverride()
{
    static QString folder;
    return folder;
}

bool exists(const QString &path)
{
    struct stat st;
    return ::stat(QFile::encodeName(path).constData(), &st) == 0;
}

QString winePrefix()
{
    const QByteArray env = qgetenv("WINEPREFIX");
    if (!env.isEmpty())
        return QFile::decodeName(env);
    return QDir::homePath() + QStringLiteral("/.wine");
}

} // namespace

QString programFolder()
{
    if (!folderOverride().isEmpty())
        return folderOverride();
    if (!QCoreApplication::instance())
        return QDir::currentPath();
    // Decided once: a journal appearing beside the executable later does not
    // move a running program.
    static const QString chosen = [] {
        const QString own = QCoreApplication::applicationDirPath();
        return QFileInfo::exists(own + QStringLiteral("/user2.mdb")) ? own : userDataFolder();
    }();
    return chosen;
}

QString userDataFolder() { return QStandardPaths::writableLocation(QStandardPaths::AppDataLocation); }

void setProgramFolder(const QString &folder) { folderOverride() = folder; }

QString resolvePath(const QString &text)
{
    QString t = text;
    t.replace(u'\\', u'/');

    const bool drive = t.size() >= 2 && t[1] == u':' && t[0].isLetter() && (t.size() == 2 || t[2] == u'/');
    // Most names exist as written: one stat instead of one per component.
    if (!drive && !t.isEmpty() && exists(t))
        return t;

    QString base;
    if (drive) {
        base = winePrefix() + QStringLiteral("/dosdevices/") + t[0].toLower() + u':';
        t = t.mid(2);
    } else if (t.startsWith(u'/')) {
        base = QStringLiteral("/");
    } else {
        base = QDir::currentPath();
    }

    const QStringList parts = t.split(u'/', Qt::SkipEmptyParts);
    QString path = base;
    for (const QString &part : parts) {
        QString candidate = path.endsWith(u'/') ? path + part : path + u'/' + part;
        if (part == QStringLiteral(".") || part == QStringLiteral("..") || exists(candidate)) {
            path = candidate;
            continue;
        }
        // The exact name is missing: look for one that differs in letter case.
        QString match;
        const QDir dir(path);
        if (dir.exists()) {
            const QStringList entries =
                dir.entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
            for (const QString &e : entries) {
                if (e.compare(part, Qt::CaseInsensitive) == 0) {
                    match = e;
                    break;
                }
            }
        }
        path = path.endsWith(u'/') ? path + (match.isEmpty() ? part : match)
                                   : path + u'/' + (match.isEmpty() ? part : match);
    }
    return path;
}

bool fileExists(const QString &text)
{
    if (text.isEmpty())
        return false;
    const QFileInfo info(resolvePath(text));
    return info.exists() && !info.isDir();
}

bool dirExists(const QString &text)
{
    if (text.isEmpty())
        return false;
    return QFileInfo(resolvePath(text)).isDir();
}

QString nativeSeparators(const QString &text)
{
    QString shown = text;
    for (QChar &c : shown)
        if (c == u'\\' || c == u'/')
            c = QDir::separator();
    return shown;
}

} // namespace base
