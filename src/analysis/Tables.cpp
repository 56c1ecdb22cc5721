#include "Tables.h"

#include "Money.h"
#include "base/Numbers.h"

namespace analysis {

namespace {

QString dateText(const QDate &d)
{
    return d.isValid() ? d.toString(QStringLiteral("yyyy-MM-dd")) : QStringLiteral("--");
}

// Cost per share in yuan, to the thousandth.
QString averageText(int64_t costFen, int64_t shares)
{
    if (shares <= 0)
        return QStringLiteral("--");
    const int64_t milli = roundHalfEven(Int128(costFen) * 10, shares);
    const QString sign = milli < 0 ? QStringLiteral("-") : QString();
    const int64_t a = milli < 0 ? -milli : milli;
    return QStringLiteral("%1%2.%3").arg(sign).arg(a / 1000).arg(int(a % 1000), 3, 10, QLatin1Char('0'));
}

QString csvField(const QString &f)
{
    if (!f.contains(u',') && !f.contains(u'"') && !f.contains(u'\n') && !f.contains(u'\r'))
        return f;
    QString q = f;
    q.replace(u'"', QStringLiteral("\"\""));
    return u'"' + q + u'"';
}

} // namespace

QString percentText(const std::optional<double> &percent)
{
    return percent ? QString::number(*percent, 'f', 2) + u'%' : QStringLiteral("--");
}

Table stockTable(const Analysis &a)
{
    Table t;
    t.headers = {QStringLiteral("股票代码"), QStringLiteral("股票名称"), QStringLiteral("持有股数"),
                 QStringLiteral("成本"),     QStringLiteral("平均成本"), QStringLiteral("最新价"),
                 QStringLiteral("市值"),     QStringLiteral("浮动盈亏"), QStringLiteral("已实现盈亏"),
                 QStringLiteral("手续费"),   QStringLiteral("分红"),     QStringLiteral("问题")};
    for (const StockResult &s : a.stocks) {
        const bool held = s.shares > 0;
        t.rows.push_back({s.code, s.name, QString::number(s.shares), yuanText(s.costFen),
                          averageText(s.costFen, s.shares), s.close ? base::singleText(*s.close) : QStringLiteral("--"),
                          yuanText(s.marketFen), yuanText(s.unrealisedFen), yuanText(s.realisedFen),
                          yuanText(s.feesFen), yuanText(s.dividendFen),
                          held && !s.close ? QStringLiteral("没有行情，按成本计") : QString()});
    }
    const Summary &m = a.summary;
    t.rows.push_back({QStringLiteral("合计"), QString(), QString(), yuanText(m.costFen), QString(), QString(),
                      yuanText(m.marketFen), yuanText(m.unrealisedFen), yuanText(m.realisedFen), yuanText(m.feesFen),
                      yuanText(m.dividendFen), QString()});
    return t;
}

Table tradeTable(const Analysis &a)
{
    Table t;
    t.headers = {QStringLiteral("成交日期"),   QStringLiteral("股票代码"), QStringLiteral("股票名称"),
                 QStringLiteral("操作"),       QStringLiteral("成交价格"), QStringLiteral("成交股数"),
                 QStringLiteral("手续费"),     QStringLiteral("金额"),     QStringLiteral("卖出成本"),
                 QStringLiteral("已实现盈亏"), QStringLiteral("问题")};
    for (const TradeResult &r : a.trades) {
        const bool sale = !r.row.buy;
        t.rows.push_back(
            {dateText(r.row.date), r.row.code, r.row.name, r.row.buy ? QStringLiteral("买进") : QStringLiteral("卖出"),
             base::doubleText(r.row.price), base::doubleText(r.row.shares), r.applied ? yuanText(r.feeFen) : QString(),
             r.applied ? yuanText(r.cashFen) : QString(), r.applied && sale ? yuanText(r.costFen) : QString(),
             r.applied && sale ? yuanText(r.realisedFen) : QString(), r.problem});
    }
    return t;
}

Table summaryTable(const Analysis &a)
{
    const Summary &m = a.summary;
    Table t;
    t.headers = {QStringLiteral("项目"), QStringLiteral("数值")};
    t.rows = {
        {QStringLiteral("现金余额"), yuanText(m.cashFen)},
        {QStringLiteral("存入资金"), yuanText(m.depositsFen)},
        {QStringLiteral("提取资金"), yuanText(m.withdrawalsFen)},
        {QStringLiteral("投入资金"), yuanText(m.investedFen)},
        {QStringLiteral("持股市值"), yuanText(m.marketFen)},
        {QStringLiteral("总资产"), yuanText(m.valueFen)},
        {QStringLiteral("总收益"), yuanText(m.returnFen)},
        {QStringLiteral("收益率"), percentText(m.returnPercent)},
        {QStringLiteral("年化收益率"), percentText(m.xirr ? std::optional<double>(*m.xirr * 100) : std::nullopt)},
        {QStringLiteral("已实现盈亏"), yuanText(m.realisedFen)},
        {QStringLiteral("浮动盈亏"), yuanText(m.unrealisedFen)},
        {QStringLiteral("手续费"), yuanText(m.feesFen)},
        {QStringLiteral("分红"), yuanText(m.dividendFen)},
    };
    return t;
}

Table actionTable(const Analysis &a)
{
    Table t;
    t.headers = {QStringLiteral("除权日期"), QStringLiteral("股票代码"), QStringLiteral("送股"),
                 QStringLiteral("转增"),     QStringLiteral("派息"),     QStringLiteral("配股"),
                 QStringLiteral("新增股数"), QStringLiteral("分红"),     QStringLiteral("问题")};
    const auto per10 = [](int64_t v) { return v == 0 ? QString() : QString::number(double(v) / 10000.0, 'g', 12); };
    for (const ActionResult &r : a.actions) {
        const CorporateAction &c = r.action;
        QString rights = per10(c.rightsPer10);
        if (!rights.isEmpty())
            rights += QStringLiteral(" @%1%2").arg(QString::number(double(c.rightsPrice) / 10000.0, 'g', 12),
                                                   c.rightsTaken ? QStringLiteral(" 参与") : QStringLiteral(" 放弃"));
        t.rows.push_back({dateText(c.exDate), c.code, per10(c.bonusPer10), per10(c.transferPer10), per10(c.cashPer10),
                          rights, QString::number(r.newShares), yuanText(r.dividendFen), r.problem});
    }
    return t;
}

Table valueTable(const std::vector<ValuePoint> &values)
{
    Table t;
    t.headers = {QStringLiteral("日期"), QStringLiteral("市值加现金"), QStringLiteral("投入资金")};
    t.rows.reserve(values.size());
    for (const ValuePoint &v : values)
        t.rows.push_back({dateText(v.date), yuanText(v.valueFen), yuanText(v.investedFen)});
    return t;
}

QByteArray csvBytes(const Table &t)
{
    QString text;
    const auto line = [&text](const QStringList &fields) {
        for (int i = 0; i < fields.size(); ++i) {
            if (i)
                text += u',';
            text += csvField(fields[i]);
        }
        text += QStringLiteral("\r\n");
    };
    line(t.headers);
    for (const QStringList &r : t.rows)
        line(r);
    return QByteArray("\xEF\xBB\xBF") + text.toUtf8();
}

} // namespace analysis
