#pragma once
// Typing any text into a control as key events, one character each, letters
// beyond ASCII included (QTest::keyClicks takes ASCII only).

#include <QString>
#include <QTest>
#include <QWidget>

inline void typeText(QWidget *w, const QString &text)
{
    for (const QChar c : text)
        QTest::sendKeyEvent(QTest::Click, w, Qt::Key_unknown, QString(c), Qt::NoModifier);
}
