#include "Journal.h"

#include "store/Database.h"

namespace analysis {

namespace {
QDate dateOf(const QVariant &v)
{
    if (v.typeId() == QMetaType::QDateTime)
        return v.toDateTime().date();
    return v.toDate();
}
} // namespace

Journal loadJournal(store::Database &db, const QString &user)
{
    Journal j;
    const store::ReadBatch batch(db);
    store::Recordset rs = db.openRecordset(
        QStringLiteral(
            "select rowid, 股票代码, 股票名称, 成交日期, 成交价格, 成交股数, 交易费率, 操作记录 from havewhat "
            "where userid=? and 操作记录 in ('买进','卖出') order by 成交日期, rowid"),
        {user});
    for (; !rs.EOF_(); rs.MoveNext()) {
        TradeRow t;
        t.rowid = rs.field(0).toLongLong();
        t.code = rs.field(1).toString().trimmed();
        t.name = rs.field(2).toString();
        t.date = dateOf(rs.field(3));
        t.price = rs.field(4).toDouble();
        t.shares = rs.field(5).toDouble();
        t.rate = rs.field(6).toFloat();
        t.buy = rs.field(7).toString() == QStringLiteral("买进");
        j.trades.push_back(t);
    }
    rs = db.openRecordset(QStringLiteral("select 操作日期, 资金数量, 操作表示 from 资金表 where userid=? "
                                         "and 操作表示 in ('存入','提取') order by 操作日期, rowid"),
                          {user});
    for (; !rs.EOF_(); rs.MoveNext())
        j.cash.push_back(
            {dateOf(rs.field(0)), rs.field(1).toDouble(), rs.field(2).toString() == QStringLiteral("存入")});
    rs = db.openRecordset(QStringLiteral("select * from 税率表"));
    if (!rs.EOF_()) {
        j.minShenzhen = rs.field(3).toFloat();
        j.minShanghai = rs.field(4).toFloat();
    }
    j.actions = listActions(db, user);
    return j;
}

} // namespace analysis
