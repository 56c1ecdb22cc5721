#include "frmActions.h"

#include "TableGrid.h"
#include "analysis/Journal.h"
#include "analysis/Money.h"
#include "base/ErrorGuard.h"
#include "ui/Controls.h"
#include "ui/FlexGrid.h"
#include "ui/MsgBox.h"

#include <QCheckBox>
#include <QDateEdit>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace analysis {

frmActions::frmActions(QWidget *parent) : ui::UserForm(QStringLiteral("  分红送配"), parent)
{
    setObjectName(QStringLiteral("frmActions"));
    setWindowTitle(QStringLiteral("Tessaly"));
    m_txtCode = ui::textBox(this, "txtCode");
    m_dtpExDate = ui::named(new QDateEdit(QDate::currentDate(), this), "dtpExDate");
    m_dtpExDate->setDisplayFormat(QStringLiteral("yyyy-MM-dd"));
    m_dtpExDate->setCalendarPopup(true);
    m_txtBonus = ui::textBox(this, "txtBonus");
    m_txtTransfer = ui::textBox(this, "txtTransfer");
    m_txtCash = ui::textBox(this, "txtCash");
    m_txtTaxAmount = ui::textBox(this, "txtTaxAmount");
    m_txtTaxRate = ui::textBox(this, "txtTaxRate");
    m_txtRights = ui::textBox(this, "txtRights");
    m_txtRightsPrice = ui::textBox(this, "txtRightsPrice");
    m_chkRightsTaken = ui::named(new QCheckBox(QStringLiteral("参与配股"), this), "chkRightsTaken");
    m_txtNote = ui::textBox(this, "txtNote");

    auto *form = new QFormLayout;
    form->addRow(QStringLiteral("股票代码"), m_txtCode);
    form->addRow(QStringLiteral("除权日期"), m_dtpExDate);
    form->addRow(QStringLiteral("每 10 股送股"), m_txtBonus);
    form->addRow(QStringLiteral("每 10 股转增"), m_txtTransfer);
    form->addRow(QStringLiteral("每 10 股派息（元，税前）"), m_txtCash);
    form->addRow(QStringLiteral("扣税金额（元）"), m_txtTaxAmount);
    form->addRow(QStringLiteral("或扣税比例（%）"), m_txtTaxRate);
    form->addRow(QStringLiteral("每 10 股配股"), m_txtRights);
    form->addRow(QStringLiteral("配股价格（元）"), m_txtRightsPrice);
    form->addRow(QString(), m_chkRightsTaken);
    form->addRow(QStringLiteral("备注"), m_txtNote);

    QPushButton *cmdAdd = ui::button(this, "cmdAdd", QStringLiteral("登记"));
    QPushButton *cmdDelete = ui::button(this, "cmdDelete", QStringLiteral("删除"));
    QPushButton *cmdClose = ui::button(this, "cmdClose", QStringLiteral("关闭"));
    connect(cmdAdd, &QPushButton::clicked, this, base::guarded([this] { onCmdAddClick(); }));
    connect(cmdDelete, &QPushButton::clicked, this, base::guarded([this] { onCmdDeleteClick(); }));
    connect(cmdClose, &QPushButton::clicked, this, [this] { unload(); });
    auto *buttons = new QHBoxLayout;
    buttons->addWidget(cmdAdd);
    buttons->addWidget(cmdDelete);
    buttons->addStretch(1);
    buttons->addWidget(cmdClose);

    m_gridActions = ui::flexGrid(this, "gridActions");
    auto *note =
        ui::label(this, "lblNote",
                  QStringLiteral("分红送配只用于投资分析；交易明细、盈亏记录和持股列表等原有窗口不计分红送配。"));
    note->setWordWrap(true);

    auto *left = new QVBoxLayout;
    left->addLayout(form);
    left->addLayout(buttons);
    left->addStretch(1);
    auto *right = new QVBoxLayout;
    right->addWidget(m_gridActions, 1);
    right->addWidget(note);
    auto *top = new QHBoxLayout(this);
    top->addLayout(left);
    top->addLayout(right, 1);
    resize(980, 460);
}

void frmActions::GetMame(const QString &GuName, const QString &GuPower, const QString &Code1)
{
    ui::UserForm::GetMame(GuName, GuPower);
    m_Code1 = Code1;
}

void frmActions::formLoad()
{
    ui::UserForm::formLoad();
    m_db = store::openUserDatabase();
    m_txtCode->setText(m_Code1);
    fillList();
}

void frmActions::formUnload() { m_db.close(); }

void frmActions::fillList()
{
    const Journal journal = loadJournal(m_db, m_GuName);
    const Analysis a = analyse(journal, CostMethod::MovingAverage, {}, QDate::currentDate());
    m_ids.clear();
    for (const ActionResult &r : a.actions)
        m_ids.push_back(r.action.id);
    showTable(*m_gridActions, actionTable(a), {1100, 800, 600, 600, 700, 1300, 800, 900, 1800});
}

void frmActions::onCmdAddClick()
{
    CorporateAction a;
    a.code = m_txtCode->text().trimmed();
    a.exDate = m_dtpExDate->date();
    a.rightsTaken = m_chkRightsTaken->isChecked();
    a.note = m_txtNote->text().trimmed();
    const struct {
        QLineEdit *box;
        const char *label;
        int decimals;
        int64_t *target;
    } fields[] = {
        {m_txtBonus, "送股", 4, &a.bonusPer10},
        {m_txtTransfer, "转增", 4, &a.transferPer10},
        {m_txtCash, "派息", 4, &a.cashPer10},
        {m_txtTaxAmount, "扣税金额", 2, &a.taxFen},
        {m_txtTaxRate, "扣税比例", 2, &a.taxRate},
        {m_txtRights, "配股", 4, &a.rightsPer10},
        {m_txtRightsPrice, "配股价格", 4, &a.rightsPrice},
    };
    for (const auto &f : fields) {
        const auto v = parseScaled(f.box->text(), f.decimals);
        if (!v) {
            ui::msgBox(QStringLiteral("“%1”不是有效的数字（最多 %2 位小数）！")
                           .arg(QString::fromUtf8(f.label))
                           .arg(f.decimals));
            return;
        }
        *f.target = *v;
    }
    const QString message = validateAction(m_db, m_GuName, a);
    if (!message.isEmpty()) {
        ui::msgBox(message);
        return;
    }
    analysis::addAction(m_db, m_GuName, a);
    m_changed = true;
    for (QLineEdit *e :
         {m_txtBonus, m_txtTransfer, m_txtCash, m_txtTaxAmount, m_txtTaxRate, m_txtRights, m_txtRightsPrice, m_txtNote})
        e->clear();
    m_chkRightsTaken->setChecked(false);
    fillList();
}

void frmActions::onCmdDeleteClick()
{
    const int row = m_gridActions->row();
    if (row < 1 || row > int(m_ids.size()))
        return;
    if (deleteAction(m_db, m_GuName, m_ids[size_t(row - 1)]))
        m_changed = true;
    fillList();
}

} // namespace analysis
