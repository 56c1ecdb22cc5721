// tessaly-screenshots <program-folder> <out-dir>
// Opens every window of the program on a prepared program folder (the demo
// folder: tessaly-makedb, then tessaly-demodata --account) as the demo user
// and saves a PNG of each. Windows are shown without their modal loops, so
// that one process can walk through all of them.

#include "analysis/windows/frmAnalysis.h"
#include "base/Paths.h"
#include "base/TestHooks.h"
#include "entry/CashWindow.h"
#include "entry/TradeWindow.h"
#include "import/frmImport.h"
#include "marketdata/DataSet.h"
#include "platform/frmBefor.h"
#include "platform/frmDataEnv.h"
#include "reports/frmCha.h"
#include "reports/frmJyrec.h"
#include "reports/frmYkui.h"
#include "reports/frmZjin.h"
#include "accounts/frmGuanli.h"
#include "accounts/frmLogin.h"
#include "ui/FlexGrid.h"
#include "ui/Language.h"
#include "ui/MsgBox.h"

#include <QApplication>
#include <QCalendarWidget>
#include <QDateEdit>
#include <QMenu>
#include <QScreen>
#include <QTimer>
#include <QDir>
#include <QLineEdit>
#include <QListWidget>
#include <QTabWidget>
#include <QTest>

#include <cstdio>

namespace {

const QString kUser = QStringLiteral("DEMO");
const QString kPassword = QStringLiteral("demo");
const QString kPower = QStringLiteral("user");

class Shooter {
public:
    explicit Shooter(const QString &outDir) : m_outDir(outDir) {}

    // Shows `w` (its load runs on this first show), lets it paint, saves it.
    void shot(QWidget *w, const QString &name)
    {
        if (!w->isVisible()) {
            w->show();
            if (!QTest::qWaitForWindowExposed(w))
                std::fprintf(stderr, "%s: window not exposed\n", qPrintable(name));
        }
        settle();
        save(w->grab(), name);
    }

    void save(const QPixmap &image, const QString &name)
    {
        const QString file = m_outDir + u'/' + name + QStringLiteral(".png");
        if (image.isNull() || !image.save(file)) {
            std::fprintf(stderr, "cannot write %s\n", qPrintable(file));
            m_failed = true;
            return;
        }
        std::printf("%-20s %4dx%d\n", qPrintable(name + QStringLiteral(".png")), image.width(), image.height());
    }

    static void settle()
    {
        for (int i = 0; i < 5; ++i) {
            QApplication::processEvents();
            QTest::qWait(40);
        }
    }

    // The part of the screen that `area` covers: for pop-ups, which are
    // windows of their own, together with the window they belong to.
    void shotScreen(const QRect &area, const QString &name)
    {
        settle();
        save(QGuiApplication::primaryScreen()->grabWindow(0, area.x(), area.y(), area.width(), area.height()), name);
    }

