#pragma once
// A temporary program folder for one test: it becomes base::programFolder()
// and, unless told otherwise, holds a new user2.mdb made by the same code as
// the delivered file.

#include <QString>
#include <QTemporaryDir>

class TestFolder {
public:
    explicit TestFolder(bool withDatabase = true);
    ~TestFolder();

    QString path() const { return m_dir.path(); }
    // Real path of a file in the folder.
    QString file(const QString &name) const { return m_dir.path() + u'/' + name; }
    QString databasePath() const { return file(QStringLiteral("user2.mdb")); }

private:
    QTemporaryDir m_dir;
    QString m_previous;
};
