#include "Controls.h"

#include "FlexGrid.h"

#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>

namespace ui {

QLabel *label(QWidget *parent, const QString &name, const QString &caption)
{
    return named(new QLabel(caption, parent), name);
}

QLineEdit *textBox(QWidget *parent, const QString &name) { return named(new QLineEdit(parent), name); }

QComboBox *comboBox(QWidget *parent, const QString &name) { return named(new QComboBox(parent), name); }

QListWidget *listBox(QWidget *parent, const QString &name) { return named(new QListWidget(parent), name); }

QGroupBox *frame(QWidget *parent, const QString &name, const QString &title)
{
    return named(new QGroupBox(title, parent), name);
}

FlexGrid *flexGrid(QWidget *parent, const QString &name) { return named(new FlexGrid(parent), name); }

QPushButton *button(QWidget *parent, const QString &name, const QString &caption)
{
    auto *b = named(new QPushButton(caption, parent), name);
    b->setAutoDefault(false);
    return b;
}

} // namespace ui
