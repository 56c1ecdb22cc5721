#include "CashWindow.h"

#include <QLineEdit>

namespace entry {

CashWindow::CashWindow(const CashKind &kind, QWidget *parent)
    : EntryForm(kind.captionWord, kind.labels, /*selectsCodeOnDateEnter*/ true, parent), m_kind(kind)
{}

void CashWindow::onCommand2Click()
{
    storeCash(m_kind, CashInput{m_GuName, date(), text(2)->text(), text(3)->text()});
    clearForNextEntry();
}

} // namespace entry

frmMoneyIn::frmMoneyIn(QWidget *parent) : entry::CashWindow(entry::kDeposit, parent) {}

frmMoneyOut::frmMoneyOut(QWidget *parent) : entry::CashWindow(entry::kWithdrawal, parent) {}
