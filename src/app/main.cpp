// Tessaly: the login window is the first window; a successful login hands the
// user to the main window.
#include "platform/frmBefor.h"
#include "store/frmLogin.h"
#include "ui/MsgBox.h"

#include <QApplication>

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Tessaly"));
    QApplication::setQuitOnLastWindowClosed(false);
    ui::installErrorBox();

    frmLogin login;
    QObject::connect(&login, &frmLogin::loggedIn, [](const QString &name, const QString &role) {
        auto *main = new frmBefor;
        main->GetMame(name, role);
        main->show();
    });
    QObject::connect(&login, &frmLogin::closedWithoutLogin, [] { QApplication::quit(); });
    login.show();
    return app.exec();
}
