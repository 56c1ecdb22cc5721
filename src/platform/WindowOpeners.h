#pragma once
// How the main window opens the other windows: each modally, after its
// GetMame has been given the user name and power.

#include <QString>

#include <functional>

class QWidget;

namespace platform {

// 0 buy, 1 sell, 2 deposit, 3 withdrawal. `tradeStored` runs after each
// stored purchase or sale.
void openEntryWindow(QWidget *parent, int which, const QString &user, const QString &power,
                     const std::function<void()> &tradeStored);
// "交易明细", "资金记录" or "赢亏记录".
void openReportWindow(QWidget *parent, const QString &caption, const QString &user, const QString &power);
// The investment analysis (toolbar "投资分析").
void openAnalysisWindow(QWidget *parent, const QString &user, const QString &power);
void openPerStockRecords(QWidget *parent, const QString &user, const QString &power, const QString &code);
// The statement import "导入交割单".
void openImportWindow(QWidget *parent, const QString &user, const QString &power);
// The fee settings; its "设置股票数据" opens the market-data settings.
void openSettingsWindow(QWidget *parent);

} // namespace platform
