#include "UserFolder.h"

#include "base/Paths.h"
#include "base/RuntimeError.h"
#include "store/Database.h"
#include "ui/MsgBox.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryFile>

namespace app {

namespace {

const char *const kTemplates[] = {"GpSz", "GpSh", "user2.mdb"};

bool isJournal(const QString &path)
{
    try {
        store::Database db = store::Database::open(path, 1, true, store::kConnect);
        store::Recordset check = db.openRecordset(QStringLiteral("pragma quick_check"));
        return !check.EOF_() && check.field(0).toString() == QStringLiteral("ok");
    } catch (const base::RuntimeError &) {
        return false;
    }
}

// A new file appears under its name whole or not at all.
bool writeWhole(const QString &path, const QByteArray &bytes)
{
    QTemporaryFile part(path + QStringLiteral(".XXXXXX"));
    if (!part.open() || part.write(bytes) != bytes.size() || !part.flush())
        return false;
    part.close();
    if (part.rename(path)) {
        part.setAutoRemove(false);
        return true;
    }
    return QFileInfo::exists(path); // another start of the same user got there first
}

} // namespace

QString templateFolder()
{
    return QDir::cleanPath(QCoreApplication::applicationDirPath() + u'/' + QStringLiteral(TESSALY_TEMPLATES));
}

QString seedUserFolder(const QString &folder, const QString &templates)
{
    const QString shown = QDir::toNativeSeparators(folder);
    const QDir dir(folder);
    if (QFileInfo::exists(dir.filePath(QStringLiteral("user2.mdb"))))
        return {}; // filled on an earlier start
    QList<std::pair<QString, QByteArray>> copies;
    for (const char *name : kTemplates) {
        const QString target = dir.filePath(QString::fromLatin1(name));
        if (QFileInfo::exists(target))
            continue; // a stock list the user keeps
        const QString source = templates + u'/' + QString::fromLatin1(name);
        QFile in(source);
        const bool journal = target.endsWith(QStringLiteral("user2.mdb"));
        QByteArray bytes;
        if (in.open(QIODevice::ReadOnly))
            bytes = in.readAll();
        if (bytes.isEmpty() || (journal && !isJournal(source)))
            return QStringLiteral("程序的模板文件“%1”缺失或已损坏，无法建立数据文件夹“%2”。")
                .arg(QDir::toNativeSeparators(source), shown);
        copies.append({target, bytes});
    }
    if (copies.isEmpty())
        return {};
    if (!QDir().mkpath(folder) || !QFileInfo(folder).isDir())
        return QStringLiteral("无法创建数据文件夹“%1”。").arg(shown);
    // The journal comes last: a start that fails half-way seeds again next time.
    for (const auto &[target, bytes] : copies)
        if (!writeWhole(target, bytes))
            return QStringLiteral("无法写入数据文件夹“%1”。").arg(shown);
    return {};
}

bool prepareProgramFolder()
{
    const QString folder = base::programFolder();
    if (folder != base::userDataFolder())
        return true; // a portable program folder: used as it is
    const QString error = seedUserFolder(folder, templateFolder());
    if (error.isEmpty())
        return true;
    ui::msgBox(error);
    return false;
}

} // namespace app
