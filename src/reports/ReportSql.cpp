#include "ReportSql.h"

#include "store/SqlText.h"

namespace reports::sql {

namespace {
QString operation(bool buy)
{
    return buy ? QStringLiteral(" and 操作记录='买进'") : QStringLiteral(" and 操作记录='卖出'");
}
QString ofUser(const QString &user) { return QStringLiteral(" where userid='") + store::pasteText(user) + u'\''; }
QString ofCode(const QString &code) { return QStringLiteral(" and 股票代码='") + store::pasteText(code) + u'\''; }
} // namespace

QString tradeCodes(const QString &user)
{
    return QStringLiteral("select distinct 股票代码 from havewhat") + ofUser(user);
}

QString shareSum(const QString &user, const QString &code, bool buy)
{
    return QStringLiteral("select sum(成交股数) from havewhat") + ofUser(user) + operation(buy) + ofCode(code);
}

QString tradeRows(const QString &user, const QString &code, bool buy)
{
    return QStringLiteral("select  成交日期,股票代码, 股票名称, 操作记录, 成交价格,成交股数,交易费率 from havewhat") +
           ofUser(user) + operation(buy) + ofCode(code);
}

QString stockRecords(const QString &user, const QString &code)
{
    return QStringLiteral("select userid, 股票代码, 股票名称, 成交日期, 操作记录, 成交价格, 成交股数 from HaveWhat") +
           ofUser(user) + ofCode(code) + QStringLiteral(" order by  成交日期 asc");
}

QString fundRecords(const QString &user)
{
    return QStringLiteral("select * from 资金表 where userid='") + store::pasteText(user) +
           QStringLiteral("' order by  操作日期 asc");
}

QString soldCodes(const QString &user)
{
    return QStringLiteral("select distinct 股票代码,股票名称 from havewhat") + ofUser(user) + operation(false);
}

QString saleTotals(const QString &user, const QString &code)
{
    return QStringLiteral("select sum(成交价格*成交股数*(1-交易费率/100)) ,sum(成交股数) from havewhat") +
           ofUser(user) + operation(false) + ofCode(code);
}

QString purchaseTotals(const QString &user, const QString &code)
{
    return QStringLiteral("select sum(成交价格*成交股数*(1+交易费率/100)),sum(成交股数) from havewhat") + ofUser(user) +
           operation(true) + ofCode(code);
}

QString saleDates(const QString &user, const QString &code)
{
    return QStringLiteral("select 成交日期 from havewhat") + ofUser(user) + operation(false) +
           QStringLiteral(" and 股票代码='") + store::pasteText(code) + QStringLiteral("' order by 成交日期");
}

} // namespace reports::sql
