#include "frmBefor.h"

#include "PictureBox.h"
#include "QuoteSession.h"
#include "WindowOpeners.h"
#include "base/ErrorGuard.h"
#include "base/Numbers.h"
#include "marketdata/StockList.h"
#include "reports/QueryGrid.h"
#include "store/FeeRates.h"
#include "store/SqlText.h"
#include "ui/Controls.h"
#include "ui/FlexGrid.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QPushButton>
#include <QSplitter>
#include <QToolBar>
#include <QVBoxLayout>

namespace {

const char *const kReminder[14] = {
    "    投资是一门艺术，需",
    "要不断地学习和实践。这",
    "里给大家一点提醒。",
    "  ",
    "在操作的时候，请自问：",
    "  ",
    "1，您的操作是否有经",
    "   过分析？",
    "  ",
    "2，您的操作是否出于",
    "   一时冲动？",
    "  ",
    "3，您的操作是否是最",
    "   合理的？",
};

// "投资分析" and "导入交割单" go beyond the classic buttons, placed before "退出".
const char *const kToolbarButtons[8] = {"设置",     "交易明细", "资金记录",   "赢亏记录",
                                        "原始记录", "投资分析", "导入交割单", "退出"};

} // namespace

frmBefor::frmBefor(QWidget *parent)
    : QMainWindow(parent), m_life([this] { formLoad(); }), m_quote(std::make_unique<platform::QuoteSession>())
{
    setObjectName(QStringLiteral("frmBefor"));
    setWindowTitle(QStringLiteral("Tessaly"));

    m_Toolbar1 = ui::named(new QToolBar(this), "Toolbar1");
    m_Toolbar1->setMovable(false);
    m_Toolbar1->setToolButtonStyle(Qt::ToolButtonTextOnly);
    addToolBar(Qt::TopToolBarArea, m_Toolbar1);
    for (const char *caption : kToolbarButtons) {
        QAction *a = m_Toolbar1->addAction(QString::fromUtf8(caption));
        connect(a, &QAction::triggered, this, base::guarded([this, a] { onToolbar1ButtonClick(a->text()); }));
    }

    auto *central = new QWidget(this);
    setCentralWidget(central);

    // Left: the title, the five buttons, the figures and the reminder.
    auto *left = new QVBoxLayout;
    auto *title = ui::label(central, "Label2", QStringLiteral("操作平台"));
    QFont big = title->font();
    big.setPointSizeF(big.pointSizeF() * 1.6);
    big.setBold(true);
    title->setFont(big);
    left->addWidget(title);

    const struct {
        const char *name;
        const char *caption;
        void (frmBefor::*click)();
    } buttons[5] = {{"Command1", "买人股票", &frmBefor::onCommand1Click},
                    {"Command2", "卖出股票", &frmBefor::onCommand2Click},
                    {"Command3", "存入资金", &frmBefor::onCommand3Click},
                    {"Command4", "提取资金", &frmBefor::onCommand4Click},
                    {"Command5", "持股列表", &frmBefor::onCommand5Click}};
    for (const auto &b : buttons) {
        QPushButton *button = ui::button(central, b.name, QString::fromUtf8(b.caption));
        left->addWidget(button);
        connect(button, &QPushButton::clicked, this, base::guarded([this, click = b.click] { (this->*click)(); }));
    }

    auto *figures = new QFormLayout;
    m_Text2 = ui::textBox(central, "Text2");
    m_Text1 = ui::textBox(central, "Text1");
    m_Text3 = ui::textBox(central, "Text3");
    figures->addRow(ui::label(central, "Label1", QStringLiteral("持股市值")), m_Text2);
    figures->addRow(ui::label(central, "Label3", QStringLiteral("总投入资金")), m_Text1);
    figures->addRow(ui::label(central, "Label4", QStringLiteral("亏损")), m_Text3);
    left->addLayout(figures);

    m_List1 = ui::listBox(central, "List1");
    left->addWidget(m_List1, 1);
    left->addWidget(ui::label(central, "Label5", QStringLiteral("Tessaly   v0.99")));
    left->addWidget(ui::label(central, "Label6", QStringLiteral("http://www.tessaly.cn")));

    // Right: the grid above the chart.
    m_MSFlexGrid1 = ui::flexGrid(central, "MSFlexGrid1");
    connect(m_MSFlexGrid1, &ui::FlexGrid::gridClicked, this, base::guarded([this] { onMSFlexGrid1Click(); }));
    connect(m_MSFlexGrid1, &ui::FlexGrid::gridDoubleClicked, this, base::guarded([this] { onMSFlexGrid1DblClick(); }));
    connect(m_MSFlexGrid1, &ui::FlexGrid::gridMouseDown, this,
            base::guarded([this](int button, int x, int y) { onMSFlexGrid1MouseDown(button, x, y); }));

    m_pPic1 = ui::named(new platform::PictureBox(central), "pPic1");
    m_pPic1->setMinimumHeight(160);

    auto *split = new QSplitter(Qt::Vertical, central);
    split->addWidget(m_MSFlexGrid1);
    split->addWidget(m_pPic1);
    split->setStretchFactor(0, 3);
    split->setStretchFactor(1, 2);
    split->setChildrenCollapsible(false);

    auto *leftBox = new QWidget(central);
    leftBox->setLayout(left);
    leftBox->setFixedWidth(190);
    auto *top = new QHBoxLayout(central);
    top->addWidget(leftBox);
    top->addWidget(split, 1);

    // The edit menu is not in the menu bar; the grid pops it up.
    m_mnuEdit = ui::named(new QMenu(QStringLiteral("编辑"), this), "mnuEdit");
    QAction *mnuDel = ui::named(m_mnuEdit->addAction(QStringLiteral("删除")), "mnuDel");
    ui::named(m_mnuEdit->addAction(QStringLiteral("修改")), "mnuModi");
    connect(mnuDel, &QAction::triggered, this, base::guarded([this] { onMnuDelClick(); }));

    resize(1000, 680);
}

