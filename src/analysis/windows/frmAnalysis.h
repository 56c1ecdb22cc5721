#pragma once
// The investment analysis window (投资分析): per stock and in total the shares,
// cost basis by moving average or first in, first out, realised and
// unrealised results, fees and dividends; every trade with its exact fee and
// result and a "问题" column for rows that make no sense; the account's cash,
// return and money-weighted annual return; the value over time. It opens the
// corporate-action window and exports the table shown as CSV.

#include "analysis/Journal.h"
#include "analysis/Portfolio.h"
#include "analysis/Tables.h"
#include "ui/Form.h"

#include <functional>

class QLabel;
class QRadioButton;
class QTabWidget;

namespace store {
class Database;
}

namespace ui {
class FlexGrid;
}

namespace analysis {

class ValueChart;

class frmAnalysis : public ui::UserForm {
    Q_OBJECT
public:
    explicit frmAnalysis(QWidget *parent = nullptr);

    // Where "导出" writes: asks with a file dialog unless a test put in its own chooser.
    using PathChooser = std::function<QString(const QString &suggested)>;
    static void setExportPathChooser(PathChooser chooser);

    const Analysis &analysis() const { return m_analysis; }

protected:
    void formLoad() override;

private:
    void readJournal(store::Database &db);
    void refresh();
    void onOptMethodClick();
    void onCmdActionsClick();
    void onCmdExportClick();
    Table currentTable() const;

    Journal m_journal;
    PriceHistory m_prices;
    CostMethod m_method = CostMethod::MovingAverage;
    Analysis m_analysis;

    QRadioButton *m_optAverage;
    QRadioButton *m_optFifo;
    QTabWidget *m_tabAnalysis;
    ui::FlexGrid *m_gridStocks;
    ui::FlexGrid *m_gridTrades;
    ValueChart *m_chartValues;
    QLabel *m_lblSummary;
};

} // namespace analysis
