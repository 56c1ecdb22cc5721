#pragma once
// Small helpers shared by every suite: the number of a raised runtime error,
// whole-file reads and writes, readable texts in failure messages.

#include "base/RuntimeError.h"

#include <QFile>
#include <QObject>
#include <QString>
#include <QStringList>

#include <gtest/gtest.h>

#include <functional>
#include <ostream>

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

inline QByteArray fileBytes(const QString &path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

inline void writeFile(const QString &path, const QByteArray &bytes)
{
    QFile f(path);
    if (f.open(QIODevice::WriteOnly | QIODevice::Truncate))
        f.write(bytes);
}

inline void PrintTo(const QString &s, std::ostream *os) { *os << '"' << s.toStdString() << '"'; }
inline void PrintTo(const QStringList &l, std::ostream *os) { *os << '[' << l.join(u'|').toStdString() << ']'; }

// The named child of a window; a missing one fails the test.
template <typename T = QObject>
T *child(const QObject *parent, const char *name)
{
    T *c = parent->findChild<T *>(QString::fromLatin1(name));
    EXPECT_NE(c, nullptr) << name;
    return c;
}
template <typename T = QObject>
T *child(const QObject &parent, const char *name) { return child<T>(&parent, name); }
