#pragma once
// The login window: the first window of the program.

#include "store/Database.h"
#include "ui/Form.h"

class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;

class frmLogin : public ui::Form {
    Q_OBJECT
public:
    explicit frmLogin(QWidget *parent = nullptr);
    ~frmLogin() override;

signals:
    // A successful "确定": the opener creates the main window, calls its
    // GetMame(name, role) and shows it; the login window then unloads.
    void loggedIn(const QString &name, const QString &role);
    // The window unloaded without a login (取消, Esc, closing it): the
    // program ends.
    void closedWithoutLogin();

protected:
    void formLoad() override;
    void formUnload() override;
    bool event(QEvent *event) override;

private:
    void onCmdOKClick();
    void onCommand1Click();
    void onCmdCancelClick();
    // Opens the journal the first time it is called (after the first paint,
    // or by a button pressed before it).
    void openDatabase();

    QGroupBox *m_Frame1;
    QLabel *m_lblLabels[2];
    QLineEdit *m_txtUserName;
    QLineEdit *m_txtPassword;
    QPushButton *m_cmdOK;
    QPushButton *m_cmdCancel;
    QPushButton *m_Command1;

    store::Database m_db;
    store::Recordset m_rs;
    bool m_handedOver = false;
    bool m_dbRequested = false;
};
