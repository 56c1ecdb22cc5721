#pragma once
// Typing any text into a control as key events, one character each, letters
// beyond ASCII included (QTest::keyClicks takes ASCII only).

#include <QLineEdit>
#include <QString>
#include <QTest>
#include <QWidget>

inline void typeText(QWidget *w, const QString &text)
{
    for (const QChar c : text)
        QTest::sendKeyEvent(QTest::Click, w, Qt::Key_unknown, QString(c), Qt::NoModifier);
}

// Replaces the text of a box as the user does: select all, delete, type.
inline void retype(QLineEdit *box, const QString &text)
{
    box->setFocus();
    QTest::keyClick(box, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(box, Qt::Key_Delete);
    typeText(box, text);
}
