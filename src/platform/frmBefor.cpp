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
#include "ui/FlexGrid.h"
#include "ui/Form.h"

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
    "    投资是一门艺术，需", "要不断地学习和实践。这", "里给大家一点提醒。", "  ",
    "在操作的时候，请自问：", "  ",
    "1，您的操作是否有经", "   过分析？", "  ",
    "2，您的操作是否出于", "   一时冲动？", "  ",
    "3，您的操作是否是最", "   合理的？",
};

// "投资分析" and "导入交割单" go beyond the classic buttons, placed before "退出".
const char *const kToolbarButtons[8] = {"设置", "交易明细", "资金记录", "赢亏记录", "原始记录", "投资分析", "导入交割单", "退出"};

QLabel *label(QWidget *parent, const char *name, const QString &caption)
{
    auto *l = new QLabel(caption, parent);
    l->setObjectName(QString::fromLatin1(name));
    return l;
}

QLineEdit *figureBox(QWidget *parent, const char *name)
{
    auto *e = new QLineEdit(parent);
    e->setObjectName(QString::fromLatin1(name));
    return e;
}

} // namespace

frmBefor::frmBefor(QWidget *parent)
    : QMainWindow(parent), m_quote(std::make_unique<platform::QuoteSession>())
{
    setObjectName(QStringLiteral("frmBefor"));
    setWindowTitle(QStringLiteral("Tessaly"));

    m_toolbar = new QToolBar(this);
    m_toolbar->setObjectName(QStringLiteral("Toolbar1"));
    m_toolbar->setMovable(false);
    m_toolbar->setToolButtonStyle(Qt::ToolButtonTextOnly);
    addToolBar(Qt::TopToolBarArea, m_toolbar);
    for (const char *caption : kToolbarButtons) {
        QAction *a = m_toolbar->addAction(QString::fromUtf8(caption));
        connect(a, &QAction::triggered, this, base::guarded([this, a] { toolbarClick(a->text()); }));
    }

    auto *central = new QWidget(this);
    setCentralWidget(central);

    // Left: the title, the five buttons, the figures and the reminder.
    auto *left = new QVBoxLayout;
    auto *title = label(central, "Label2", QStringLiteral("操作平台"));
    QFont big = title->font();
    big.setPointSizeF(big.pointSizeF() * 1.6);
    big.setBold(true);
    title->setFont(big);
    left->addWidget(title);

    const struct {
        const char *name;
        const char *caption;
    } buttons[5] = {{"Command1", "买人股票"}, {"Command2", "卖出股票"}, {"Command3", "存入资金"},
                    {"Command4", "提取资金"}, {"Command5", "持股列表"}};
    for (int i = 0; i < 5; ++i) {
        QPushButton *b = ui::button(central, buttons[i].name, QString::fromUtf8(buttons[i].caption));
        left->addWidget(b);
        if (i < 4) {
            connect(b, &QPushButton::clicked, this, base::guarded([this, i] { openEntry(i); }));
        } else {
            connect(b, &QPushButton::clicked, this, base::guarded([this] {
                        m_rawMode = false;
                        HoldList();
                    }));
        }
    }

    auto *figures = new QFormLayout;
    m_text2 = figureBox(central, "Text2");
    m_text1 = figureBox(central, "Text1");
    m_text3 = figureBox(central, "Text3");
    figures->addRow(label(central, "Label1", QStringLiteral("持股市值")), m_text2);
    figures->addRow(label(central, "Label3", QStringLiteral("总投入资金")), m_text1);
    figures->addRow(label(central, "Label4", QStringLiteral("亏损")), m_text3);
    left->addLayout(figures);

    m_list1 = new QListWidget(central);
    m_list1->setObjectName(QStringLiteral("List1"));
    left->addWidget(m_list1, 1);
    left->addWidget(label(central, "Label5", QStringLiteral("Tessaly   v0.99")));
    left->addWidget(label(central, "Label6", QStringLiteral("http://www.tessaly.cn")));

    // Right: the grid above the chart.
    m_grid = new ui::FlexGrid(central);
    m_grid->setObjectName(QStringLiteral("MSFlexGrid1"));
    connect(m_grid, &ui::FlexGrid::gridClicked, this, base::guarded([this] { gridClick(); }));
    connect(m_grid, &ui::FlexGrid::gridDoubleClicked, this, base::guarded([this] { gridDoubleClick(); }));
    connect(m_grid, &ui::FlexGrid::gridMouseDown, this,
            base::guarded([this](int button, int x, int y) { gridMouseDown(button, x, y); }));

    m_pPic1 = new platform::PictureBox(central);
    m_pPic1->setObjectName(QStringLiteral("pPic1"));
    m_pPic1->setMinimumHeight(160);

    auto *split = new QSplitter(Qt::Vertical, central);
    split->addWidget(m_grid);
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
    m_mnuEdit = new QMenu(QStringLiteral("编辑"), this);
    m_mnuEdit->setObjectName(QStringLiteral("mnuEdit"));
    QAction *del = m_mnuEdit->addAction(QStringLiteral("删除"));
    del->setObjectName(QStringLiteral("mnuDel"));
    QAction *modi = m_mnuEdit->addAction(QStringLiteral("修改"));
    modi->setObjectName(QStringLiteral("mnuModi"));
    connect(del, &QAction::triggered, this, base::guarded([this] { mnuDelClick(); }));

    resize(1000, 680);
}