frmBefor::~frmBefor() = default;

void frmBefor::GetMame(const QString &GuName, const QString &GuPower)
{
    m_GuName = GuName;
    m_GuPower = GuPower;
}

void frmBefor::load() { m_life.load(); }

void frmBefor::showEvent(QShowEvent *event)
{
    load();
    QMainWindow::showEvent(event);
}

void frmBefor::formLoad()
{
    platform::loadMarketSettings();
    m_db = store::openUserDatabase();
    HoldList();
    LoadRates();
    setWindowTitle(m_GuName + QStringLiteral(" 的帐户管理"));
    for (const char *line : kReminder)
        m_List1->addItem(QString::fromUtf8(line));
    marketdata::LoadStockList();
}

void frmBefor::closeEvent(QCloseEvent *event)
{
    base::guard([this] { m_db.close(); });
    event->accept();
    QApplication::quit();
}

void frmBefor::HoldList()
{
    platform::Holdings h;
    h.percent = m_Text3->text();
    platform::HoldList(
        m_db, m_GuName,
        [this](const QString &code, float &price) {
            quoteLookup(platform::dataPath(), platform::quoteSource(), code, false, price);
        },
        h);

    const ui::FlexGrid::BulkUpdate bulk(*m_MSFlexGrid1);
    m_MSFlexGrid1->clear();
    m_MSFlexGrid1->setCols(8);
    m_MSFlexGrid1->setRows(1);
    m_MSFlexGrid1->setColWidth(0, 200);
    const QStringList &headers = platform::holdingsHeaders();
    for (int c = 1; c < 8; ++c) {
        m_MSFlexGrid1->setTextMatrix(0, c, headers[c]);
        m_MSFlexGrid1->setColWidth(c, 1440);
    }
    m_MSFlexGrid1->setRows(int(h.rows.size()) + 1);
    for (size_t r = 0; r < h.rows.size(); ++r)
        for (int c = 1; c < 8; ++c)
            m_MSFlexGrid1->setTextMatrix(int(r) + 1, c, h.rows[r][static_cast<size_t>(c)]);
    m_Text2->setText(h.marketValue);
    m_Text1->setText(h.netFunds);
    m_Text3->setText(h.percent);
}

