#include "frmYkui.h"

#include "ReportSql.h"
#include "TradeMath.h"
#include "base/Numbers.h"
#include "ui/FlexGrid.h"

using namespace reports;

namespace {
const QString kHeaders[8] = {
    QString(),
    QStringLiteral("成交日期"),
    QStringLiteral("股票代码"),
    QStringLiteral("股票名称"),
    QStringLiteral("成交价格"),
    QStringLiteral("成交数量"),
    QStringLiteral("成交金额"),
    QStringLiteral("盈亏统计"),
};
const int kWidths[8] = {200, 1100, 900, 1000, 1000, 1000, 1100, 1100}; // twips
} // namespace

frmYkui::frmYkui(QWidget *parent)
    : ReportWindow(QStringLiteral("frmYkui"), QStringLiteral("  盈亏记录"), FileMenu::None, parent)
{}

void frmYkui::FillGrid()
{
    ui::FlexGrid &grid = *m_MSFlexGrid1;
    const ui::FlexGrid::BulkUpdate bulk(grid);
    grid.clear();
    grid.setCols(8);
    grid.setRows(1);
    for (int c = 0; c < 8; ++c)
        grid.setColWidth(c, kWidths[c]);
    for (int c = 1; c < 8; ++c)
        grid.setTextMatrix(0, c, kHeaders[c]);

    store::Recordset codes = m_db.openRecordset(sql::soldCodes(m_GuName));
    if (codes.BOF() && codes.EOF_())
        return;
    codes.MoveFirst();
    const int n = codes.RecordCount();
    for (int i = 0; i < n; ++i) {
        const QString code = base::variantText(codes.field(0));
        const QString name = base::variantText(codes.field(1));
        store::Recordset sales = m_db.openRecordset(sql::saleTotals(m_GuName, code));
        store::Recordset buys = m_db.openRecordset(sql::purchaseTotals(m_GuName, code));
        const ProfitRow row = profitRow(sales.field(0), sales.field(1), buys.field(0), buys.field(1));
        store::Recordset dates = m_db.openRecordset(sql::saleDates(m_GuName, code));
        dates.MoveLast();
        grid.addItem(QString());
        const int r = i + 1;
        grid.setTextMatrix(r, 1, base::variantText(dates.field(0)));
        grid.setTextMatrix(r, 2, code);
        grid.setTextMatrix(r, 3, name);
        grid.setTextMatrix(r, 4, row.averagePrice);
        grid.setTextMatrix(r, 5, row.sharesSold);
        grid.setTextMatrix(r, 6, QString::number(row.proceeds));
        grid.setTextMatrix(r, 7, QString::number(row.profit));
        codes.MoveNext();
    }
}