    bool failed() const { return m_failed; }

private:
    QString m_outDir;
    bool m_failed = false;
};

template <typename T>
T *child(QWidget *w, const char *name)
{
    T *c = w->findChild<T *>(QString::fromLatin1(name));
    if (!c)
        std::fprintf(stderr, "%s has no control %s\n", qPrintable(w->objectName()), name);
    return c;
}

void clickCell(ui::FlexGrid *grid, int row, int col)
{
    const QRect cell = grid->visualRect(grid->model()->index(row, col));
    QTest::mouseClick(grid->viewport(), Qt::LeftButton, {}, cell.center());
}

// Shows an entry or report window of the demo user, saves it and closes it.
template <typename Window, typename... Extra>
void shotUserWindow(Shooter &s, QWidget *parent, const QString &name, const Extra &...extra)
{
    Window w(parent);
    w.GetMame(kUser, kPower, extra...);
    s.shot(&w, name);
    w.close();
}

} // namespace

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Tessaly"));
    QApplication::setQuitOnLastWindowClosed(false);
    ui::useChineseLanguage();
    const QStringList args = QApplication::arguments();
    if (args.size() != 3) {
        std::fprintf(stderr, "usage: tessaly-screenshots <program-folder> <out-dir>\n");
        return 2;
    }
    const QString folder = QDir(args[1]).absolutePath();
    const QString outDir = QDir(args[2]).absolutePath();
    if (!QFileInfo(folder + QStringLiteral("/user2.mdb")).isFile() || !QDir().mkpath(outDir)) {
        std::fprintf(stderr, "tessaly-screenshots: no user2.mdb in %s or cannot make %s\n", qPrintable(folder),
                     qPrintable(outDir));
        return 2;
    }
    base::setProgramFolder(folder);
    ui::installErrorBox();
    // A message box would stop the walk; its text goes to stderr instead.
    base::testhooks::setMessagesToStderr(true);

    Shooter s(outDir);
    {
        frmLogin login;
        login.show();
        if (auto *name = child<QLineEdit>(&login, "txtUserName"))
            name->setText(kUser);
        if (auto *pwd = child<QLineEdit>(&login, "txtPassword"))
            pwd->setText(kPassword);
        s.shot(&login, QStringLiteral("login"));
    }
    {
        frmGuanli users;
        users.GetName(QStringLiteral("SUPERVISOR"), QStringLiteral("System"));
        users.show();
        Shooter::settle();
        if (auto *list = child<QListWidget>(&users, "List1"); list && list->count() > 0)
            QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->visualItemRect(list->item(0)).center());
        s.shot(&users, QStringLiteral("users"));
        users.close();
    }

    frmBefor main;
    main.GetMame(kUser, kPower);
    s.shot(&main, QStringLiteral("main"));
    auto *grid = child<ui::FlexGrid>(&main, "MSFlexGrid1");
    QString heldCode;
    if (grid && grid->rows() > 1) {
        heldCode = grid->textMatrix(1, 1);
        clickCell(grid, 1, 1);
        s.shot(&main, QStringLiteral("main-chart"));
    } else {
        std::fprintf(stderr, "the holdings grid is empty: no chart shot\n");
    }

    {
        // The date picker's calendar, in Chinese.
        frmBuy buy(&main);
        buy.GetMame(kUser, kPower);
        s.shot(&buy, QStringLiteral("buy"));
        if (auto *picker = child<QDateEdit>(&buy, "DTPicker1")) {
            // A click on the drop-down arrow at the right end opens it.
            QTest::mouseClick(picker, Qt::LeftButton, {}, QPoint(picker->width() - 6, picker->height() / 2));
            QWidget *calendar = picker->calendarWidget()->window();
            s.shotScreen(buy.frameGeometry().united(calendar->frameGeometry()), QStringLiteral("calendar"));
            calendar->hide();
        }
        buy.close();
    }
    {
        // A message box of the program, with Qt's own button text.
        base::testhooks::setMessagesToStderr(false);
        QTimer::singleShot(300, [&s] {
            if (QWidget *box = QApplication::activeModalWidget()) {
                s.shot(box, QStringLiteral("msgbox"));
                box->close();
            }
        });
        ui::msgBox(QStringLiteral("用户名或密码错误！"));
        base::testhooks::setMessagesToStderr(true);
    }
    shotUserWindow<frmShell>(s, &main, QStringLiteral("sell"));
    shotUserWindow<frmMoneyIn>(s, &main, QStringLiteral("deposit"));
    shotUserWindow<frmMoneyOut>(s, &main, QStringLiteral("withdrawal"));
    shotUserWindow<frmJyrec>(s, &main, QStringLiteral("trade-details"));
    shotUserWindow<frmCha>(s, &main, QStringLiteral("stock-records"), heldCode);
    shotUserWindow<frmZjin>(s, &main, QStringLiteral("fund-records"));
    shotUserWindow<frmYkui>(s, &main, QStringLiteral("profit-loss"));
    {
        frmDataEnv settings(&main);
        s.shot(&settings, QStringLiteral("settings"));
        settings.close();
    }
    {
        marketdata::DataSet dataSet(&main);
        s.shot(&dataSet, QStringLiteral("dataset"));
        dataSet.close();
    }

    {
        // The analysis on its chart, the mouse over the last third of it.
        analysis::frmAnalysis w(&main);
        w.GetMame(kUser, kPower);
        s.shot(&w, QStringLiteral("analysis-stocks"));
        if (auto *tabs = child<QTabWidget>(&w, "tabAnalysis"))
            tabs->setCurrentIndex(2);
        if (auto *chart = child<QWidget>(&w, "chartValues")) {
            Shooter::settle();
            QTest::mouseMove(chart, QPoint(chart->width() * 2 / 3, chart->height() / 2));
        }
        s.shot(&w, QStringLiteral("analysis"));
        w.close();
    }
    {
        // The preview of a statement from the repository's test data, copied
        // into the program folder so that the window shows a plain file name.
        const QString name = QStringLiteral("交割单2023.xls");
        QFile::copy(QStringLiteral(TESSALY_IMPORT_SAMPLE), folder + u'/' + name);
        QDir::setCurrent(folder);
        frmImport import(&main);
        import.GetMame(kUser, kPower);
        import.show();
        import.loadFile(name);
        s.shot(&import, QStringLiteral("import"));
        import.close();
    }

    main.FrmRef();
    s.shot(&main, QStringLiteral("raw"));
    if (grid && grid->rows() > 1) {
        // The grid's right-click menu on the raw records.
        const QRect cell = grid->visualRect(grid->model()->index(1, 2));
        QTest::mousePress(grid->viewport(), Qt::RightButton, {}, cell.center());
        QTest::mouseRelease(grid->viewport(), Qt::RightButton, {}, cell.center());
        if (auto *menu = child<QMenu>(&main, "mnuEdit")) {
            s.shotScreen(main.frameGeometry(), QStringLiteral("grid-menu"));
            menu->hide();
        }
    }
    return s.failed() ? 1 : 0;
}
