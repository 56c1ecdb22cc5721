#include "TradeWindow.h"

#include "StockCodeRules.h"

#include "ui/MsgBox.h"

#include <QLineEdit>

namespace entry {

TradeWindow::TradeWindow(const TradeKind &kind, QWidget *parent)
    : EntryForm(kind.captionWord, kind.labels, kind.selectsCodeOnDateEnter, parent), m_kind(kind)
{
    if (m_kind.looksUpName) {
        // Installed after the Enter chain so that it sees every key first:
        // any key empties the name box, Enter then fills it from the stock
        // list before the chain moves on to the name box.
        ui::onAnyKey(text(2), [this](int key) {
            text(3)->clear();
            if (key == Qt::Key_Return || key == Qt::Key_Enter) {
                const QString name = stockNameFor(text(2)->text());
                if (!name.isEmpty())
                    text(3)->setText(name);
            }
        });
    }
}

void TradeWindow::onCommand2Click()
{
    const TradeInput input{m_GuName,        date(),          text(2)->text(), text(3)->text(),
                           text(4)->text(), text(5)->text(), text(6)->text()};
    const QString refusal = storeTrade(m_kind, input);
    if (!refusal.isEmpty()) {
        ui::msgBox(refusal);
        return;
    }
    emit tradeStored();
    clearForNextEntry();
}

} // namespace entry

frmBuy::frmBuy(QWidget *parent) : entry::TradeWindow(entry::kBuy, parent) {}

frmShell::frmShell(QWidget *parent) : entry::TradeWindow(entry::kSell, parent) {}
