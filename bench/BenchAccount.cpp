#include "BenchAccount.h"

#include "base/Paths.h"
#include "store/Database.h"
#include "store/Schema.h"

#include <QDate>

namespace bench {

void writeTradeJournal(const QString &folder, const QList<demodata::DemoStock> &stocks, int tradesPerStock,
                       const QString &user)
{
    store::createJournal(folder + QStringLiteral("/user2.mdb"));
    base::setProgramFolder(folder);
    store::Database db = store::openUserDatabase();
    db.execute(QStringLiteral("begin"));
    store::Recordset rs = db.openRecordset(QStringLiteral("select * from havewhat"));
    for (const demodata::DemoStock &stock : stocks) {
        for (int t = 0; t < tradesPerStock; ++t) {
            const bool sell = t % 4 == 3;
            rs.AddNew();
            rs.setField(0, user);
            rs.setField(1, stock.code);
            rs.setField(2, stock.name);
            rs.setField(3, QDate(2020, 1, 1).addDays(t * 7));
            rs.setField(4, 10.0 + t % 10);
            rs.setField(5, sell ? 100.0 : 200.0);
            rs.setField(6, 0.35f);
            rs.setField(7, sell ? QStringLiteral("卖出") : QStringLiteral("买进"));
            rs.setField(8, QStringLiteral("bench"));
            rs.Update();
        }
    }
    db.execute(QStringLiteral("commit"));
    db.close();
}

} // namespace bench
