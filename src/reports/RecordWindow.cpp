#include "RecordWindow.h"

#include "base/ErrorGuard.h"
#include "ui/FlexGrid.h"

#include <QAction>
#include <QMenu>

namespace reports {

RecordWindow::RecordWindow(const QString &objectName, const QString &title, OnError fillErrors, QWidget *parent)
    : ReportWindow(objectName, title, FileMenu::PopUp, parent), m_fillErrors(fillErrors)
{
    connect(m_MSFlexGrid1, &ui::FlexGrid::gridMouseDown, this,
            base::guarded([this](int button, int x, int y) { onMSFlexGrid1MouseDown(button, x, y); }));
    connect(m_mnudel, &QAction::triggered, this, base::guarded([this](bool) { onMnudelClick(); }));
}

int16_t RecordWindow::SeachA(QString Sqltxt)
{
    return fillGridFromQuery(m_db, *m_MSFlexGrid1, m_rs, Sqltxt, m_fillErrors, FieldLayout::SkipFirst);
}

void RecordWindow::FillGrid()
{
    m_Sqltxt = buildQuery();
    SeachA(m_Sqltxt);
}

void RecordWindow::formUnload()
{
    m_rs = store::Recordset();
    ReportWindow::formUnload();
}

void RecordWindow::onMSFlexGrid1MouseDown(int button, int x, int y)
{
    if (button == 2)
        m_mnufile->popup(m_MSFlexGrid1->viewport()->mapToGlobal(QPoint(x, y)));
}

void RecordWindow::onMnudelClick()
{
    if (!deleteShownRecord(m_rs, m_MSFlexGrid1->row()))
        return;
    m_Sqltxt = buildQuery();
    SeachA(m_Sqltxt);
    m_Sqltxt.clear();
}

} // namespace reports
