#include "frmActions.h"

#include "TableGrid.h"
#include "analysis/Journal.h"
#include "analysis/Money.h"
#include "base/ErrorGuard.h"
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

namespace {
QLineEdit *box(QWidget *parent, const char *name)
{
    auto *e = new QLineEdit(parent);
    e->setObjectName(QString::fromLatin1(name));
    return e;
}
} // namespace

frmActions::frmActions(QWidget *parent) : ui::Form(parent)
{
    setObjectName(QStringLiteral("frmActions"));
    setWindowTitle(QStringLiteral("Tessaly"));
    txtCode = box(this, "txtCode");
    dtpExDate = new QDateEdit(QDate::currentDate(), this);
    dtpExDate->setObjectName(QStringLiteral("dtpExDate"));
    dtpExDate->setDisplayFormat(QStringLiteral("yyyy-MM-dd"));
    dtpExDate->setCalendarPopup(true);
    txtBonus = box(this, "txtBonus");
    txtTransfer = box(this, "txtTransfer");
    txtCash = box(this, "txtCash");
    txtTaxAmount = box(this, "txtTaxAmount");
    txtTaxRate = box(this, "txtTaxRate");
    txtRights = box(this, "txtRights");
    txtRightsPrice = box(this, "txtRightsPrice");
    chkRightsTaken = new QCheckBox(QStringLiteral("参与配股"), this);
    chkRightsTaken->setObjectName(QStringLiteral("chkRightsTaken"));
    txtNote = box(this, "txtNote");

    auto *form = new QFormLayout;
    form->addRow(QStringLiteral("股票代码"), txtCode);
    form->addRow(QStringLiteral("除权日期"), dtpExDate);
    form->addRow(QStringLiteral("每 10 股送股"), txtBonus);
    form->addRow(QStringLiteral("每 10 股转增"), txtTransfer);
    form->addRow(QStringLiteral("每 10 股派息（元，税前）"), txtCash);
    form->addRow(QStringLiteral("扣税金额（元）"), txtTaxAmount);
    form->addRow(QStringLiteral("或扣税比例（%）"), txtTaxRate);
    form->addRow(QStringLiteral("每 10 股配股"), txtRights);
    form->addRow(QStringLiteral("配股价格（元）"), txtRightsPrice);
    form->addRow(QString(), chkRightsTaken);
    form->addRow(QStringLiteral("备注"), txtNote);

    QPushButton *cmdAdd = ui::button(this, "cmdAdd", QStringLiteral("登记"));
    QPushButton *cmdDelete = ui::button(this, "cmdDelete", QStringLiteral("删除"));
    QPushButton *cmdClose = ui::button(this, "cmdClose", QStringLiteral("关闭"));
    connect(cmdAdd, &QPushButton::clicked, this, base::guarded([this] { addClick(); }));
    connect(cmdDelete, &QPushButton::clicked, this, base::guarded([this] { deleteClick(); }));
    connect(cmdClose, &QPushButton::clicked, this, [this] { unload(); });
    auto *buttons = new QHBoxLayout;
    buttons->addWidget(cmdAdd);
    buttons->addWidget(cmdDelete);
    buttons->addStretch(1);
    buttons->addWidget(cmdClose);

    gridActions = new ui::FlexGrid(this);
    gridActions->setObjectName(QStringLiteral("gridActions"));
    auto *note = new QLabel(QStringLiteral("分红送配只用于投资分析；交易明细、盈亏记录和持股列表等原有窗口不计分红送配。"), this);
    note->setObjectName(QStringLiteral("lblNote"));
    note->setWordWrap(true);

    auto *left = new QVBoxLayout;
    left->addLayout(form);
    left->addLayout(buttons);
    left->addStretch(1);
    auto *right = new QVBoxLayout;
    right->addWidget(gridActions, 1);
    right->addWidget(note);
    auto *top = new QHBoxLayout(this);
    top->addLayout(left);
    top->addLayout(right, 1);
    resize(980, 460);
}

void frmActions::GetMame(const QString &GuName, const QString &GuPower, const QString &Code1)
{
    m_GuName = GuName;
    m_GuPower = GuPower;
    m_Code1 = Code1;
}

void frmActions::formLoad()
{
    setWindowTitle(m_GuName + QStringLiteral("  分红送配"));
    m_db = store::openUserDatabase();
    txtCode->setText(m_Code1);
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
    showTable(*gridActions, actionTable(a), {1100, 800, 600, 600, 700, 1300, 800, 900, 1800});
}

void frmActions::addClick()
{
    CorporateAction a;
    a.code = txtCode->text().trimmed();
    a.exDate = dtpExDate->date();
    a.rightsTaken = chkRightsTaken->isChecked();
    a.note = txtNote->text().trimmed();
    const struct {
        QLineEdit *box;
        const char *label;
        int decimals;
        int64_t *target;
    } fields[] = {
        {txtBonus, "送股", 4, &a.bonusPer10},        {txtTransfer, "转增", 4, &a.transferPer10},
        {txtCash, "派息", 4, &a.cashPer10},          {txtTaxAmount, "扣税金额", 2, &a.taxFen},
        {txtTaxRate, "扣税比例", 2, &a.taxRate},     {txtRights, "配股", 4, &a.rightsPer10},
        {txtRightsPrice, "配股价格", 4, &a.rightsPrice},
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
    for (QLineEdit *e : {txtBonus, txtTransfer, txtCash, txtTaxAmount, txtTaxRate, txtRights, txtRightsPrice, txtNote})
        e->clear();
    chkRightsTaken->setChecked(false);
    fillList();
}

void frmActions::deleteClick()
{
    const int row = gridActions->row();
    if (row < 1 || row > int(m_ids.size()))
        return;
    if (deleteAction(m_db, m_GuName, m_ids[size_t(row - 1)]))
        m_changed = true;
    fillList();
}

} // namespace analysis
