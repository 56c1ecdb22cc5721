#include "WindowOpeners.h"

#include "analysis/windows/frmAnalysis.h"
#include "entry/CashWindow.h"
#include "entry/TradeWindow.h"
#include "frmDataEnv.h"
#include "import/frmImport.h"
#include "marketdata/DataSet.h"
#include "reports/frmCha.h"
#include "reports/frmJyrec.h"
#include "reports/frmYkui.h"
#include "reports/frmZjin.h"

namespace platform {

namespace {

template <typename Window>
void showModal(QWidget *parent, const QString &user, const QString &power)
{
    Window w(parent);
    w.GetMame(user, power);
    w.exec();
}

template <typename Window>
void showTradeWindow(QWidget *parent, const QString &user, const QString &power,
                     const std::function<void()> &tradeStored)
{
    Window w(parent);
    w.GetMame(user, power);
    QObject::connect(&w, &Window::tradeStored, &w, [&tradeStored] { tradeStored(); });
    w.exec();
}

} // namespace

void openEntryWindow(QWidget *parent, int which, const QString &user, const QString &power,
                     const std::function<void()> &tradeStored)
{
    switch (which) {
    case 0:
        showTradeWindow<frmBuy>(parent, user, power, tradeStored);
        break;
    case 1:
        showTradeWindow<frmShell>(parent, user, power, tradeStored);
        break;
    case 2:
        showModal<frmMoneyIn>(parent, user, power);
        break;
    case 3:
        showModal<frmMoneyOut>(parent, user, power);
        break;
    default:
        break;
    }
}

void openImportWindow(QWidget *parent, const QString &user, const QString &power)
{
    showModal<frmImport>(parent, user, power);
}

void openReportWindow(QWidget *parent, const QString &caption, const QString &user, const QString &power)
{
    if (caption == QStringLiteral("交易明细"))
        showModal<frmJyrec>(parent, user, power);
    else if (caption == QStringLiteral("资金记录"))
        showModal<frmZjin>(parent, user, power);
    else if (caption == QStringLiteral("赢亏记录"))
        showModal<frmYkui>(parent, user, power);
}

void openAnalysisWindow(QWidget *parent, const QString &user, const QString &power)
{
    showModal<analysis::frmAnalysis>(parent, user, power);
}

void openPerStockRecords(QWidget *parent, const QString &user, const QString &power, const QString &code)
{
    frmCha w(parent);
    w.GetMame(user, power, code);
    w.exec();
}

void openSettingsWindow(QWidget *parent)
{
    frmDataEnv w(parent);
    w.setDataSetOpener([parent] {
        marketdata::DataSet d(parent);
        d.exec();
    });
    w.exec();
}

} // namespace platform
