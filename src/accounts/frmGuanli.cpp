#include "frmGuanli.h"

#include "base/ErrorGuard.h"
#include "store/Accounts.h"
#include "ui/Controls.h"
#include "ui/MsgBox.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QSignalBlocker>
#include <QVBoxLayout>

namespace {
const QString kPasswordsDiffer = QStringLiteral("两次输入密码不相同");
} // namespace

frmGuanli::frmGuanli(QWidget *parent) : ui::Form(parent)
{
    setObjectName(QStringLiteral("frmGuanli"));
    setWindowTitle(QStringLiteral("用户管理--Tessaly"));

    m_Frame1 = ui::frame(this, "Frame1");
    m_Frame2 = ui::frame(this, "Frame2");
    m_Label1 = ui::label(m_Frame1, "Label1", QStringLiteral("用户列表"));
    m_List1 = ui::listBox(m_Frame1, "List1");
    m_Label2 = ui::label(m_Frame2, "Label2", QStringLiteral("用户名"));
    m_Label3 = ui::label(m_Frame2, "Label3", QStringLiteral("密码"));
    m_Label4 = ui::label(m_Frame2, "Label4", QStringLiteral("再次"));
    m_Text1 = ui::textBox(m_Frame2, "Text1");
    m_Text2 = ui::textBox(m_Frame2, "Text2");
    m_Text3 = ui::textBox(m_Frame2, "Text3");
    m_Text2->setEchoMode(QLineEdit::Password);
    m_Text3->setEchoMode(QLineEdit::Password);
    m_Command1 = ui::button(this, "Command1", QStringLiteral("增加"));
    m_Command2 = ui::button(this, "Command2", QStringLiteral("删除"));
    m_Command4 = ui::button(this, "Command4", QStringLiteral("修改"));
    m_Command3 = ui::button(this, "Command3", QStringLiteral("取消"));

    auto *listLayout = new QVBoxLayout(m_Frame1);
    listLayout->addWidget(m_Label1);
    listLayout->addWidget(m_List1);
    auto *fields = new QGridLayout(m_Frame2);
    fields->addWidget(m_Label2, 0, 0);
    fields->addWidget(m_Text1, 0, 1);
    fields->addWidget(m_Label3, 1, 0);
    fields->addWidget(m_Text2, 1, 1);
    fields->addWidget(m_Label4, 2, 0);
    fields->addWidget(m_Text3, 2, 1);
    fields->setRowStretch(3, 1);
    auto *top = new QHBoxLayout;
    top->addWidget(m_Frame1);
    top->addWidget(m_Frame2);
    auto *buttons = new QHBoxLayout;
    for (QPushButton *b : {m_Command1, m_Command2, m_Command4, m_Command3})
        buttons->addWidget(b);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(top);
    layout->addLayout(buttons);

    // An account is chosen by a click or by the keyboard (arrows, Page
    // Up/Down, Home/End): either way it is the one that 删除 acts on.
    connect(m_List1, &QListWidget::itemClicked, this,
            base::guarded([this](QListWidgetItem *item) { onList1Click(item); }));
    connect(m_List1, &QListWidget::currentItemChanged, this,
            base::guarded([this](QListWidgetItem *item, QListWidgetItem *) {
                if (item)
                    onList1Click(item);
            }));
    connect(m_Command1, &QPushButton::clicked, this, base::guarded([this](bool) { onCommand1Click(); }));
    connect(m_Command2, &QPushButton::clicked, this, base::guarded([this](bool) { onCommand2Click(); }));
    connect(m_Command4, &QPushButton::clicked, this, base::guarded([this](bool) { onCommand4Click(); }));
    connect(m_Command3, &QPushButton::clicked, this, base::guarded([this](bool) { onCommand3Click(); }));

    // Enter goes round the three boxes.
    ui::onEnter(m_Text1, [this] { ui::focusAndSelect(m_Text2); });
    ui::onEnter(m_Text2, [this] { ui::focusAndSelect(m_Text3); });
    ui::onEnter(m_Text3, [this] { ui::focusAndSelect(m_Text1); });
}

frmGuanli::~frmGuanli() = default;

void frmGuanli::GetName(QString uName1, QString uPower1)
{
    m_uName1 = std::move(uName1);
    m_uPower1 = std::move(uPower1);
}

void frmGuanli::formLoad()
{
    // An empty or missing list is no error here: the window simply shows nothing.
    base::resumeNext([this] { m_db = store::openUserDatabase(); });
    base::resumeNext([this] { fillList(); });
}

void frmGuanli::formUnload()
{
    m_rs = store::Recordset();
    if (m_db.isOpen())
        m_db.close();
}

void frmGuanli::fillList()
{
    const QSignalBlocker quiet(m_List1); // refilling chooses no account
    m_List1->clear();
    m_sql = store::accountListQuery();
    m_List1->addItems(store::fillUserList(m_db, m_rs, m_count));
}

void frmGuanli::clearBoxes()
{
    m_Text1->clear();
    m_Text2->clear();
    m_Text3->clear();
}

void frmGuanli::onList1Click(QListWidgetItem *item)
{
    const QString name = item ? item->text() : QString();
    m_sql = store::accountQuery(name);
    QString password, role;
    store::FindUser(m_db, m_rs, m_sql, password, role, store::OnError::ResumeNext);
    m_Text1->setText(name);
    m_Text2->setText(password);
    m_Text3->setText(password);
}

void frmGuanli::onCommand1Click()
{
    const QString name = m_Text1->text().trimmed();
    const QString password = m_Text2->text().trimmed();
    const QString again = m_Text3->text().trimmed();
    if (again != password) {
        ui::msgBox(kPasswordsDiffer);
    } else if (!m_Text1->text().isEmpty()) {
        m_sql = store::accountQuery(name);
        store::addAccount(m_db, m_rs, name, password);
        fillList();
    }
    clearBoxes();
}

void frmGuanli::onCommand2Click()
{
    const QString name = m_Text1->text().trimmed();
    if (store::rightsAllow(name.toUpper(), m_uName1, m_uPower1))
        base::resumeNext([this] { store::deleteCurrent(m_rs); });
    base::resumeNext([this] { fillList(); });
    clearBoxes();
}

void frmGuanli::onCommand4Click()
{
    const QString name = m_Text1->text().trimmed();
    const QString password = m_Text2->text().trimmed();
    const QString again = m_Text3->text().trimmed();
    if (again != password) {
        ui::msgBox(kPasswordsDiffer);
    } else if (store::rightsAllow(name.toUpper(), m_uName1, m_uPower1)) {
        m_sql = store::accountQuery(name);
        store::changeAccount(m_db, m_rs, name, password);
        base::resumeNext([this] { fillList(); });
    }
    clearBoxes();
}

void frmGuanli::onCommand3Click() { unload(); }
