#pragma once
// The window all four entry windows are built on: Frame1 holding the date
// picker DTPicker1 and the text boxes Text2, Text3, ..., each with its label
// (Label1 beside the picker, LabelN beside TextN), then Command2 "确认" and
// Command3 "取消".
//
// Enter moves on: from the picker to Text2, from each box to the next one
// with its whole text selected, from the last box to Command2. Command2 runs
// onCommand2Click(); Command3 unloads the window. The caption is the user name handed
// over by GetMame followed by the window's caption word.

#include "ui/Form.h"

#include <QList>
#include <QString>
#include <QStringList>

class QDateEdit;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;

namespace entry {

class EntryForm : public ui::UserForm {
    Q_OBJECT
protected:
    // labels: the picker's label, then one label per text box (Text2 onwards).
    EntryForm(const QString &captionWord, const QStringList &labels, bool selectsCodeOnDateEnter, QWidget *parent);

    // Runs inside the error guard.
    virtual void onCommand2Click() = 0;

    // TextN (n from 2).
    QLineEdit *text(int n) const { return m_boxes.at(n - 2); }
    QDate date() const;

    // After a stored row: empty every box in order and give the picker the
    // focus; the date stays.
    void clearForNextEntry();

    QGroupBox *m_Frame1 = nullptr;
    QDateEdit *m_DTPicker1 = nullptr;
    QPushButton *m_Command2 = nullptr;
    QPushButton *m_Command3 = nullptr;

private:
    QList<QLabel *> m_labels;
    QList<QLineEdit *> m_boxes;
};

} // namespace entry
