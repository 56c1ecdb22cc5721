#include "frmAnalysis.h"

#include "TableGrid.h"
#include "ValueChart.h"
#include "analysis/Prices.h"
#include "analysis/Settings.h"
#include "base/ErrorGuard.h"
#include "frmActions.h"
#include "store/Database.h"
#include "ui/Controls.h"
#include "ui/FlexGrid.h"
#include "ui/MsgBox.h"

#include <QButtonGroup>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QSaveFile>
#include <QTabWidget>
#include <QVBoxLayout>

namespace analysis {

namespace {
frmAnalysis::PathChooser &chooser()
{
    static frmAnalysis::PathChooser c;
    return c;
}
} // namespace

void frmAnalysis::setExportPathChooser(PathChooser c) { chooser() = std::move(c); }

frmAnalysis::frmAnalysis(QWidget *parent) : ui::UserForm(QStringLiteral("  投资分析"), parent)
{
    setObjectName(QStringLiteral("frmAnalysis"));
    setWindowTitle(QStringLiteral("Tessaly"));

    m_optAverage = ui::named(new QRadioButton(QStringLiteral("移动平均"), this), "optAverage");
    m_optFifo = ui::named(new QRadioButton(QStringLiteral("先进先出"), this), "optFifo");
    auto *group = ui::named(new QButtonGroup(this), "optMethod");
    group->addButton(m_optAverage);
    group->addButton(m_optFifo);
    m_optAverage->setChecked(true);
    connect(group, &QButtonGroup::buttonClicked, this, base::guarded([this] { onOptMethodClick(); }));

    QPushButton *cmdActions = ui::button(this, "cmdActions", QStringLiteral("分红送配"));
    QPushButton *cmdExport = ui::button(this, "cmdExport", QStringLiteral("导出"));
    QPushButton *cmdClose = ui::button(this, "cmdClose", QStringLiteral("关闭"));
    connect(cmdActions, &QPushButton::clicked, this, base::guarded([this] { onCmdActionsClick(); }));
    connect(cmdExport, &QPushButton::clicked, this, base::guarded([this] { onCmdExportClick(); }));
    connect(cmdClose, &QPushButton::clicked, this, [this] { unload(); });

    auto *top = new QHBoxLayout;
    top->addWidget(new QLabel(QStringLiteral("成本计算："), this));
    top->addWidget(m_optAverage);
    top->addWidget(m_optFifo);
    top->addStretch(1);
    top->addWidget(cmdActions);
    top->addWidget(cmdExport);
    top->addWidget(cmdClose);

    m_tabAnalysis = ui::named(new QTabWidget(this), "tabAnalysis");
    m_gridStocks = ui::flexGrid(this, "gridStocks");
    m_gridTrades = ui::flexGrid(this, "gridTrades");
    m_chartValues = ui::named(new ValueChart(this), "chartValues");
    m_tabAnalysis->addTab(m_gridStocks, QStringLiteral("个股"));
    m_tabAnalysis->addTab(m_gridTrades, QStringLiteral("交易"));
    m_tabAnalysis->addTab(m_chartValues, QStringLiteral("市值走势"));

    m_lblSummary = ui::label(this, "lblSummary");
    m_lblSummary->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_lblSummary->setAlignment(Qt::AlignTop | Qt::AlignLeft);
    m_lblSummary->setMinimumWidth(210);
    auto *note = ui::label(this, "lblNote",
                           QStringLiteral("金额精确到分，手续费按交易明细的费率和最低收费计算，并计入分红送配。"
                                          "交易明细、盈亏记录和持股列表等原有窗口不计分红送配。"));
    note->setWordWrap(true);

    auto *middle = new QHBoxLayout;
    middle->addWidget(m_tabAnalysis, 1);
    middle->addWidget(m_lblSummary);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(top);
    layout->addLayout(middle, 1);
    layout->addWidget(note);
    resize(1180, 620);
}

void frmAnalysis::formLoad()
{
    ui::UserForm::formLoad();
    // One handle for the load: opening the file derives its key, which takes a while.
    store::Database db = store::openUserDatabase();
    m_method = savedCostMethod(db, m_GuName);
    (m_method == CostMethod::Fifo ? m_optFifo : m_optAverage)->setChecked(true);
    readJournal(db);
    db.close();
}

void frmAnalysis::readJournal(store::Database &db)
{
    m_journal = loadJournal(db, m_GuName);
    m_prices = readPrices(m_journal);
    m_chartValues->setSeries(valueSeries(m_journal, m_prices));
    refresh();
}

void frmAnalysis::refresh()
{
    m_analysis = analyse(m_journal, m_method, m_prices, QDate::currentDate());
    showTable(*m_gridStocks, stockTable(m_analysis),
              {900, 1000, 900, 1200, 900, 800, 1200, 1100, 1100, 900, 900, 2200});
    showTable(*m_gridTrades, tradeTable(m_analysis), {1200, 900, 1000, 600, 900, 900, 900, 1200, 1200, 1100, 3600});
    // Rows with a problem stand out in red.
    const int problemCol = m_gridTrades->cols() - 1;
    for (int r = 1; r < m_gridTrades->rows(); ++r)
        if (!m_gridTrades->textMatrix(r, problemCol).isEmpty())
            m_gridTrades->gridModel()->setForeColor(r, problemCol, QColor(255, 0, 0));
    QString text;
    for (const QStringList &row : summaryTable(m_analysis).rows)
        text += row[0] + QStringLiteral("：") + row[1] + u'\n';
    m_lblSummary->setText(text.trimmed());
}

void frmAnalysis::onOptMethodClick()
{
    const CostMethod chosen = m_optFifo->isChecked() ? CostMethod::Fifo : CostMethod::MovingAverage;
    if (chosen == m_method)
        return;
    m_method = chosen;
    store::Database db = store::openUserDatabase();
    saveCostMethod(db, m_GuName, m_method);
    db.close();
    refresh();
}

void frmAnalysis::onCmdActionsClick()
{
    frmActions w(this);
    const int r = m_gridStocks->row();
    const bool stockRow = r >= 1 && r < m_gridStocks->rows() - 1; // not the header, not the total
    w.GetMame(m_GuName, m_GuPower, stockRow ? m_gridStocks->textMatrix(r, 1) : QString());
    w.exec();
    if (w.changed()) {
        store::Database db = store::openUserDatabase();
        readJournal(db);
        db.close();
    }
}

Table frmAnalysis::currentTable() const
{
    switch (m_tabAnalysis->currentIndex()) {
    case 1:
        return tradeTable(m_analysis);
    case 2:
        return valueTable(m_chartValues->series());
    default:
        return stockTable(m_analysis);
    }
}

void frmAnalysis::onCmdExportClick()
{
    const QString suggested =
        m_GuName + u'-' + m_tabAnalysis->tabText(m_tabAnalysis->currentIndex()) + QStringLiteral(".csv");
    const QString path = chooser() ? chooser()(suggested)
                                   : QFileDialog::getSaveFileName(this, QStringLiteral("导出"), suggested,
                                                                  QStringLiteral("CSV 文件 (*.csv)"));
    if (path.isEmpty())
        return;
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(csvBytes(currentTable())) < 0 || !file.commit()) {
        ui::msgBox(QStringLiteral("不能写入文件 %1：%2").arg(path, file.errorString()));
        return;
    }
    ui::msgBox(QStringLiteral("已导出到 %1").arg(path));
}

} // namespace analysis
