#pragma once
// The one factory for the controls of the windows. Every control is created
// with its parent and its objectName, which is the control's name (Text1,
// Command2, lblLabels_0): tests and scripts find controls by it. Windows lay
// the controls out with Qt layouts afterwards.

#include <QString>

class QComboBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QPushButton;
class QWidget;

namespace ui {

class FlexGrid;

// Names a control the factory does not make (a picker, a check box, a chart).
template <typename W>
W *named(W *w, const QString &name)
{
    w->setObjectName(name);
    return w;
}

QLabel *label(QWidget *parent, const QString &name, const QString &caption = QString());
QLineEdit *textBox(QWidget *parent, const QString &name);
QComboBox *comboBox(QWidget *parent, const QString &name);
QListWidget *listBox(QWidget *parent, const QString &name);
QGroupBox *frame(QWidget *parent, const QString &name, const QString &title = QString());
FlexGrid *flexGrid(QWidget *parent, const QString &name);

// A push button that does not take Enter as the dialog's default button:
// Enter belongs to the field chains of the windows. A window whose chain
// ends on a button turns autoDefault back on for it.
QPushButton *button(QWidget *parent, const QString &name, const QString &caption);

} // namespace ui
