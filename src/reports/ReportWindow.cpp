#include "ReportWindow.h"

#include "ui/FlexGrid.h"

#include <QMenu>
#include <QMenuBar>
#include <QScopeGuard>
#include <QVBoxLayout>

namespace reports {

ReportWindow::ReportWindow(const QString &objectName, const QString &title, FileMenu fileMenu, QWidget *parent)
    : ui::Form(parent), MSFlexGrid1(new ui::FlexGrid(this)), m_title(title)
{
    setObjectName(objectName);
    MSFlexGrid1->setObjectName(QStringLiteral("MSFlexGrid1"));
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(4, 4, 4, 4);
    layout->addWidget(MSFlexGrid1);
    if (fileMenu != FileMenu::None) {
        mnufile = new QMenu(QStringLiteral("文件"), this);
        mnufile->setObjectName(QStringLiteral("mnufile"));
        mnudel = mnufile->addAction(QStringLiteral("删除"));
        mnudel->setObjectName(QStringLiteral("mnudel"));
        if (fileMenu == FileMenu::MenuBar) {
            auto *bar = new QMenuBar(this);
            bar->addMenu(mnufile);
            layout->setMenuBar(bar);
        }
    }
    resize(760, 480);
}

void ReportWindow::GetMame(const QString &GuName, const QString &GuPower)
{
    m_GuName = GuName;
    m_GuPower = GuPower;
}

void ReportWindow::formLoad()
{
    setWindowTitle(m_GuName + m_title);
    m_db = store::openUserDatabase();
    // The grid is filled before the window is first painted. Hidden, the
    // view skips the scrolling and repainting work of every cell change.
    MSFlexGrid1->hide();
    const auto showGrid = qScopeGuard([this] { MSFlexGrid1->show(); });
    // The per-stock windows run hundreds of queries: one read transaction.
    const store::ReadBatch batch(m_db);
    FillGrid();
}

void ReportWindow::formUnload()
{
    m_db.close();
}

} // namespace reports
