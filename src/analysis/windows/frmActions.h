#pragma once
// The corporate-action window (分红送配): enters an action of a stock on an
// ex-date (bonus and converted shares, cash dividend with its tax, rights
// issue), lists the account's actions with what they did, and deletes one.
// An action that cannot be right (an impossible ratio, no holding before the
// ex-date) is refused with a message and nothing is stored.

#include "store/Database.h"
#include "ui/Form.h"

#include <vector>

class QCheckBox;
class QDateEdit;
class QLineEdit;

namespace ui {
class FlexGrid;
}

namespace analysis {

class frmActions : public ui::UserForm {
    Q_OBJECT
public:
    explicit frmActions(QWidget *parent = nullptr);

    void GetMame(const QString &GuName, const QString &GuPower, const QString &Code1 = QString());
    // Whether an action was stored or deleted while the window was open.
    bool changed() const { return m_changed; }

protected:
    void formLoad() override;
    void formUnload() override;

private:
    void onCmdAddClick();
    void onCmdDeleteClick();
    void fillList();

    QString m_Code1;
    store::Database m_db;
    std::vector<int64_t> m_ids; // action id of each list row
    bool m_changed = false;

    QLineEdit *m_txtCode;
    QDateEdit *m_dtpExDate;
    QLineEdit *m_txtBonus;
    QLineEdit *m_txtTransfer;
    QLineEdit *m_txtCash;
    QLineEdit *m_txtTaxAmount;
    QLineEdit *m_txtTaxRate;
    QLineEdit *m_txtRights;
    QLineEdit *m_txtRightsPrice;
    QCheckBox *m_chkRightsTaken;
    QLineEdit *m_txtNote;
    ui::FlexGrid *m_gridActions;
};

} // namespace analysis
