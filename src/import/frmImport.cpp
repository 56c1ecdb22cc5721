#include "frmImport.h"

#include "ImportStore.h"

#include "base/ErrorGuard.h"
#include "base/RuntimeError.h"
#include "ui/Controls.h"
#include "ui/FlexGrid.h"
#include "ui/MsgBox.h"

#include <QComboBox>
#include <QFileDialog>
#include <QFileInfo>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollArea>
#include <QVBoxLayout>

namespace {

// Twips of the preview columns: line, kind, date, code, name, price,
// quantity, amount, fee, rate, note.
const int kPreviewWidths[] = {200, 700, 900, 1400, 900, 1200, 900, 900, 1100, 900, 1300, 5200};

const QColor kSkippedColor(128, 128, 128);
const QColor kDoubtColor(200, 0, 0);

QString separatorName(QChar c)
{
    if (c == u'\t')
        return QStringLiteral("制表符");
    if (c == u',')
        return QStringLiteral("逗号");
    return QStringLiteral("分号");
}

} // namespace

frmImport::frmImport(QWidget *parent) : ui::UserForm(QStringLiteral("  导入交割单"), parent)
{
    setObjectName(QStringLiteral("frmImport"));
    setWindowTitle(QStringLiteral("导入交割单"));

    auto *layout = new QVBoxLayout(this);
    auto *fileRow = new QHBoxLayout;
    auto *label1 = ui::label(this, "Label1", QStringLiteral("交割单文件"));
    m_Text1 = ui::textBox(this, "Text1");
    m_Command1 = ui::button(this, "Command1", QStringLiteral("选择文件…"));
    fileRow->addWidget(label1);
    fileRow->addWidget(m_Text1, 1);
    fileRow->addWidget(m_Command1);
    layout->addLayout(fileRow);

    m_Label2 =
        ui::label(this, "Label2", QStringLiteral("选择交易软件导出的交割单或资金流水（文本，制表符或逗号分隔）"));
    m_Label2->setWordWrap(true);
    layout->addWidget(m_Label2);

    // One box per column of the file: what the column holds.
    auto *mappingBox = new QWidget(this);
    m_mapping = new QGridLayout(mappingBox);
    m_mapping->setContentsMargins(0, 0, 0, 0);
    auto *scroll = new QScrollArea(this);
    scroll->setWidget(mappingBox);
    scroll->setWidgetResizable(true);
    scroll->setFixedHeight(72);
    layout->addWidget(scroll);

    m_MSFlexGrid1 = ui::flexGrid(this, "MSFlexGrid1");
    layout->addWidget(m_MSFlexGrid1, 1);

    auto *bottom = new QHBoxLayout;
    m_Label3 = ui::label(this, "Label3");
    m_Command2 = ui::button(this, "Command2", QStringLiteral("导入"));
    m_Command3 = ui::button(this, "Command3", QStringLiteral("取消"));
    m_Command2->setEnabled(false);
    bottom->addWidget(m_Label3, 1);
    bottom->addWidget(m_Command2);
    bottom->addWidget(m_Command3);
    layout->addLayout(bottom);

    ui::onEnter(m_Text1, base::guarded([this] { loadFile(m_Text1->text().trimmed()); }));
    connect(m_Command1, &QPushButton::clicked, this, base::guarded([this] { onCommand1Click(); }));
    connect(m_Command2, &QPushButton::clicked, this, base::guarded([this] { onCommand2Click(); }));
    connect(m_Command3, &QPushButton::clicked, this, base::guarded([this] { unload(); }));
    resize(1100, 620);
}

frmImport::~frmImport() = default;

void frmImport::onCommand1Click()
{
    const QString path = QFileDialog::getOpenFileName(this, QStringLiteral("选择交割单"), QString(),
                                                      QStringLiteral("交割单 (*.txt *.csv *.xls *.tsv);;所有文件 (*)"));
    if (path.isEmpty())
        return;
    m_Text1->setText(path);
    loadFile(path);
}

void frmImport::loadFile(const QString &path)
{
    m_path = path;
    if (m_Text1->text().trimmed() != path)
        m_Text1->setText(path);
    m_table = importer::readStatementFile(path);
    readJournal();
    buildMapping();
    refreshPreview();
}

