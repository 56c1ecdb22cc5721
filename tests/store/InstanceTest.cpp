// A second start while the program runs: "已经运行！", then the end, before
// any database work. The running instance is this test process, which holds
// the lock of the program folder; the start is a child process.

#include "base/Instance.h"
#include "base/Paths.h"
#include "accounts/frmLogin.h"

#include "support/Helpers.h"
#include <QMessageBox>

#include <cstdio>

TEST(SecondInstance, ShowsAlreadyRunningAndEndsWithoutOpeningTheDatabase)
{
    // The child re-runs this test: it must use the parent's folder (no user2.mdb in it).
    static const char *const kFolderVar = "TESSALY_INSTANCE_TEST_FOLDER";
    std::unique_ptr<QTemporaryDir> owned;
    QString folder = qEnvironmentVariable(kFolderVar);
    if (folder.isEmpty()) {
        owned = std::make_unique<QTemporaryDir>();
        folder = owned->path();
        qputenv(kFolderVar, folder.toUtf8());
    }
    base::setProgramFolder(folder);
    base::previousInstance(); // the parent takes the lock here

    EXPECT_EXIT(
        {
            // Reads the box the window shows, then presses its OK.
            QTimer::singleShot(0, [] {
                if (auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget())) {
                    std::fprintf(stderr, "box: %s\n", qPrintable(box->text()));
                    box->accept();
                }
            });
            frmLogin form;
            form.show();
            std::fprintf(stderr, "still running\n");
            std::exit(3);
        },
        ::testing::ExitedWithCode(0), "box: 已经运行！");
    EXPECT_FALSE(QFileInfo::exists(QDir(folder).filePath(QStringLiteral("user2.mdb"))));
    qunsetenv(kFolderVar);
}