frmBefor::~frmBefor() = default;

void frmBefor::GetMame(const QString &GuName, const QString &GuPower)
{
    m_userName = GuName;
    m_userPower = GuPower;
}

void frmBefor::load()
{
    if (m_loaded)
        return;
    m_loaded = true;
    base::guard([this] { formLoad(); });
}

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
    setWindowTitle(m_userName + QStringLiteral(" 的帐户管理"));
    for (const char *line : kReminder)
        m_list1->addItem(QString::fromUtf8(line));
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
    h.percent = m_text3->text();
    platform::HoldList(
        m_db, m_userName,
        [this](const QString &code, float &price) {
            quoteLookup(platform::dataPath(), platform::quoteSource(), code, false, price);
        },
        h);

    const ui::FlexGrid::BulkUpdate bulk(*m_grid);
    m_grid->clear();
    m_grid->setCols(8);
    m_grid->setRows(1);
    m_grid->setColWidth(0, 200);
    const QStringList &headers = platform::holdingsHeaders();
    for (int c = 1; c < 8; ++c) {
        m_grid->setTextMatrix(0, c, headers[c]);
        m_grid->setColWidth(c, 1440);
    }
    m_grid->setRows(int(h.rows.size()) + 1);
    for (size_t r = 0; r < h.rows.size(); ++r)
        for (int c = 1; c < 8; ++c)
            m_grid->setTextMatrix(int(r) + 1, c, h.rows[r][static_cast<size_t>(c)]);
    m_text2->setText(h.marketValue);
    m_text1->setText(h.netFunds);
    m_text3->setText(h.percent);
}

void frmBefor::LoadRates()
{
    store::loadFeeValues(m_db);
}

QString frmBefor::rawQuery() const
{
    return QStringLiteral("select * from havewhat where userid='") + store::pasteText(m_userName) + u'\'';
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
    if (m_grid->cols() == 10 && !m_grid->textMatrix(0, 1).isEmpty())
        for (int c = 1; c < 10; ++c)
            m_grid->setColWidth(c, kRawWidths[c - 1]);
}

int16_t frmBefor::SeachA(const QString &sql)
{
    return reports::fillGridFromQuery(m_db, *m_grid, m_current, sql, reports::OnError::Raise,
                                      reports::FieldLayout::AllFields);
}

void frmBefor::mnuDelClick()
{
    if (!(m_current.BOF() && m_current.EOF_())) {
        m_current.MoveFirst();
        m_current.Move(m_grid->row() - 1);
        m_current.Delete();
    }
    showRawRecords();
}

void frmBefor::toolbarClick(const QString &caption)
{
    if (caption == QStringLiteral("设置"))
        openSettings();
    else if (caption == QStringLiteral("交易明细") || caption == QStringLiteral("资金记录") ||
             caption == QStringLiteral("赢亏记录"))
        openReport(caption);
    else if (caption == QStringLiteral("原始记录"))
        FrmRef();
    else if (caption == QStringLiteral("投资分析"))
        platform::openAnalysisWindow(this, m_userName, m_userPower);
    else if (caption == QStringLiteral("导入交割单"))
        platform::openImportWindow(this, m_userName, m_userPower);
    else if (caption == QStringLiteral("退出"))
        base::endProgram(0); // at once: no unload, the database is not closed first
}

void frmBefor::quoteLookup(const QString &dataDir, const QString &source, const QString &code, bool draw,
                           float &lastClose)
{
    m_quote->lookup(dataDir, source, code, draw ? m_pPic1 : nullptr, lastClose);
}

void frmBefor::gridClick()
{
    float close = 0;
    quoteLookup(platform::dataPath(), platform::quoteSource(), m_grid->textMatrix(m_grid->row(), 1), true, close);
}

void frmBefor::gridDoubleClick()
{
    platform::openPerStockRecords(this, m_userName, m_userPower, m_grid->textMatrix(m_grid->row(), 1));
}

void frmBefor::gridMouseDown(int button, int x, int y)
{
    if (button == 2 && m_rawMode)
        m_mnuEdit->popup(m_grid->viewport()->mapToGlobal(QPoint(x, y)));
}

void frmBefor::openEntry(int which)
{
    platform::openEntryWindow(this, which, m_userName, m_userPower, [this] { FrmRef(); });
}

void frmBefor::openReport(const QString &caption)
{
    platform::openReportWindow(this, caption, m_userName, m_userPower);
}

void frmBefor::openSettings()
{
    platform::openSettingsWindow(this);
}
