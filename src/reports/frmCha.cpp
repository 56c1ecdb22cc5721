#include "frmCha.h"

#include "ReportSql.h"

using namespace reports;

frmCha::frmCha(QWidget *parent)
    : RecordWindow(QStringLiteral("frmCha"), QStringLiteral("  个股详细记录"), OnError::Raise, parent)
{}

void frmCha::GetMame(const QString &GuName, const QString &GuPower, const QString &Code1)
{
    RecordWindow::GetMame(GuName, GuPower);
    m_Code1 = Code1;
}

QString frmCha::buildQuery() const { return sql::stockRecords(m_GuName, m_Code1); }
