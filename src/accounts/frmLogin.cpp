#include "frmLogin.h"

#include "base/ErrorGuard.h"
#include "base/Instance.h"
#include "store/Accounts.h"
#include "accounts/frmGuanli.h"
#include "ui/MsgBox.h"

#include <QEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

frmLogin::frmLogin(QWidget *parent) : ui::Form(parent)
{
    setObjectName(QStringLiteral("frmLogin"));
    setWindowTitle(QStringLiteral("登录--Tessaly"));

    Frame1 = new QGroupBox(this);
    Frame1->setObjectName(QStringLiteral("Frame1"));
    lblLabels_0 = new QLabel(QStringLiteral("用户名称(&U):"), Frame1);
    lblLabels_0->setObjectName(QStringLiteral("lblLabels_0"));
    lblLabels_1 = new QLabel(QStringLiteral("密码(&P):"), Frame1);
    lblLabels_1->setObjectName(QStringLiteral("lblLabels_1"));
    txtUserName = new QLineEdit(Frame1);
    txtUserName->setObjectName(QStringLiteral("txtUserName"));
    txtPassword = new QLineEdit(Frame1);
    txtPassword->setObjectName(QStringLiteral("txtPassword"));
    txtPassword->setEchoMode(QLineEdit::Password);
    txtPassword->setStyleSheet(QStringLiteral("lineedit-password-character: 42;")); // "*"
    lblLabels_0->setBuddy(txtUserName);
    lblLabels_1->setBuddy(txtPassword);

    auto *grid = new QGridLayout(Frame1);
    grid->addWidget(lblLabels_0, 0, 0);
    grid->addWidget(txtUserName, 0, 1);
    grid->addWidget(lblLabels_1, 1, 0);
    grid->addWidget(txtPassword, 1, 1);

    cmdOK = new QPushButton(QStringLiteral("确定"), this);
    cmdOK->setObjectName(QStringLiteral("cmdOK"));
    cmdOK->setDefault(true);
    cmdCancel = new QPushButton(QStringLiteral("取消"), this);
    cmdCancel->setObjectName(QStringLiteral("cmdCancel"));
    cmdCancel->setAutoDefault(false);
    Command1 = new QPushButton(QStringLiteral("管理"), this);
    Command1->setObjectName(QStringLiteral("Command1"));
    Command1->setAutoDefault(false);

    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(cmdOK);
    buttons->addWidget(cmdCancel);
    buttons->addWidget(Command1);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(Frame1);
    layout->addLayout(buttons);

    connect(cmdOK, &QPushButton::clicked, this, base::guarded([this](bool) { cmdOK_Click(); }));
    connect(Command1, &QPushButton::clicked, this, base::guarded([this](bool) { Command1_Click(); }));
    connect(cmdCancel, &QPushButton::clicked, this, base::guarded([this](bool) { cmdCancel_Click(); }));
}

frmLogin::~frmLogin() = default;

void frmLogin::formLoad()
{
    if (base::previousInstance()) {
        ui::msgBox(QStringLiteral("已经运行！"));
        base::endProgram(0);
    }
    // A missing file ends the program now; opening it (the key derivation)
    // waits until the window has been painted, so that it shows at once.
    store::requireUserDatabase();
}

bool frmLogin::event(QEvent *event)
{
    if (event->type() == QEvent::Paint && !m_dbRequested)
        QMetaObject::invokeMethod(this, base::guarded([this] { openDatabase(); }), Qt::QueuedConnection);
    return ui::Form::event(event);
}

void frmLogin::openDatabase()
{
    if (m_dbRequested)
        return;
    m_dbRequested = true;
    m_db = store::openUserDatabase();
}

void frmLogin::formUnload()
{
    m_dbRequested = true; // a pending open is no longer wanted
    m_rs = store::Recordset();
    if (m_db.isOpen())
        m_db.close();
    if (!m_handedOver)
        emit closedWithoutLogin();
}

void frmLogin::cmdOK_Click()
{
    openDatabase();
    const store::LoginResult r = store::checkLogin(m_db, m_rs, txtUserName->text(), txtPassword->text(),
                                                   store::LoginButton::Confirm);
    if (!r.accepted) {
        ui::msgBox(store::kLoginFailed);
        return;
    }
    m_handedOver = true;
    emit loggedIn(r.name, r.role);
    unload();
}

void frmLogin::Command1_Click()
{
    openDatabase();
    const store::LoginResult r = store::checkLogin(m_db, m_rs, txtUserName->text(), txtPassword->text(),
                                                   store::LoginButton::Manage);
    if (!r.accepted) {
        ui::msgBox(store::kLoginFailed);
        return;
    }
    frmGuanli manager(this);
    manager.GetName(r.name, r.role);
    manager.exec();
}

void frmLogin::cmdCancel_Click()
{
    unload();
}
