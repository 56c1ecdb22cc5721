#include "frmGuanli.h"

#include "base/ErrorGuard.h"
#include "store/Accounts.h"
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

template <typename W>
W *named(W *w, const char *name)
{
    w->setObjectName(QLatin1String(name));
    return w;
}
} // namespace

frmGuanli::frmGuanli(QWidget *parent) : ui::Form(parent)
{
    setObjectName(QStringLiteral("frmGuanli"));
    setWindowTitle(QStringLiteral("用户管理--Tessaly"));

    Frame1 = named(new QGroupBox(this), "Frame1");
    Frame2 = named(new QGroupBox(this), "Frame2");
    Label1 = named(new QLabel(QStringLiteral("用户列表"), Frame1), "Label1");
    List1 = named(new QListWidget(Frame1), "List1");
    Label2 = named(new QLabel(QStringLiteral("用户名"), Frame2), "Label2");
    Label3 = named(new QLabel(QStringLiteral("密码"), Frame2), "Label3");
    Label4 = named(new QLabel(QStringLiteral("再次"), Frame2), "Label4");
    Text1 = named(new QLineEdit(Frame2), "Text1");
    Text2 = named(new QLineEdit(Frame2), "Text2");
    Text3 = named(new QLineEdit(Frame2), "Text3");
    Text2->setEchoMode(QLineEdit::Password);
    Text3->setEchoMode(QLineEdit::Password);
    Command1 = named(new QPushButton(QStringLiteral("增加"), this), "Command1");
    Command2 = named(new QPushButton(QStringLiteral("删除"), this), "Command2");
    Command4 = named(new QPushButton(QStringLiteral("修改"), this), "Command4");
    Command3 = named(new QPushButton(QStringLiteral("取消"), this), "Command3");

    auto *listLayout = new QVBoxLayout(Frame1);
    listLayout->addWidget(Label1);
    listLayout->addWidget(List1);
    auto *fields = new QGridLayout(Frame2);
    fields->addWidget(Label2, 0, 0);
    fields->addWidget(Text1, 0, 1);
    fields->addWidget(Label3, 1, 0);
    fields->addWidget(Text2, 1, 1);
    fields->addWidget(Label4, 2, 0);
    fields->addWidget(Text3, 2, 1);
    fields->setRowStretch(3, 1);
    auto *top = new QHBoxLayout;
    top->addWidget(Frame1);
    top->addWidget(Frame2);
    auto *buttons = new QHBoxLayout;
    for (QPushButton *b : {Command1, Command2, Command4, Command3}) {
        b->setAutoDefault(false);
        buttons->addWidget(b);
    }
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(top);
    layout->addLayout(buttons);

    // An account is chosen by a click or by the keyboard (arrows, Page
    // Up/Down, Home/End): either way it is the one that 删除 acts on.
    connect(List1, &QListWidget::itemClicked, this, base::guarded([this](QListWidgetItem *item) { List1_Click(item); }));
    connect(List1, &QListWidget::currentItemChanged, this, base::guarded([this](QListWidgetItem *item, QListWidgetItem *) {
                if (item)
                    List1_Click(item);
            }));
    connect(Command1, &QPushButton::clicked, this, base::guarded([this](bool) { Command1_Click(); }));
    connect(Command2, &QPushButton::clicked, this, base::guarded([this](bool) { Command2_Click(); }));
    connect(Command4, &QPushButton::clicked, this, base::guarded([this](bool) { Command4_Click(); }));
    connect(Command3, &QPushButton::clicked, this, base::guarded([this](bool) { Command3_Click(); }));

    // Enter goes round the three boxes.
    ui::onEnter(Text1, [this] { ui::focusAndSelect(Text2); });
    ui::onEnter(Text2, [this] { ui::focusAndSelect(Text3); });
    ui::onEnter(Text3, [this] { ui::focusAndSelect(Text1); });
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
    const QSignalBlocker quiet(List1); // refilling chooses no account
    List1->clear();
    m_sql = store::accountListQuery();
    List1->addItems(store::fillUserList(m_db, m_rs, m_count));
}

void frmGuanli::clearBoxes()
{
    Text1->clear();
    Text2->clear();
    Text3->clear();
}

void frmGuanli::List1_Click(QListWidgetItem *item)
{
    const QString name = item ? item->text() : QString();
    m_sql = store::accountQuery(name);
    QString password, role;
    store::FindUser(m_db, m_rs, m_sql, password, role, store::OnError::ResumeNext);
    Text1->setText(name);
    Text2->setText(password);
    Text3->setText(password);
}

void frmGuanli::Command1_Click()
{
    const QString name = Text1->text().trimmed();
    const QString password = Text2->text().trimmed();
    const QString again = Text3->text().trimmed();
    if (again != password) {
        ui::msgBox(kPasswordsDiffer);
    } else if (!Text1->text().isEmpty()) {
        m_sql = store::accountQuery(name);
        store::addAccount(m_db, m_rs, name, password);
        fillList();
    }
    clearBoxes();
}

void frmGuanli::Command2_Click()
{
    const QString name = Text1->text().trimmed();
    if (store::rightsAllow(name.toUpper(), m_uName1, m_uPower1))
        base::resumeNext([this] { store::deleteCurrent(m_rs); });
    base::resumeNext([this] { fillList(); });
    clearBoxes();
}

void frmGuanli::Command4_Click()
{
    const QString name = Text1->text().trimmed();
    const QString password = Text2->text().trimmed();
    const QString again = Text3->text().trimmed();
    if (again != password) {
        ui::msgBox(kPasswordsDiffer);
    } else if (store::rightsAllow(name.toUpper(), m_uName1, m_uPower1)) {
        m_sql = store::accountQuery(name);
        store::changeAccount(m_db, m_rs, name, password);
        base::resumeNext([this] { fillList(); });
    }
    clearBoxes();
}

void frmGuanli::Command3_Click()
{
    unload();
}
