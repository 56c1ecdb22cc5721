#pragma once
// Helpers shared by the store tests.

#include "base/RuntimeError.h"
#include "store/Database.h"

#include <QFile>
#include <QString>

#include <functional>

// Number of the runtime error `f` raises, 0 when it raises none.
inline int errorOf(const std::function<void()> &f)
{
    try {
        f();
    } catch (const base::RuntimeError &e) {
        return e.number();
    }
    return 0;
}

// The single value of a one-row query.
inline QVariant scalar(store::Database &db, const QString &sql)
{
    store::Recordset rs = db.openRecordset(sql);
    return rs.field(0);
}

inline QByteArray fileBytes(const QString &path)
{
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly))
        return QByteArray();
    return f.readAll();
}

inline void writeFile(const QString &path, const QByteArray &bytes)
{
    QFile f(path);
    if (f.open(QIODevice::WriteOnly | QIODevice::Truncate))
        f.write(bytes);
}
