#include "Settings.h"

#include "CorporateActions.h"
#include "store/Database.h"

namespace analysis {

namespace {
const QString kTable = QStringLiteral("分析设置");

void ensureTable(store::Database &db)
{
    if (!hasTable(db, kTable))
        db.execute(QStringLiteral("create table if not exists 分析设置 (userid text collate nocase primary key, "
                                  "成本方法 integer not null default 0)"));
}
} // namespace

CostMethod savedCostMethod(store::Database &db, const QString &user)
{
    if (!hasTable(db, kTable))
        return CostMethod::MovingAverage;
    store::Recordset rs = db.openRecordset(QStringLiteral("select 成本方法 from 分析设置 where userid=?"), {user});
    return !rs.EOF_() && rs.field(0).toLongLong() == 1 ? CostMethod::Fifo : CostMethod::MovingAverage;
}

void saveCostMethod(store::Database &db, const QString &user, CostMethod method)
{
    ensureTable(db);
    db.execute(QStringLiteral("insert or replace into 分析设置 (userid, 成本方法) values (?, ?)"),
               {user, qint64(method == CostMethod::Fifo ? 1 : 0)});
}

} // namespace analysis
