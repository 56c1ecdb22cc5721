#include "CorporateActions.h"

#include "Journal.h"
#include "Portfolio.h"
#include "store/Database.h"

#include <tuple>

namespace analysis {

namespace {

const QString kCreate = QStringLiteral("create table if not exists 分红送配 ("
                                       "id integer primary key autoincrement, "
                                       "userid text collate nocase not null, "
                                       "股票代码 text collate nocase not null, "
                                       "除权日期 text not null, "
                                       "送股 integer not null default 0, "
                                       "转增 integer not null default 0, "
                                       "派息 integer not null default 0, "
                                       "扣税金额 integer not null default 0, "
                                       "扣税比例 integer not null default 0, "
                                       "配股 integer not null default 0, "
                                       "配股价 integer not null default 0, "
                                       "参与配股 integer not null default 0, "
                                       "入账股数 integer not null default 0, "
                                       "入账金额 integer not null default 0, "
                                       "备注 text)");

const QString kColumns = QStringLiteral("id, 股票代码, 除权日期, 送股, 转增, 派息, 扣税金额, 扣税比例, 配股, 配股价, "
                                        "参与配股, 入账股数, 入账金额, 备注");

// Per-10 ratios above this (1000 shares per 10 held) are not a real plan.
constexpr int64_t kMaxRatio = 1000 * 10000;

auto tied(const CorporateAction &a)
{
    return std::tie(a.id, a.code, a.exDate, a.bonusPer10, a.transferPer10, a.cashPer10, a.taxFen, a.taxRate,
                    a.rightsPer10, a.rightsPrice, a.rightsTaken, a.bookedShares, a.bookedCashFen, a.note);
}

} // namespace

bool operator==(const CorporateAction &a, const CorporateAction &b) { return tied(a) == tied(b); }

bool hasTable(store::Database &db, const QString &name)
{
    return db.openRecordset(QStringLiteral("select count(*) from sqlite_master where type='table' and name=?"), {name})
               .field(0)
               .toLongLong() > 0;
}

void ensureActionTable(store::Database &db)
{
    // Checked first, so that only the first use writes to the file.
    if (!hasTable(db, kActionTable))
        db.execute(kCreate);
}

std::vector<CorporateAction> listActions(store::Database &db, const QString &user)
{
    if (!hasTable(db, kActionTable))
        return {};
    store::Recordset rs = db.openRecordset(QStringLiteral("select ") + kColumns +
                                               QStringLiteral(" from 分红送配 where userid=? order by 除权日期, id"),
                                           {user});
    std::vector<CorporateAction> out;
    for (; !rs.EOF_(); rs.MoveNext()) {
        CorporateAction a;
        a.id = rs.field(0).toLongLong();
        a.code = rs.field(1).toString();
        const QVariant d = rs.field(2);
        a.exDate = d.typeId() == QMetaType::QDateTime ? d.toDateTime().date() : d.toDate();
        a.bonusPer10 = rs.field(3).toLongLong();
        a.transferPer10 = rs.field(4).toLongLong();
        a.cashPer10 = rs.field(5).toLongLong();
        a.taxFen = rs.field(6).toLongLong();
        a.taxRate = rs.field(7).toLongLong();
        a.rightsPer10 = rs.field(8).toLongLong();
        a.rightsPrice = rs.field(9).toLongLong();
        a.rightsTaken = rs.field(10).toLongLong() != 0;
        a.bookedShares = rs.field(11).toLongLong();
        a.bookedCashFen = rs.field(12).toLongLong();
        a.note = rs.field(13).toString();
        out.push_back(a);
    }
    return out;
}

int64_t addAction(store::Database &db, const QString &user, CorporateAction &action)
{
    ensureActionTable(db);
    db.execute(QStringLiteral("insert into 分红送配 (userid, 股票代码, 除权日期, 送股, 转增, 派息, 扣税金额, 扣税比例, "
                              "配股, 配股价, 参与配股, 入账股数, 入账金额, 备注) "
                              "values (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)"),
               {user, action.code.trimmed(), action.exDate.toString(Qt::ISODate), qint64(action.bonusPer10),
                qint64(action.transferPer10), qint64(action.cashPer10), qint64(action.taxFen), qint64(action.taxRate),
                qint64(action.rightsPer10), qint64(action.rightsPrice), qint64(action.rightsTaken ? 1 : 0),
                qint64(action.bookedShares), qint64(action.bookedCashFen), action.note});
    store::Recordset rs = db.openRecordset(QStringLiteral("select last_insert_rowid()"));
    action.id = rs.field(0).toLongLong();
    return action.id;
}

bool deleteAction(store::Database &db, const QString &user, int64_t id)
{
    if (!hasTable(db, kActionTable))
        return false;
    store::Recordset rs =
        db.openRecordset(QStringLiteral("select count(*) from 分红送配 where userid=? and id=?"), {user, qint64(id)});
    if (rs.field(0).toLongLong() == 0)
        return false;
    db.execute(QStringLiteral("delete from 分红送配 where userid=? and id=?"), {user, qint64(id)});
    return true;
}

QString checkActionFigures(const CorporateAction &a)
{
    if (a.code.trimmed().isEmpty())
        return QStringLiteral("没有输入股票代码！");
    if (!a.exDate.isValid())
        return QStringLiteral("除权日期无效！");
    const int64_t figures[] = {a.bonusPer10,  a.transferPer10, a.cashPer10,    a.taxFen,       a.taxRate,
                               a.rightsPer10, a.rightsPrice,   a.bookedShares, a.bookedCashFen};
    for (int64_t v : figures)
        if (v < 0)
            return QStringLiteral("送股、转增、派息、配股和扣税都不能是负数！");
    if (a.bonusPer10 > kMaxRatio || a.transferPer10 > kMaxRatio || a.rightsPer10 > kMaxRatio ||
        a.cashPer10 > kMaxRatio * 100 || a.rightsPrice > kMaxRatio * 100 || a.bookedShares > kMaxRatio * 1000 ||
        a.bookedCashFen > kMaxRatio * 1000 || a.taxFen > kMaxRatio * 1000)
        return QStringLiteral("比例过大，不可能是真实的分红送配方案！");
    if (a.taxRate > 10000)
        return QStringLiteral("扣税比例不能超过 100%！");
    if (a.taxFen > 0 && a.taxRate > 0)
        return QStringLiteral("扣税只能填写金额或比例之一！");
    // A tax amount alone is a booking of its own (tax charged later); a rate needs a dividend.
    if (a.taxRate > 0 && a.cashPer10 == 0 && a.bookedCashFen == 0)
        return QStringLiteral("没有派息，不能按比例扣税！");
    if (a.rightsPer10 > 0 && a.rightsPrice == 0)
        return QStringLiteral("配股必须输入配股价格！");
    if (a.rightsPer10 == 0 && (a.rightsPrice > 0 || a.rightsTaken))
        return QStringLiteral("没有输入每 10 股配股数！");
    if (a.bonusPer10 + a.transferPer10 + a.cashPer10 + a.rightsPer10 + a.bookedShares + a.bookedCashFen + a.taxFen +
            a.taxRate ==
        0)
        return QStringLiteral("送股、转增、派息、配股都是 0，没有可以登记的内容！");
    return QString();
}

QString validateAction(store::Database &db, const QString &user, const CorporateAction &action)
{
    QString message = checkActionFigures(action);
    if (!message.isEmpty())
        return message;
    const Journal journal = loadJournal(db, user);
    const int64_t held = sharesHeldBefore(journal, action.code.trimmed(), action.exDate);
    if (held <= 0)
        return QStringLiteral("除权日期 %1 之前没有持有 %2，不能登记分红送配！")
            .arg(action.exDate.toString(QStringLiteral("yyyy-MM-dd")), action.code.trimmed());
    if (action.taxFen > 0 && (action.cashPer10 > 0 || action.bookedCashFen > 0) &&
        action.taxFen > grossDividendFen(action, held))
        return QStringLiteral("扣税金额大于派息金额！");
    return QString();
}

} // namespace analysis
