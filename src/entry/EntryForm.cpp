#include "EntryForm.h"

#include "base/ErrorGuard.h"
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
    : ui::Form(parent), m_captionWord(captionWord)
{
    Frame1 = new QGroupBox(this);
    Frame1->setObjectName(QStringLiteral("Frame1"));
    auto *grid = new QGridLayout(Frame1);

    DTPicker1 = new ui::DateField(QDate::currentDate(), Frame1);
    DTPicker1->setObjectName(QStringLiteral("DTPicker1"));
    DTPicker1->setCalendarPopup(true);
    DTPicker1->setDisplayFormat(QStringLiteral("yyyy/M/d"));

    for (int i = 0; i < labels.size(); ++i) {
        auto *label = new QLabel(labels.at(i), Frame1);
        label->setObjectName(QStringLiteral("Label%1").arg(i + 1));
        m_labels.append(label);
        QWidget *field = DTPicker1;
        if (i > 0) {
            auto *box = new QLineEdit(Frame1);
            box->setObjectName(QStringLiteral("Text%1").arg(i + 1));
            m_boxes.append(box);
            field = box;
        }
        label->setBuddy(field);
        grid->addWidget(label, i, 0);
        grid->addWidget(field, i, 1);
    }

    Command2 = new QPushButton(QStringLiteral("确认"), this);
    Command2->setObjectName(QStringLiteral("Command2"));
    Command3 = new QPushButton(QStringLiteral("取消"), this);
    Command3->setObjectName(QStringLiteral("Command3"));

    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(Command2);
    buttons->addWidget(Command3);
    auto *outer = new QVBoxLayout(this);
    outer->addWidget(Frame1);
    outer->addLayout(buttons);

    // The Enter chain.
    ui::onEnter(DTPicker1, [this, selectsCodeOnDateEnter] {
        if (selectsCodeOnDateEnter)
            ui::focusAndSelect(text(2));
        else
            text(2)->setFocus(Qt::OtherFocusReason);
    });
    for (int i = 0; i < m_boxes.size(); ++i) {
        QWidget *next = i + 1 < m_boxes.size() ? static_cast<QWidget *>(m_boxes.at(i + 1)) : Command2;
        ui::onEnter(m_boxes.at(i), [next] { ui::focusAndSelect(next); });
    }

    connect(Command2, &QPushButton::clicked, this, base::guarded([this](bool) { confirm(); }));
    connect(Command3, &QPushButton::clicked, this, base::guarded([this](bool) { unload(); }));
}

void EntryForm::GetMame(QString GuName, QString GuPower)
{
    m_userName = std::move(GuName);
    m_userPower = std::move(GuPower);
}

void EntryForm::formLoad()
{
    setWindowTitle(m_userName + m_captionWord);
}

QDate EntryForm::date() const
{
    return DTPicker1->date();
}

void EntryForm::clearForNextEntry()
{
    for (QLineEdit *box : m_boxes)
        box->clear();
    DTPicker1->setFocus(Qt::OtherFocusReason);
}

} // namespace entry
