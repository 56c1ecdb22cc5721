#include "ImportStore.h"

#include "entry/CashEntry.h"
#include "entry/TradeEntry.h"

#include <QDateTime>

namespace importer {

namespace {

void ensureImportedTable(store::Database &db)
{
    db.execute(QStringLiteral("CREATE TABLE IF NOT EXISTS %1 (userid TEXT COLLATE NOCASE NOT NULL, "
                              "标识 TEXT NOT NULL, 文件 TEXT, 导入时间 TEXT, PRIMARY KEY (userid, 标识))")
                   .arg(kImportedTable));
}

} // namespace

JournalState readJournalState(store::Database &db, const QString &user)
{
    store::ReadBatch batch(db);
    JournalState state;
    if (analysis::hasTable(db, kImportedTable)) {
        store::Recordset rs =
            db.openRecordset(QStringLiteral("select 标识 from %1 where userid=?").arg(kImportedTable), {user});
        for (; !rs.EOF_(); rs.MoveNext())
            state.importedKeys.insert(rs.field(0).toString());
    }
    store::Recordset rs =
        db.openRecordset(QStringLiteral("select 股票代码, sum(case when 操作记录=? then 成交股数 else -成交股数 end) "
                                        "from havewhat where userid=? group by 股票代码"),
                         {entry::kBuy.operation, user});
    for (; !rs.EOF_(); rs.MoveNext())
        state.heldShares.insert(rs.field(0).toString(), rs.field(1).toDouble());
    // Bonus shares booked before (by an import or by hand) are held too.
    for (const analysis::CorporateAction &a : analysis::listActions(db, user))
        state.heldShares[a.code] += double(a.bookedShares);
    return state;
}

StoreResult storeImport(const QList<PreviewRow> &rows, const QString &user, const QString &fileName)
{
    StoreResult result;
    const QString reason = QStringLiteral("导入 ") + fileName;
    const QString now = QDateTime::currentDateTime().toString(Qt::ISODate);

    store::Database db = store::openUserDatabase();
    {
        store::Transaction transaction(db);
        ensureImportedTable(db);
        const QSet<QString> before = readJournalState(db, user).importedKeys;
        store::Recordset trades = db.openRecordset(entry::kTradeQuery + QStringLiteral(" where 0"));
        store::Recordset cash = db.openRecordset(entry::kCashQuery + QStringLiteral(" where 0"));
        QList<PreviewRow> stored;
        for (const PreviewRow &row : rows) {
            if (row.kind == RowKind::Skipped) {
                ++result.skipped;
                continue;
            }
            if (row.alreadyImported || before.contains(row.key)) {
                ++result.alreadyImported;
                continue;
            }
            switch (row.kind) {
            case RowKind::Buy:
            case RowKind::Sell: {
                const entry::TradeKind &kind = row.kind == RowKind::Buy ? entry::kBuy : entry::kSell;
                trades.AddNew();
                entry::putTrade(trades, {user, row.code, row.name, row.date, row.price, row.quantity, row.feeRate,
                                         kind.operation, reason});
                break;
            }
            case RowKind::Deposit:
            case RowKind::Withdrawal:
                cash.AddNew();
                entry::putCash(cash, row.kind == RowKind::Deposit ? entry::kDeposit : entry::kWithdrawal,
                               {user, row.date, QString::number(row.amount, 'f', 2), reason});
                break;
            default: {
                analysis::CorporateAction action = actionOf(row, reason);
                analysis::addAction(db, user, action);
                break;
            }
            }
            db.execute(
                QStringLiteral("insert into %1 (userid, 标识, 文件, 导入时间) values (?, ?, ?, ?)").arg(kImportedTable),
                {user, row.key, fileName, now});
            stored.append(row);
        }
        result.stored = countRows(stored);
        transaction.commit();
    }
    db.close();
    return result;
}

} // namespace importer
