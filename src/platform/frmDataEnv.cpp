#include "frmDataEnv.h"

#include "reports/QueryGrid.h"
#include "base/ErrorGuard.h"
#include "base/Numbers.h"
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
    {"A 股交易费率", "%"},  {"基金交易费率", "%"},      {"深圳最低收费", "RMB"},
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
        auto *label = new QLabel(QString::fromUtf8(kFeeBoxes[i].label), fees);
        label->setObjectName(QStringLiteral("Label%1").arg(i + 1));
        auto *box = new QLineEdit(fees);
        box->setObjectName(QStringLiteral("SetShui_%1").arg(i));
        auto *unit = new QLabel(QString::fromUtf8(kFeeBoxes[i].unit), fees);
        unit->setObjectName(QStringLiteral("lblUnit_%1").arg(i));
        label->setBuddy(box);
        feeGrid->addWidget(label, i, 0);
        feeGrid->addWidget(box, i, 1);
        feeGrid->addWidget(unit, i, 2);
        m_setShui.append(box);
    }
    // Enter moves to the next box with its text selected; the last box has none.
    for (int i = 0; i < 6; ++i) {
        ui::onEnter(m_setShui[i], [this, i] {
            base::resumeNext([&] {
                if (i + 1 < m_setShui.size())
                    ui::focusAndSelect(m_setShui[i + 1]);
            });
        });
    }

    m_list1 = new QListWidget(this);
    m_list1->setObjectName(QStringLiteral("List1"));
    m_text10 = new QLineEdit(this);
    m_text10->setObjectName(QStringLiteral("Text10"));
    m_grid = new ui::FlexGrid(this);
    m_grid->setObjectName(QStringLiteral("MSHFlexGrid1"));

    auto *cmd1 = ui::button(this, "Command1", QStringLiteral("修改"));
    auto *cmd2 = ui::button(this, "Command2", QStringLiteral("执行"));
    auto *cmd3 = ui::button(this, "Command3", QStringLiteral("取消"));
    auto *cmd4 = ui::button(this, "Command4", QStringLiteral("设置股票数据"));
    connect(cmd1, &QPushButton::clicked, this, base::guarded([this] { command1Click(); }));
    connect(cmd2, &QPushButton::clicked, this, base::guarded([this] { command2Click(); }));
    connect(cmd3, &QPushButton::clicked, this, base::guarded([this] { unload(); }));
    connect(cmd4, &QPushButton::clicked, this, base::guarded([this] { command4Click(); }));

    auto *left = new QVBoxLayout;
    left->addWidget(fees);
    auto *buttons = new QHBoxLayout;
    buttons->addWidget(cmd1);
    buttons->addWidget(cmd4);
    buttons->addWidget(cmd3);
    left->addLayout(buttons);
    left->addStretch();

    auto *right = new QVBoxLayout;
    auto *tables = new QLabel(QStringLiteral("数据表"), this);
    tables->setObjectName(QStringLiteral("Label7"));
    right->addWidget(tables);
    right->addWidget(m_list1, 1);
    auto *query = new QHBoxLayout;
    query->addWidget(m_text10, 1);
    query->addWidget(cmd2);
    right->addLayout(query);
    right->addWidget(m_grid, 3);

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
            m_list1->addItem(t.name);
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
            m_setShui.at(n - 1)->setText(v.isNull() || text.isEmpty() ? QStringLiteral("--") : text);
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
        if (n - 1 >= m_setShui.size())
            base::raiseSubscript();
        rs.setField(n, m_setShui[n - 1]->text());
    }
    rs.Update();
    return 0;
}

int16_t frmDataEnv::SeachA(const QString &sql)
{
    // Runs on the window's handle as it stands, which is closed after load
    // and after "修改": the query fails and the failure is ignored.
    reports::fillGridFromQuery(m_db, *m_grid, m_current, sql, reports::OnError::ResumeNext,
                              reports::FieldLayout::AllFields);
    return 0;
}

void frmDataEnv::command1Click()
{
    m_db = store::openUserDatabase();
    WriteA(QStringLiteral("select * from 税率表"));
    m_db.close();
}

void frmDataEnv::command2Click()
{
    m_sql = m_text10->text().trimmed();
    SeachA(m_sql);
}

void frmDataEnv::command4Click()
{
    unload();
    if (m_openDataSet)
        m_openDataSet();
}
