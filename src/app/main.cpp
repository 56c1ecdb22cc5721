// Tessaly: the login window is the first window; a successful login hands the
// user to the main window.
#include "platform/frmBefor.h"
#include "store/frmLogin.h"
#include "UserFolder.h"
#include "ui/Language.h"
#include "ui/MsgBox.h"

#include <QApplication>
#include <QEvent>

#include <cstdio>

namespace {

// Start-up timing: with TESSALY_REPORT_SHOWN=1 in the environment the program
// prints "login-shown" on its standard output once the login window has been
// painted for the first time, so that the benchmark can time start-up from
// outside. Nothing else changes.
class ShownReporter : public QObject {
public:
    using QObject::QObject;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Paint) {
            watched->removeEventFilter(this);
            // Queued, so that the line follows the whole first paint.
            QMetaObject::invokeMethod(
                this,
                [] {
                    std::fputs("login-shown\n", stdout);
                    std::fflush(stdout);
                },
                Qt::QueuedConnection);
        }
        return false;
    }
};

} // namespace

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Tessaly"));
    QApplication::setQuitOnLastWindowClosed(false);
    ui::installErrorBox();
    ui::useChineseLanguage();
    if (!app::prepareProgramFolder())
        return 1;

    frmLogin login;
    QObject::connect(&login, &frmLogin::loggedIn, [](const QString &name, const QString &role) {
        auto *main = new frmBefor;
        main->GetMame(name, role);
        main->show();
    });
    QObject::connect(&login, &frmLogin::closedWithoutLogin, [] { QApplication::quit(); });
    ShownReporter shownReporter;
    if (qEnvironmentVariableIntValue("TESSALY_REPORT_SHOWN") == 1)
        login.installEventFilter(&shownReporter);
    login.show();
    return app.exec();
}
