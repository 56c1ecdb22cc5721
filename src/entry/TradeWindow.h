#pragma once
// The buy window frmBuy and the sell window frmShell: one implementation,
// TradeWindow, driven by the row of the TradeKind table each window passes.
//
// The window stays open after each stored trade for the next entry. After a
// trade has been stored it emits tradeStored(); the main window connects that
// to its FrmRef.

#include "EntryForm.h"
#include "TradeEntry.h"

namespace entry {

class TradeWindow : public EntryForm {
    Q_OBJECT
signals:
    // A trade row has just been stored (not emitted for a refused entry).
    void tradeStored();

protected:
    TradeWindow(const TradeKind &kind, QWidget *parent);
    void onCommand2Click() override;

private:
    const TradeKind &m_kind;
};

} // namespace entry

class frmBuy : public entry::TradeWindow {
    Q_OBJECT
public:
    explicit frmBuy(QWidget *parent = nullptr);
};

class frmShell : public entry::TradeWindow {
    Q_OBJECT
public:
    explicit frmShell(QWidget *parent = nullptr);
};
