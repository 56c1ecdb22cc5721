#include "frmAnalysis.h"

#include "TableGrid.h"
#include "ValueChart.h"
#include "frmActions.h"
#include "analysis/Prices.h"
#include "analysis/Settings.h"
#include "base/ErrorGuard.h"
#include "store/Database.h"
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

frmAnalysis::frmAnalysis(QWidget *parent) : ui::Form(parent)
{
    setObjectName(QStringLiteral("frmAnalysis"));
    setWindowTitle(QStringLiteral("Tessaly"));

    optAverage = new QRadioButton(QStringLiteral("移动平均"), this);
    optAverage->setObjectName(QStringLiteral("optAverage"));
    optFifo = new QRadioButton(QStringLiteral("先进先出"), this);
    optFifo->setObjectName(QStringLiteral("optFifo"));
    auto *group = new QButtonGroup(this);
    group->addButton(optAverage);
    group->addButton(optFifo);
    optAverage->setChecked(true);
    connect(group, &QButtonGroup::buttonClicked, this, base::guarded([this] { methodChanged(); }));

    QPushButton *cmdActions = ui::button(this, "cmdActions", QStringLiteral("分红送配"));
    QPushButton *cmdExport = ui::button(this, "cmdExport", QStringLiteral("导出"));
    QPushButton *cmdClose = ui::button(this, "cmdClose", QStringLiteral("关闭"));
    connect(cmdActions, &QPushButton::clicked, this, base::guarded([this] { actionsClick(); }));
    connect(cmdExport, &QPushButton::clicked, this, base::guarded([this] { exportClick(); }));
    connect(cmdClose, &QPushButton::clicked, this, [this] { unload(); });

    auto *top = new QHBoxLayout;
    top->addWidget(new QLabel(QStringLiteral("成本计算："), this));
    top->addWidget(optAverage);
    top->addWidget(optFifo);
    top->addStretch(1);
    top->addWidget(cmdActions);
    top->addWidget(cmdExport);
    top->addWidget(cmdClose);

    tabAnalysis = new QTabWidget(this);
    tabAnalysis->setObjectName(QStringLiteral("tabAnalysis"));
    gridStocks = new ui::FlexGrid(this);
    gridStocks->setObjectName(QStringLiteral("gridStocks"));
    gridTrades = new ui::FlexGrid(this);
    gridTrades->setObjectName(QStringLiteral("gridTrades"));
    chartValues = new ValueChart(this);
    chartValues->setObjectName(QStringLiteral("chartValues"));
    tabAnalysis->addTab(gridStocks, QStringLiteral("个股"));
    tabAnalysis->addTab(gridTrades, QStringLiteral("交易"));
    tabAnalysis->addTab(chartValues, QStringLiteral("市值走势"));

    lblSummary = new QLabel(this);
    lblSummary->setObjectName(QStringLiteral("lblSummary"));
    lblSummary->setTextInteractionFlags(Qt::TextSelectableByMouse);
    lblSummary->setAlignment(Qt::AlignTop | Qt::AlignLeft);
    lblSummary->setMinimumWidth(210);
    auto *note = new QLabel(QStringLiteral("金额精确到分，手续费按交易明细的费率和最低收费计算，并计入分红送配。"
                                           "交易明细、盈亏记录和持股列表等原有窗口不计分红送配。"),
                            this);
    note->setObjectName(QStringLiteral("lblNote"));
    note->setWordWrap(true);

    auto *middle = new QHBoxLayout;
    middle->addWidget(tabAnalysis, 1);
    middle->addWidget(lblSummary);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(top);
    layout->addLayout(middle, 1);
    layout->addWidget(note);
    resize(1180, 620);
}

void frmAnalysis::GetMame(const QString &GuName, const QString &GuPower)
{
    m_GuName = GuName;
    m_GuPower = GuPower;
}

void frmAnalysis::formLoad()
{
    setWindowTitle(m_GuName + QStringLiteral("  投资分析"));
    // One handle for the load: opening the file derives its key, which takes a while.
    store::Database db = store::openUserDatabase();
    m_method = savedCostMethod(db, m_GuName);
    (m_method == CostMethod::Fifo ? optFifo : optAverage)->setChecked(true);
    readJournal(db);
    db.close();
}

void frmAnalysis::readJournal(store::Database &db)
{
    m_journal = loadJournal(db, m_GuName);
    m_prices = readPrices(m_journal);
    chartValues->setSeries(valueSeries(m_journal, m_prices));
    refresh();
}

void frmAnalysis::refresh()
{
    m_analysis = analyse(m_journal, m_method, m_prices, QDate::currentDate());
    showTable(*gridStocks, stockTable(m_analysis), {900, 1000, 900, 1200, 900, 800, 1200, 1100, 1100, 900, 900, 2200});
    showTable(*gridTrades, tradeTable(m_analysis),
              {1200, 900, 1000, 600, 900, 900, 900, 1200, 1200, 1100, 3600});
    // Rows with a problem stand out in red.
    const int problemCol = gridTrades->cols() - 1;
    for (int r = 1; r < gridTrades->rows(); ++r)
        if (!gridTrades->textMatrix(r, problemCol).isEmpty())
            gridTrades->gridModel()->setForeColor(r, problemCol, QColor(255, 0, 0));
    QString text;
    for (const QStringList &row : summaryTable(m_analysis).rows)
        text += row[0] + QStringLiteral("：") + row[1] + u'\n';
    lblSummary->setText(text.trimmed());
}

void frmAnalysis::methodChanged()
{
    const CostMethod chosen = optFifo->isChecked() ? CostMethod::Fifo : CostMethod::MovingAverage;
    if (chosen == m_method)
        return;
    m_method = chosen;
    store::Database db = store::openUserDatabase();
    saveCostMethod(db, m_GuName, m_method);
    db.close();
    refresh();
}

void frmAnalysis::actionsClick()
{
    frmActions w(this);
    const int r = gridStocks->row();
    const bool stockRow = r >= 1 && r < gridStocks->rows() - 1; // not the header, not the total
    w.GetMame(m_GuName, m_GuPower, stockRow ? gridStocks->textMatrix(r, 1) : QString());
    w.exec();
    if (w.changed()) {
        store::Database db = store::openUserDatabase();
        readJournal(db);
        db.close();
    }
}

Table frmAnalysis::currentTable() const
{
    switch (tabAnalysis->currentIndex()) {
    case 1:
        return tradeTable(m_analysis);
    case 2:
        return valueTable(chartValues->series());
    default:
        return stockTable(m_analysis);
    }
}

void frmAnalysis::exportClick()
{
    const QString suggested = m_GuName + u'-' + tabAnalysis->tabText(tabAnalysis->currentIndex()) + QStringLiteral(".csv");
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
