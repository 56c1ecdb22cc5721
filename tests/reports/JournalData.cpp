#include "JournalData.h"

#include "base/Paths.h"
#include "store/Database.h"
#include "support/TestFolder.h"

namespace journal {

namespace {
constexpr const char *kFolderVariable = "TESSALY_REPORTS_TEST_FOLDER";
}

void addTrades(std::initializer_list<Trade> trades)
{
    store::Database db = store::openUserDatabase();
    store::Recordset rs = db.openRecordset(QStringLiteral("select * from havewhat"));
    for (const Trade &t : trades) {
        rs.AddNew();
        rs.setField(0, t.user);
        rs.setField(1, t.code);
        if (!t.nameNull)
            rs.setField(2, t.name);
        rs.setField(3, t.date);
        rs.setField(4, t.price);
        rs.setField(5, t.shares);
        rs.setField(6, t.rate);
        const QString op = t.buy ? QStringLiteral("买进") : QStringLiteral("卖出");
        rs.setField(7, op);
        rs.setField(8, op);
        rs.Update();
    }
    db.close();
}

void addCash(const QString &user, const QDate &date, double amount, const QString &reason, bool deposit)
{
    store::Database db = store::openUserDatabase();
    store::Recordset rs = db.openRecordset(QStringLiteral("select * from 资金表"));
    rs.AddNew();
    rs.setField(0, user);
    rs.setField(1, date);
    rs.setField(2, amount);
    rs.setField(3, reason);
    rs.setField(4, deposit ? QStringLiteral("存入") : QStringLiteral("提取"));
    rs.Update();
    db.close();
}

int count(const QString &table)
{
    store::Database db = store::openUserDatabase();
    const int n = db.openRecordset(QStringLiteral("select count(*) from ") + table).field(0).toInt();
    db.close();
    return n;
}

SharedFolder::SharedFolder()
{
    const QByteArray inherited = qgetenv(kFolderVariable);
    if (!inherited.isEmpty()) {
        m_child = true;
        base::setProgramFolder(QString::fromLocal8Bit(inherited));
        return;
    }
    m_folder = std::make_unique<TestFolder>();
    qputenv(kFolderVariable, m_folder->path().toLocal8Bit());
}

SharedFolder::~SharedFolder()
{
    if (!m_child)
        qunsetenv(kFolderVariable);
}

} // namespace journal
