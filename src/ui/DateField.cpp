#include "DateField.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QRegularExpression>

namespace ui {

DateField::DateField(const QDate &date, QWidget *parent) : QDateEdit(date, parent)
{
    // The typed text is not a text of the display format: the field takes
    // its date from the keys below, not from its own reading of the text.
    setKeyboardTracking(false);
}

QDate DateField::parseTyped(const QString &text)
{
    static const QRegularExpression compact(QStringLiteral("^(\\d{4})(\\d{2})(\\d{2})$"));
    static const QRegularExpression written(QStringLiteral("^(\\d{4})([-/.])(\\d{1,2})\\2(\\d{1,2})$"));
    QRegularExpressionMatch m = compact.match(text);
    if (m.hasMatch())
        return QDate(m.captured(1).toInt(), m.captured(2).toInt(), m.captured(3).toInt());
    m = written.match(text);
    if (m.hasMatch())
        return QDate(m.captured(1).toInt(), m.captured(3).toInt(), m.captured(4).toInt());
    return QDate();
}

void DateField::keyPressEvent(QKeyEvent *event)
{
    const QString t = event->text();
    const bool dateKey = t.size() == 1 && (QStringLiteral("0123456789/-.").contains(t[0])) &&
                         !(event->modifiers() & (Qt::ControlModifier | Qt::AltModifier));
    const bool erase = m_typing && event->key() == Qt::Key_Backspace;
    if (!dateKey && !erase) {
        finishTyping();
        QDateEdit::keyPressEvent(event);
        return;
    }
    if (!m_typing) {
        m_typing = true;
        m_before = date();
        m_typed.clear();
    }
    if (erase)
        m_typed.chop(1);
    else
        m_typed += t;
    const QDate typed = parseTyped(m_typed);
    setDate(typed.isValid() ? typed : m_before);
    lineEdit()->setText(m_typed);
    event->accept();
}

void DateField::finishTyping()
{
    if (!m_typing)
        return;
    m_typing = false;
    setDate(date()); // shows the date in the display format again
}

void DateField::focusOutEvent(QFocusEvent *event)
{
    finishTyping();
    QDateEdit::focusOutEvent(event);
}

void DateField::mousePressEvent(QMouseEvent *event)
{
    finishTyping();
    QDateEdit::mousePressEvent(event);
}

} // namespace ui
