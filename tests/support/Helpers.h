#pragma once
// What every suite uses: GoogleTest, Qt Test and the common widgets, the
// temporary program folder, journal rows, typing; and small helpers: the
// number of a raised runtime error, whole-file reads and writes, readable
// texts in failure messages, a window's named control.

#include "base/RuntimeError.h"
#include "store/Database.h"
#include "support/Journal.h"
#include "support/TestFolder.h"
#include "support/Typing.h"
#include "ui/MsgBox.h"

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QDate>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QProcess>
#include <QPushButton>
#include <QSignalSpy>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QWidget>

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

// While it lives, the texts of message boxes go to `into` instead of a box.
class MessageRecorder {
public:
    explicit MessageRecorder(QStringList &into) { ui::setMsgBoxRecorder(&into); }
    ~MessageRecorder() { ui::setMsgBoxRecorder(nullptr); }
    MessageRecorder(const MessageRecorder &) = delete;
    MessageRecorder &operator=(const MessageRecorder &) = delete;
};

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

// A grid's rows from `first` on, each as its cells from column 1 joined by `sep`.
template <typename Grid>
QStringList gridRows(const Grid &g, int first = 1, QChar sep = u'|')
{
    QStringList rows;
    for (int r = first; r < g.rows(); ++r) {
        QStringList cells;
        for (int c = 1; c < g.cols(); ++c)
            cells << g.textMatrix(r, c);
        rows << cells.join(sep);
    }
    return rows;
}

// The single value of a one-row query.
inline QVariant scalar(store::Database &db, const QString &sql) { return db.openRecordset(sql).field(0); }

// Runs `action`, which opens a modal window; `inside` acts on that window
// while it is open, then it is closed. Returns its class and caption, empty
// when nothing opened.
inline QString modalOpenedBy(const std::function<void()> &action, const std::function<void(QWidget &)> &inside = {})
{
    QString seen;
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, [&] {
        if (QWidget *m = QApplication::activeModalWidget()) {
            poll.stop();
            seen = QString::fromLatin1(m->metaObject()->className()) + u' ' + m->windowTitle();
            if (inside)
                inside(*m);
            m->close();
        }
    });
    poll.start(0);
    action();
    return seen;
}
