// Tessaly: the login window is the first window; a successful login hands the
// user to the main window.
#include "base/Paths.h"
#include "platform/frmBefor.h"
#include "store/frmLogin.h"
#include "ui/MsgBox.h"

#include <QApplication>
#include <QFont>
#include <QPointer>

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Tessaly"));
    QApplication::setQuitOnLastWindowClosed(false);
    ui::installErrorBox();

    auto *login = new frmLogin;
    QObject::connect(login, &frmLogin::loggedIn, [](const QString &name, const QString &role) {
        auto *main = new frmBefor;
        main->setAttribute(Qt::WA_DeleteOnClose);
        main->GetMame(name, role);
        main->show();
    });
    QObject::connect(login, &frmLogin::finished, [login] {
        // Cancel or closing the login without a successful login ends the program.
        if (!login->property("handedOver").toBool())
            QApplication::quit();
        login->deleteLater();
    });
    login->show();
    return app.exec();
}
