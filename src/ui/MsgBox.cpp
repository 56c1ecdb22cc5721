#include "MsgBox.h"

#include "LogCategories.h"

#include "base/ErrorGuard.h"
#include "base/LogCategories.h"
#include "base/TestHooks.h"

#include <QApplication>
#include <QMessageBox>

namespace ui {

Q_LOGGING_CATEGORY(lcUi, "tessaly.ui")

namespace {
QStringList *g_recorder = nullptr;

void showBox(QMessageBox::Icon icon, const QString &text)
{
    QMessageBox box(icon, QStringLiteral("Tessaly"), text, QMessageBox::Ok, QApplication::activeWindow());
    box.exec();
}
} // namespace

void msgBox(const QString &text)
{
    if (g_recorder) {
        g_recorder->append(text);
        return;
    }
    // Tests that drive the program as a child process read the texts from
    // stderr instead of answering a box.
    if (base::testhooks::messagesToStderr()) {
        qCInfo(lcUi).noquote() << text;
        return;
    }
    showBox(QMessageBox::Information, text);
}

void setMsgBoxRecorder(QStringList *recorder) { g_recorder = recorder; }

void installErrorBox()
{
    base::setFatalHandler([](const base::RuntimeError &e) {
        // The text always goes to stderr too, so that a test driving the
        // program as a child process can read it; such tests set
        // TESSALY_ERRORS_TO_STDERR to skip the box itself.
        qCCritical(base::lcErrors).noquote() << base::fatalErrorText(e);
        if (QApplication::instance() && !base::testhooks::errorsToStderr())
            showBox(QMessageBox::Critical, base::fatalErrorText(e));
        base::endProgram(1);
    });
}

} // namespace ui
