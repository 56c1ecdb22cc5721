#include "Backup.h"

#include "Database.h"
#include "LogCategories.h"
#include "base/Paths.h"
#include "base/RuntimeError.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

#include <sqlcipher/sqlite3.h>

#include <algorithm>
#include <tuple>
#include <utility>

namespace store {

Q_LOGGING_CATEGORY(lcBackup, "tessaly.backup")

namespace {

bool g_attempted = false; // this process has made (or tried) its backup
bool g_tidied = false;    // this process has removed unfinished backups

// A copy is written as <name>.part and renamed when complete; the engine's
// journal of the copy is <name>.part-journal.
const QString kUnfinished = QStringLiteral(".part");

std::function<QDateTime()> &clockOverride()
{
    static std::function<QDateTime()> clock;
    return clock;
}

QDateTime now()
{
    const auto &clock = clockOverride();
    return clock ? clock() : QDateTime::currentDateTime();
}

// The journal's password: the connect text is ";pwd=<password>".
QByteArray journalPassword() { return kConnect.mid(kConnect.indexOf(u'=') + 1).toUtf8(); }

[[noreturn]] void fail(int number, const QString &what, const QString &detail)
{
    throw base::RuntimeError(number, detail.isEmpty() ? what : what + QStringLiteral("：") + detail);
}

// Backup names: user2-YYYYMMDD-HHMMSS.mdb, with -N added when a second copy
// is made within the same second.
const QRegularExpression &backupPattern()
{
    static const QRegularExpression re(QStringLiteral("^user2-(\\d{8}-\\d{6})(?:-(\\d+))?\\.mdb$"),
                                       QRegularExpression::CaseInsensitiveOption);
    return re;
}

QString freshName(const QString &folder, const QDateTime &when)
{
    const QString stem = folder + QStringLiteral("/user2-") + when.toString(QStringLiteral("yyyyMMdd-HHmmss"));
    QString name = stem + QStringLiteral(".mdb");
    for (int n = 2; QFileInfo::exists(name); ++n)
        name = stem + QStringLiteral("-%1.mdb").arg(n);
    return name;
}

bool isJournal(sqlite3 *connection)
{
    const char *file = sqlite3_db_filename(connection, "main");
    if (!file || !*file)
        return false;
    const QString journal =
        QFileInfo(base::resolvePath(base::programFolder() + QStringLiteral("\\user2.mdb"))).canonicalFilePath();
    return !journal.isEmpty() && QFileInfo(QFile::decodeName(file)).canonicalFilePath() == journal;
}

} // namespace

QString backupFolder() { return base::resolvePath(base::programFolder() + QStringLiteral("\\backup")); }

void copyDatabase(sqlite3 *connection, const QString &target)
{
    if (QFileInfo::exists(target))
        fail(ErrCannotOpen, QStringLiteral("备份文件已存在 '%1'").arg(target), QString());
    // The copy is written under a temporary name and renamed when complete
    // (the engine has synced it when the copy's transaction commits), so
    // that a backup file is never a half-written one.
    const QString part = target + kUnfinished;
    QFile::remove(part);

    sqlite3 *dest = nullptr;
    int rc = sqlite3_open_v2(QFile::encodeName(part).constData(), &dest,
                             SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX, nullptr);
    if (rc == SQLITE_OK) {
        const QByteArray password = journalPassword();
        rc = sqlite3_key(dest, password.constData(), int(password.size()));
    }
    if (rc == SQLITE_OK) {
        // The engine copies the pages inside one read transaction of the
        // source, decrypting them with its key and encrypting them with the
        // copy's (same password, the copy's own salt).
        sqlite3_backup *copy = sqlite3_backup_init(dest, "main", connection, "main");
        if (!copy) {
            rc = sqlite3_errcode(dest);
        } else {
            rc = sqlite3_backup_step(copy, -1);
            const int finished = sqlite3_backup_finish(copy);
            rc = rc == SQLITE_DONE ? finished : rc;
        }
    }
    if (rc == SQLITE_OK)
        rc = sqlite3_exec(dest, "SELECT count(*) FROM sqlite_master", nullptr, nullptr, nullptr);
    const QString detail =
        rc == SQLITE_OK ? QString() : QString::fromUtf8(dest ? sqlite3_errmsg(dest) : sqlite3_errstr(rc));
    if (sqlite3_close_v2(dest) != SQLITE_OK && rc == SQLITE_OK)
        rc = SQLITE_IOERR;
    if (rc != SQLITE_OK) {
        QFile::remove(part);
        fail(ErrDiskIo, QStringLiteral("不能写入备份文件 '%1'").arg(target), detail);
    }
    // Readable by whoever may read the journal itself, nobody else.
    const char *source = sqlite3_db_filename(connection, "main");
    if (source && *source)
        QFile::setPermissions(part, QFile::permissions(QFile::decodeName(source)));
    if (!QFile::rename(part, target)) {
        QFile::remove(part);
        fail(ErrDiskIo, QStringLiteral("不能写入备份文件 '%1'").arg(target), QString());
    }
}

void pruneBackups(const QString &folder, int keep, const QString &spare)
{
    // Newest first by the time on disk (the names hold the clock of their
    // run, which may have been set ahead), then by the name's time and the
    // -N of copies made within the same second.
    struct Copy {
        QDateTime modified;
        QString stamp;
        int number;
        QString name;
    };
    std::vector<Copy> found;
    const QFileInfoList files = QDir(folder).entryInfoList(QDir::Files);
    for (const QFileInfo &file : files) {
        const QRegularExpressionMatch m = backupPattern().match(file.fileName());
        if (m.hasMatch() && file.fileName() != spare)
            found.push_back({file.lastModified(), m.captured(1), m.captured(2).isEmpty() ? 1 : m.captured(2).toInt(),
                             file.fileName()});
    }
    std::sort(found.begin(), found.end(), [](const Copy &a, const Copy &b) {
        return std::tie(a.modified, a.stamp, a.number) > std::tie(b.modified, b.stamp, b.number);
    });
    const int others = std::max(keep - (spare.isEmpty() ? 0 : 1), 0);
    for (size_t i = size_t(others); i < found.size(); ++i)
        QFile::remove(folder + u'/' + found[i].name);
}

void backupBeforeFirstWrite(sqlite3 *connection)
{
    if (g_attempted || !connection || !isJournal(connection))
        return;
    g_attempted = true; // a failed attempt is not repeated at every write
    const QString folder = backupFolder();
    try {
        if (!QDir().mkpath(folder) || !QFileInfo(folder).isDir())
            fail(ErrCannotOpen, QStringLiteral("不能建立备份文件夹 '%1'").arg(folder), QString());
        QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        const QString target = freshName(folder, now());
        copyDatabase(connection, target);
        pruneBackups(folder, kBackupsKept, QFileInfo(target).fileName());
    } catch (const base::RuntimeError &e) {
        qCWarning(lcBackup).noquote() << QStringLiteral("数据库备份失败，本次运行没有备份 (%1)").arg(e.description());
    } catch (const std::exception &e) {
        qCWarning(lcBackup).noquote()
            << QStringLiteral("数据库备份失败，本次运行没有备份 (%1)").arg(QString::fromLocal8Bit(e.what()));
    }
}

void removeUnfinishedBackups()
{
    if (g_tidied)
        return;
    g_tidied = true;
    const QString folder = backupFolder();
    const QStringList names =
        QDir(folder).entryList({QStringLiteral("user2-*.mdb") + kUnfinished + u'*'}, QDir::Files | QDir::Hidden);
    for (const QString &name : names)
        QFile::remove(folder + u'/' + name);
}

void resetBackupState()
{
    g_attempted = false;
    g_tidied = false;
}

void setBackupClock(std::function<QDateTime()> clock) { clockOverride() = std::move(clock); }

} // namespace store
