#include "frmJyrec.h"

#include "ReportSql.h"
#include "TradeMath.h"
#include "base/Numbers.h"
#include "store/FeeRates.h"
#include "ui/FlexGrid.h"

using namespace reports;

namespace {
const QString kHeaders[9] = {
    QString(),
    QStringLiteral("成交日期"),
    QStringLiteral("股票代码"),
    QStringLiteral("股票名称"),
    QStringLiteral("操作记录"),
    QStringLiteral("成交价格"),
    QStringLiteral("成交数量"),
    QStringLiteral("成交费用"),
    QStringLiteral("成交金额"),
};
const int kWidths[9] = {200, 1100, 900, 1000, 900, 900, 900, 900, 1200}; // twips

bool isEmpty(const store::Recordset &rs) { return rs.BOF() && rs.EOF_(); }
} // namespace

frmJyrec::frmJyrec(QWidget *parent)
    : ReportWindow(QStringLiteral("frmJyrec"), QStringLiteral("  交易明细"), FileMenu::MenuBar, parent)
{}

void frmJyrec::FillGrid()
{
    ui::FlexGrid &grid = *m_MSFlexGrid1;
    const ui::FlexGrid::BulkUpdate bulk(grid);
    grid.clear();
    grid.setCols(9);
    grid.setRows(1);
    for (int c = 0; c < 9; ++c)
        grid.setColWidth(c, kWidths[c]);
    for (int c = 1; c < 9; ++c)
        grid.setTextMatrix(0, c, kHeaders[c]);

    store::Recordset codes = m_db.openRecordset(sql::tradeCodes(m_GuName));
    if (isEmpty(codes))
        return;
    codes.MoveFirst();
    const int n = codes.RecordCount();
    int16_t r = 1;
    for (int i = 0; i < n; ++i) {
        const QString code = base::variantText(codes.field(0));
        const int16_t sold = shareTotal16(m_db.openRecordset(sql::shareSum(m_GuName, code, false)).field(0));
        // The bought total is converted too (and can overflow), though nothing uses it.
        shareTotal16(m_db.openRecordset(sql::shareSum(m_GuName, code, true)).field(0));
        if (sold >= 0) {
            r = appendTrades(code, true, r);
            r = appendTrades(code, false, r);
        }
        codes.MoveNext();
    }
}

int16_t frmJyrec::appendTrades(const QString &code, bool purchase, int16_t r)
{
    ui::FlexGrid &grid = *m_MSFlexGrid1;
    store::Recordset rs = m_db.openRecordset(sql::tradeRows(m_GuName, code, purchase));
    if (isEmpty(rs))
        return r;
    const QColor &color = purchase ? kPurchaseColor : kSaleColor;
    const float minShenzhen = store::feeValue(3);
    const float minShanghai = store::feeValue(4);
    rs.MoveFirst();
    rs.MoveLast();
    const int m = rs.RecordCount();
    rs.MoveFirst();
    // The block's empty rows go in first, in one insertion.
    grid.setRows(grid.rows() + m);
    for (int k = 0; k < m; ++k) {
        grid.setRow(r);
        for (int c = 1; c <= 8; ++c) {
            grid.setCol(c);
            grid.setCellForeColor(color);
        }
        for (int c = 0; c <= 5; ++c)
            grid.setTextMatrix(r, c + 1, base::variantText(rs.field(c)));
        const double price = rs.field(4).toDouble();
        const double shares = rs.field(5).toDouble();
        const TradeFee fee =
            tradeFee(price, shares, rs.field(6).toFloat(), base::variantText(rs.field(1)), minShenzhen, minShanghai);
        if (fee.shown)
            grid.setTextMatrix(r, 7, base::singleText(fee.fee));
        grid.setTextMatrix(r, 8, base::doubleText(tradeAmount(price, shares, fee.fee, purchase)));
        rs.MoveNext();
        r = base::add16(r, 1);
    }
    return r;
}