void frmBefor::LoadRates() { store::loadFeeValues(m_db); }

QString frmBefor::rawQuery() const
{
    return QStringLiteral("select * from havewhat where userid='") + store::pasteText(m_GuName) + u'\'';
}

void frmBefor::FrmRef()
{
    m_rawMode = true;
    showRawRecords();
}

void frmBefor::showRawRecords()
{
    m_sql = rawQuery();
    SeachA(m_sql);
    m_sql.clear();
    // Widths of the raw view's columns (userid .. reason), so that all nine
    // fit the grid without scrolling sideways.
    static const int kRawWidths[] = {1000, 1000, 1300, 1400, 1100, 1100, 1000, 1000, 2000};
    if (m_MSFlexGrid1->cols() == 10 && !m_MSFlexGrid1->textMatrix(0, 1).isEmpty())
        for (int c = 1; c < 10; ++c)
            m_MSFlexGrid1->setColWidth(c, kRawWidths[c - 1]);
}

int16_t frmBefor::SeachA(const QString &sql)
{
    return reports::fillGridFromQuery(m_db, *m_MSFlexGrid1, m_current, sql, reports::OnError::Raise,
                                      reports::FieldLayout::AllFields);
}

void frmBefor::onMnuDelClick()
{
    if (!(m_current.BOF() && m_current.EOF_())) {
        m_current.MoveFirst();
        m_current.Move(m_MSFlexGrid1->row() - 1);
        m_current.Delete();
    }
    showRawRecords();
}

void frmBefor::onToolbar1ButtonClick(const QString &caption)
{
    if (caption == QStringLiteral("设置"))
        openSettings();
    else if (caption == QStringLiteral("交易明细") || caption == QStringLiteral("资金记录") ||
             caption == QStringLiteral("赢亏记录"))
        openReport(caption);
    else if (caption == QStringLiteral("原始记录"))
        FrmRef();
    else if (caption == QStringLiteral("投资分析"))
        platform::openAnalysisWindow(this, m_GuName, m_GuPower);
    else if (caption == QStringLiteral("导入交割单"))
        platform::openImportWindow(this, m_GuName, m_GuPower);
    else if (caption == QStringLiteral("退出"))
        base::endProgram(0); // at once: no unload, the database is not closed first
}

void frmBefor::quoteLookup(const QString &dataDir, const QString &source, const QString &code, bool draw,
                           float &lastClose)
{
    m_quote->lookup(dataDir, source, code, draw ? m_pPic1 : nullptr, lastClose);
}

void frmBefor::onCommand1Click() { openEntry(0); }

void frmBefor::onCommand2Click() { openEntry(1); }

void frmBefor::onCommand3Click() { openEntry(2); }

void frmBefor::onCommand4Click() { openEntry(3); }

void frmBefor::onCommand5Click()
{
    m_rawMode = false;
    HoldList();
}

void frmBefor::onMSFlexGrid1Click()
{
    float close = 0;
    quoteLookup(platform::dataPath(), platform::quoteSource(), m_MSFlexGrid1->textMatrix(m_MSFlexGrid1->row(), 1), true,
                close);
}

void frmBefor::onMSFlexGrid1DblClick()
{
    platform::openPerStockRecords(this, m_GuName, m_GuPower, m_MSFlexGrid1->textMatrix(m_MSFlexGrid1->row(), 1));
}

void frmBefor::onMSFlexGrid1MouseDown(int button, int x, int y)
{
    if (button == 2 && m_rawMode)
        m_mnuEdit->popup(m_MSFlexGrid1->viewport()->mapToGlobal(QPoint(x, y)));
}

void frmBefor::openEntry(int which)
{
    platform::openEntryWindow(this, which, m_GuName, m_GuPower, [this] { FrmRef(); });
}

void frmBefor::openReport(const QString &caption) { platform::openReportWindow(this, caption, m_GuName, m_GuPower); }

void frmBefor::openSettings() { platform::openSettingsWindow(this); }
