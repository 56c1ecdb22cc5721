// Tessaly: the login window is the first window; a successful login hands the
// user to the main window.
#include "UserFolder.h"
#include "accounts/frmLogin.h"
#include "base/TestHooks.h"
#include "platform/frmBefor.h"
#include "ui/Form.h"
#include "ui/Language.h"
#include "ui/MsgBox.h"

#include <QApplication>

#include <cstdio>
#include <memory>

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Tessaly"));
    QApplication::setQuitOnLastWindowClosed(false);
    ui::installErrorBox();
    ui::useChineseLanguage();
    if (!app::prepareProgramFolder())
        return 1;

    // Both windows belong to main(): they go before the application object.
    std::unique_ptr<frmBefor> mainWindow;
    frmLogin login;
    QObject::connect(&login, &frmLogin::loggedIn, [&mainWindow](const QString &name, const QString &role) {
        mainWindow = std::make_unique<frmBefor>();
        mainWindow->GetMame(name, role);
        mainWindow->show();
    });
    QObject::connect(&login, &frmLogin::closedWithoutLogin, [] { QApplication::quit(); });
    // Start-up timing: with TESSALY_REPORT_SHOWN=1 in the environment the
    // program prints "login-shown" once the login window has been painted for
    // the first time, so that the benchmark can time start-up from outside.
    if (base::testhooks::reportShown())
        ui::afterFirstPaint(&login, [] {
            std::fputs("login-shown\n", stdout);
            std::fflush(stdout);
        });
    login.show();
    return app.exec();
}
