#pragma once
// The deposit window frmMoneyIn and the withdrawal window frmMoneyOut: one
// implementation, CashWindow, driven by the row of the CashKind table each
// window passes. Neither shows a message nor tells the main window anything.

#include "CashEntry.h"
#include "EntryForm.h"

namespace entry {

class CashWindow : public EntryForm {
    Q_OBJECT
protected:
    CashWindow(const CashKind &kind, QWidget *parent);
    void onCommand2Click() override;

private:
    const CashKind &m_kind;
};

} // namespace entry

class frmMoneyIn : public entry::CashWindow {
    Q_OBJECT
public:
    explicit frmMoneyIn(QWidget *parent = nullptr);
};

class frmMoneyOut : public entry::CashWindow {
    Q_OBJECT
public:
    explicit frmMoneyOut(QWidget *parent = nullptr);
};
