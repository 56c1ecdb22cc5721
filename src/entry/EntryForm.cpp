#include "EntryForm.h"

#include "base/ErrorGuard.h"
#include "ui/Controls.h"
#include "ui/DateField.h"

#include <QDateEdit>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace entry {

EntryForm::EntryForm(const QString &captionWord, const QStringList &labels, bool selectsCodeOnDateEnter,
                     QWidget *parent)
    : ui::UserForm(captionWord, parent)
{
    m_Frame1 = ui::frame(this, "Frame1");
    auto *grid = new QGridLayout(m_Frame1);

    m_DTPicker1 = ui::named(new ui::DateField(QDate::currentDate(), m_Frame1), "DTPicker1");
    m_DTPicker1->setCalendarPopup(true);
    m_DTPicker1->setDisplayFormat(QStringLiteral("yyyy/M/d"));

    for (int i = 0; i < labels.size(); ++i) {
        auto *label = ui::label(m_Frame1, QStringLiteral("Label%1").arg(i + 1), labels.at(i));
        m_labels.append(label);
        QWidget *field = m_DTPicker1;
        if (i > 0) {
            auto *box = ui::textBox(m_Frame1, QStringLiteral("Text%1").arg(i + 1));
            m_boxes.append(box);
            field = box;
        }
        label->setBuddy(field);
        grid->addWidget(label, i, 0);
        grid->addWidget(field, i, 1);
    }

    // Both buttons keep a dialog button's Enter: the field chain ends on
    // 确认, and Enter on the focused button presses it.
    m_Command2 = ui::button(this, "Command2", QStringLiteral("确认"));
    m_Command2->setAutoDefault(true);
    m_Command3 = ui::button(this, "Command3", QStringLiteral("取消"));
    m_Command3->setAutoDefault(true);

    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(m_Command2);
    buttons->addWidget(m_Command3);
    auto *outer = new QVBoxLayout(this);
    outer->addWidget(m_Frame1);
    outer->addLayout(buttons);

    // The Enter chain.
    ui::onEnter(m_DTPicker1, [this, selectsCodeOnDateEnter] {
        if (selectsCodeOnDateEnter)
            ui::focusAndSelect(text(2));
        else
            text(2)->setFocus(Qt::OtherFocusReason);
    });
    for (int i = 0; i < m_boxes.size(); ++i) {
        QWidget *next = i + 1 < m_boxes.size() ? static_cast<QWidget *>(m_boxes.at(i + 1)) : m_Command2;
        ui::onEnter(m_boxes.at(i), [next] { ui::focusAndSelect(next); });
    }

    connect(m_Command2, &QPushButton::clicked, this, base::guarded([this](bool) { onCommand2Click(); }));
    connect(m_Command3, &QPushButton::clicked, this, base::guarded([this](bool) { unload(); }));
}

QDate EntryForm::date() const { return m_DTPicker1->date(); }

void EntryForm::clearForNextEntry()
{
    for (QLineEdit *box : m_boxes)
        box->clear();
    m_DTPicker1->setFocus(Qt::OtherFocusReason);
}

} // namespace entry
