#pragma once
// The date field of the entry windows: a date edit with its calendar that
// also takes a date typed the way dates are written, whatever part of the
// field was selected: 2023/1/5, 2023-1-5, 2023.1.5, 20230105, with or without
// leading zeros. The typed text replaces the field while it is typed; a date
// that does not exist leaves the date the field had before.

#include <QDateEdit>

namespace ui {

class DateField : public QDateEdit {
    Q_OBJECT
public:
    explicit DateField(const QDate &date, QWidget *parent = nullptr);

    // The date a typed text names, or an invalid date.
    static QDate parseTyped(const QString &text);

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;

private:
    void finishTyping();

    bool m_typing = false;
    QString m_typed;
    QDate m_before;
};

} // namespace ui
