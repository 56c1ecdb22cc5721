#include "frmZjin.h"

#include "ReportSql.h"

using namespace reports;

frmZjin::frmZjin(QWidget *parent)
    : RecordWindow(QStringLiteral("frmZjin"), QStringLiteral("  资金记录"), OnError::ResumeNext, parent)
{}

QString frmZjin::buildQuery() const { return sql::fundRecords(m_GuName); }
