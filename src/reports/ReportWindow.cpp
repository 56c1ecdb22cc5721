#include "ReportWindow.h"

#include "ui/Controls.h"
#include "ui/FlexGrid.h"

#include <QMenu>
#include <QMenuBar>
#include <QScopeGuard>
#include <QVBoxLayout>

namespace reports {

ReportWindow::ReportWindow(const QString &objectName, const QString &title, FileMenu fileMenu, QWidget *parent)
    : ui::UserForm(title, parent), m_MSFlexGrid1(ui::flexGrid(this, "MSFlexGrid1"))
{
    setObjectName(objectName);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(4, 4, 4, 4);
    layout->addWidget(m_MSFlexGrid1);
    if (fileMenu != FileMenu::None) {
        m_mnufile = ui::named(new QMenu(QStringLiteral("文件"), this), "mnufile");
        m_mnudel = ui::named(m_mnufile->addAction(QStringLiteral("删除")), "mnudel");
        if (fileMenu == FileMenu::MenuBar) {
            auto *bar = new QMenuBar(this);
            bar->addMenu(m_mnufile);
            layout->setMenuBar(bar);
        }
    }
    resize(760, 480);
}

void ReportWindow::formLoad()
{
    ui::UserForm::formLoad();
    m_db = store::openUserDatabase();
    // The grid is filled before the window is first painted. Hidden, the
    // view skips the scrolling and repainting work of every cell change.
    m_MSFlexGrid1->hide();
    const auto showGrid = qScopeGuard([this] { m_MSFlexGrid1->show(); });
    // The per-stock windows run hundreds of queries: one read transaction.
    const store::ReadBatch batch(m_db);
    FillGrid();
}

void ReportWindow::formUnload() { m_db.close(); }

} // namespace reports
