#include "frmLogin.h"

#include "accounts/frmGuanli.h"
#include "base/ErrorGuard.h"
#include "base/Instance.h"
#include "store/Accounts.h"
#include "ui/Controls.h"
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

    m_Frame1 = ui::frame(this, "Frame1");
    m_lblLabels[0] = ui::label(m_Frame1, "lblLabels_0", QStringLiteral("用户名称(&U):"));
    m_lblLabels[1] = ui::label(m_Frame1, "lblLabels_1", QStringLiteral("密码(&P):"));
    m_txtUserName = ui::textBox(m_Frame1, "txtUserName");
    m_txtPassword = ui::textBox(m_Frame1, "txtPassword");
    m_txtPassword->setEchoMode(QLineEdit::Password);
    m_txtPassword->setStyleSheet(QStringLiteral("lineedit-password-character: 42;")); // "*"
    m_lblLabels[0]->setBuddy(m_txtUserName);
    m_lblLabels[1]->setBuddy(m_txtPassword);

    auto *grid = new QGridLayout(m_Frame1);
    grid->addWidget(m_lblLabels[0], 0, 0);
    grid->addWidget(m_txtUserName, 0, 1);
    grid->addWidget(m_lblLabels[1], 1, 0);
    grid->addWidget(m_txtPassword, 1, 1);

    m_cmdOK = ui::button(this, "cmdOK", QStringLiteral("确定"));
    m_cmdOK->setDefault(true); // Enter anywhere in the window presses 确定
    m_cmdCancel = ui::button(this, "cmdCancel", QStringLiteral("取消"));
    m_Command1 = ui::button(this, "Command1", QStringLiteral("管理"));

    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(m_cmdOK);
    buttons->addWidget(m_cmdCancel);
    buttons->addWidget(m_Command1);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(m_Frame1);
    layout->addLayout(buttons);

    connect(m_cmdOK, &QPushButton::clicked, this, base::guarded([this](bool) { onCmdOKClick(); }));
    connect(m_Command1, &QPushButton::clicked, this, base::guarded([this](bool) { onCommand1Click(); }));
    connect(m_cmdCancel, &QPushButton::clicked, this, base::guarded([this](bool) { onCmdCancelClick(); }));
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

void frmLogin::onCmdOKClick()
{
    openDatabase();
    const store::LoginResult r =
        store::checkLogin(m_db, m_rs, m_txtUserName->text(), m_txtPassword->text(), store::LoginButton::Confirm);
    if (!r.accepted) {
        ui::msgBox(store::kLoginFailed);
        return;
    }
    m_handedOver = true;
    emit loggedIn(r.name, r.role);
    unload();
}

void frmLogin::onCommand1Click()
{
    openDatabase();
    const store::LoginResult r =
        store::checkLogin(m_db, m_rs, m_txtUserName->text(), m_txtPassword->text(), store::LoginButton::Manage);
    if (!r.accepted) {
        ui::msgBox(store::kLoginFailed);
        return;
    }
    frmGuanli manager(this);
    manager.GetName(r.name, r.role);
    manager.exec();
}

void frmLogin::onCmdCancelClick() { unload(); }
