#include "DirList.h"

#include "base/ErrorGuard.h"
#include "base/Paths.h"
#include "base/RuntimeError.h"

#include <QDir>

namespace marketdata {

DirList::DirList(QWidget *parent) : QListWidget(parent)
{
    connect(this, &QListWidget::itemActivated, this, base::guarded([this](QListWidgetItem *item) { open(item); }));
}

QChar DirList::separator() const { return m_path.size() >= 2 && m_path[1] == u':' ? u'\\' : u'/'; }

void DirList::setPath(const QString &path)
{
    if (!base::dirExists(path))
        throw base::RuntimeError(base::ErrPathNotFound, QStringLiteral("路径未找到"));
    const bool changed = path != m_path;
    m_path = path;
    refill();
    if (changed)
        emit pathChanged(m_path);
}

void DirList::refill()
{
    clear();
    addItem(QStringLiteral(".."));
    const QDir dir(base::resolvePath(m_path));
    addItems(dir.entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name | QDir::IgnoreCase));
}

void DirList::open(QListWidgetItem *item)
{
    QString next = m_path;
    const QChar sep = separator();
    if (item->text() == QStringLiteral("..")) {
        while (next.endsWith(sep) && next.size() > 1)
            next.chop(1);
        const qsizetype cut = next.lastIndexOf(sep);
        if (cut < 0)
            return;
        next = next.left(cut + 1);
        if (next.size() > 1 && next.endsWith(sep) && !(next.size() == 3 && next[1] == u':'))
            next.chop(1);
    } else {
        next = (next.endsWith(sep) ? next : next + sep) + item->text();
    }
    setPath(next);
}

QStringList driveTexts()
{
    QStringList drives{QStringLiteral("/")};
    const QByteArray prefix = qgetenv("WINEPREFIX");
    const QString devices =
        (prefix.isEmpty() ? QDir::homePath() + QStringLiteral("/.wine") : QString::fromLocal8Bit(prefix)) +
        QStringLiteral("/dosdevices");
    for (const QString &e : QDir(devices).entryList(QDir::Dirs | QDir::NoDotAndDotDot | QDir::System, QDir::Name))
        if (e.size() == 2 && e[1] == u':' && e[0].isLetter())
            drives.append(e.toLower());
    return drives;
}

} // namespace marketdata
