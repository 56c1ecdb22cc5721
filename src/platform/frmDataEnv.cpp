#include "frmDataEnv.h"

#include "base/ErrorGuard.h"
#include "base/Numbers.h"
#include "reports/QueryGrid.h"
#include "ui/Controls.h"
#include "ui/FlexGrid.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

// Box i shows column i + 1 of 税率表; the labels follow the use of each column.
struct FeeBox {
    const char *label;
    const char *unit;
};
const FeeBox kFeeBoxes[6] = {
    {"A 股交易费率", "%"},   {"基金交易费率", "%"},      {"深圳最低收费", "RMB"},
    {"上海最低收费", "RMB"}, {"上海 B 股交易费率", "%"}, {"深圳 B 股交易费率", "%"},
};

} // namespace

frmDataEnv::frmDataEnv(QWidget *parent) : ui::Form(parent)
{
    setObjectName(QStringLiteral("frmDataEnv"));
    setWindowTitle(QStringLiteral("设置"));

    auto *fees = new QGroupBox(QStringLiteral("交易费用"), this);
    auto *feeGrid = new QGridLayout(fees);
    for (int i = 0; i < 6; ++i) {
        auto *label = ui::label(fees, QStringLiteral("Label%1").arg(i + 1), QString::fromUtf8(kFeeBoxes[i].label));
        auto *box = ui::textBox(fees, QStringLiteral("SetShui_%1").arg(i));
        auto *unit = ui::label(fees, QStringLiteral("lblUnit_%1").arg(i), QString::fromUtf8(kFeeBoxes[i].unit));
        label->setBuddy(box);
        feeGrid->addWidget(label, i, 0);
        feeGrid->addWidget(box, i, 1);
        feeGrid->addWidget(unit, i, 2);
        m_SetShui.append(box);
    }
    // Enter moves to the next box with its text selected; the last box has none.
    for (int i = 0; i < 6; ++i) {
        ui::onEnter(m_SetShui[i], [this, i] {
            base::resumeNext([&] {
                if (i + 1 < m_SetShui.size())
                    ui::focusAndSelect(m_SetShui[i + 1]);
            });
        });
    }

    m_List1 = ui::listBox(this, "List1");
    m_Text10 = ui::textBox(this, "Text10");
    m_MSHFlexGrid1 = ui::flexGrid(this, "MSHFlexGrid1");

    auto *cmd1 = ui::button(this, "Command1", QStringLiteral("修改"));
    auto *cmd2 = ui::button(this, "Command2", QStringLiteral("执行"));
    auto *cmd3 = ui::button(this, "Command3", QStringLiteral("取消"));
    auto *cmd4 = ui::button(this, "Command4", QStringLiteral("设置股票数据"));
    connect(cmd1, &QPushButton::clicked, this, base::guarded([this] { onCommand1Click(); }));
    connect(cmd2, &QPushButton::clicked, this, base::guarded([this] { onCommand2Click(); }));
    connect(cmd3, &QPushButton::clicked, this, base::guarded([this] { unload(); }));
    connect(cmd4, &QPushButton::clicked, this, base::guarded([this] { onCommand4Click(); }));

    auto *left = new QVBoxLayout;
    left->addWidget(fees);
    auto *buttons = new QHBoxLayout;
    buttons->addWidget(cmd1);
    buttons->addWidget(cmd4);
    buttons->addWidget(cmd3);
    left->addLayout(buttons);
    left->addStretch();

    auto *right = new QVBoxLayout;
    auto *tables = ui::label(this, "Label7", QStringLiteral("数据表"));
    right->addWidget(tables);
    right->addWidget(m_List1, 1);
    auto *query = new QHBoxLayout;
    query->addWidget(m_Text10, 1);
    query->addWidget(cmd2);
    right->addLayout(query);
    right->addWidget(m_MSHFlexGrid1, 3);

    auto *top = new QHBoxLayout(this);
    top->addLayout(left);
    top->addLayout(right, 1);
    resize(760, 420);
}

frmDataEnv::~frmDataEnv() = default;

void frmDataEnv::formLoad()
{
    m_db = store::openUserDatabase();
    for (const store::TableDef &t : m_db.tableDefs())
        if (t.attributes == 0)
            m_List1->addItem(t.name);
    ReadA(QStringLiteral("select * from 税率表"));
    m_db.close();
}

int16_t frmDataEnv::ReadA(const QString &sql)
{
    using base::resumeNext;
    store::Recordset rs;
    resumeNext([&] { rs = m_db.openRecordset(sql); });
    int last = -1;
    resumeNext([&] { last = rs.fieldCount() - 1; });
    for (int n = 1; n <= last; ++n) {
        resumeNext([&] {
            const QVariant v = rs.field(n);
            const QString text = base::variantText(v);
            m_SetShui.at(n - 1)->setText(v.isNull() || text.isEmpty() ? QStringLiteral("--") : text);
        });
    }
    return 0;
}

int16_t frmDataEnv::WriteA(const QString &sql)
{
    store::Recordset rs = m_db.openRecordset(sql);
    rs.Edit();
    const int last = rs.fieldCount() - 1;
    for (int n = 1; n <= last; ++n) {
        if (n - 1 >= m_SetShui.size())
            base::raiseSubscript();
        rs.setField(n, m_SetShui[n - 1]->text());
    }
    rs.Update();
    return 0;
}

int16_t frmDataEnv::SeachA(const QString &sql)
{
    // Runs on the window's handle as it stands, which is closed after load
    // and after "修改": the query fails and the failure is ignored.
    reports::fillGridFromQuery(m_db, *m_MSHFlexGrid1, m_current, sql, reports::OnError::ResumeNext,
                               reports::FieldLayout::AllFields);
    return 0;
}

void frmDataEnv::onCommand1Click()
{
    m_db = store::openUserDatabase();
    WriteA(QStringLiteral("select * from 税率表"));
    m_db.close();
}

void frmDataEnv::onCommand2Click()
{
    m_sql = m_Text10->text().trimmed();
    SeachA(m_sql);
}

void frmDataEnv::onCommand4Click()
{
    unload();
    if (m_openDataSet)
        m_openDataSet();
}