void frmImport::readJournal()
{
    store::Database db = store::openUserDatabase();
    m_journal = importer::readJournalState(db, m_GuName);
    db.close();
}

void frmImport::buildMapping()
{
    qDeleteAll(m_Combo1);
    m_Combo1.clear();
    while (QLayoutItem *item = m_mapping->takeAt(0)) {
        delete item->widget();
        delete item;
    }
    for (int i = 0; i < m_table.headings.size(); ++i) {
        auto *heading = new QLabel(m_table.headings[i], m_mapping->parentWidget());
        auto *combo = ui::comboBox(m_mapping->parentWidget(), QStringLiteral("Combo1_%1").arg(i));
        for (int k = 0; k < importer::kColumnKinds; ++k)
            combo->addItem(importer::columnTitle(importer::Column(k)));
        combo->setCurrentIndex(int(m_table.columns.value(i)));
        connect(combo, &QComboBox::currentIndexChanged, this,
                base::guarded([this, i](int index) { onCombo1Click(i, index); }));
        m_mapping->addWidget(heading, 0, i);
        m_mapping->addWidget(combo, 1, i);
        m_Combo1 << combo;
    }
}

void frmImport::onCombo1Click(int i, int index)
{
    m_table.columns[i] = importer::Column(index);
    refreshPreview();
}

void frmImport::refreshPreview()
{
    ui::FlexGrid &grid = *m_MSFlexGrid1;
    const ui::FlexGrid::BulkUpdate bulk(grid);
    grid.setRows(1);
    grid.setCols(12);
    grid.clear();
    const QStringList headings = importer::previewHeadings();
    for (int c = 0; c < 12; ++c) {
        grid.setColWidth(c, kPreviewWidths[c]);
        if (c > 0)
            grid.setTextMatrix(0, c, headings[c - 1]);
    }
    m_rows.clear();
    if (!m_table.error.isEmpty()) {
        m_Label2->setText(m_table.error);
        m_Label3->clear();
        m_Command2->setEnabled(false);
        return;
    }
    m_Label2->setText(QStringLiteral("编码 %1，%2分隔，标题在第 %3 行，%4 行数据。%5")
                          .arg(m_table.encoding, separatorName(m_table.separator))
                          .arg(m_table.headingLine)
                          .arg(m_table.lines.size())
                          .arg(importer::mappingProblem(m_table.columns)));
    m_rows = importer::classify(m_table, m_table.columns, m_journal);
    grid.setRows(int(m_rows.size()) + 1);
    for (int r = 0; r < m_rows.size(); ++r) {
        const importer::PreviewRow &row = m_rows[r];
        const QStringList cells = importer::previewCells(row);
        const bool grey = !row.willStore();
        const bool doubt = !grey && !row.note.isEmpty();
        for (int c = 0; c < cells.size(); ++c) {
            grid.setTextMatrix(r + 1, c + 1, cells[c]);
            if (grey || doubt) {
                grid.setRow(r + 1);
                grid.setCol(c + 1);
                grid.setCellForeColor(grey ? kSkippedColor : kDoubtColor);
            }
        }
    }
    grid.setRow(1);
    const importer::PreviewCounts counts = importer::countRows(m_rows);
    m_Label3->setText(importer::countsText(counts));
    m_Command2->setEnabled(counts.trades + counts.deposits + counts.withdrawals + counts.actions > 0);
}

void frmImport::onCommand2Click()
{
    const importer::PreviewCounts counts = importer::countRows(m_rows);
    if (counts.trades + counts.deposits + counts.withdrawals + counts.actions == 0) {
        ui::msgBox(QStringLiteral("没有可导入的行。"));
        return;
    }
    try {
        const importer::StoreResult r = importer::storeImport(m_rows, m_GuName, QFileInfo(m_path).fileName());
        ui::msgBox(QStringLiteral("导入完成：") +
                   importer::countsText({r.stored.trades, r.stored.deposits, r.stored.withdrawals, r.stored.actions,
                                         r.alreadyImported, r.skipped}));
    } catch (const base::RuntimeError &e) {
        ui::msgBox(QStringLiteral("导入失败，没有保存任何一行：") + e.description());
    }
    readJournal();
    refreshPreview();
}
