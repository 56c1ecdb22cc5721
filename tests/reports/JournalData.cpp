#include "JournalData.h"

#include "base/Paths.h"
#include "support/Helpers.h"

namespace journal {

constexpr const char *kFolderVariable = "TESSALY_REPORTS_TEST_FOLDER";

namespace {
void addRows(const QString &table, const QList<QVariantList> &rows)
{
    store::Database db = store::openUserDatabase();
    testjournal::addRows(db, table, rows);
    db.close();
}
} // namespace

void addTrades(std::initializer_list<Trade> trades)
{
    QList<QVariantList> rows;
    for (const Trade &t : trades) {
        const QString op = t.buy ? QStringLiteral("买进") : QStringLiteral("卖出");
        rows.append({t.user, t.code, t.nameNull ? QVariant() : QVariant(t.name), t.date, t.price, t.shares, t.rate, op, op});
    }
    addRows(QStringLiteral("havewhat"), rows);
}

void addCash(const QString &user, const QDate &date, double amount, const QString &reason, bool deposit)
{
    addRows(QStringLiteral("资金表"),
            {{user, date, amount, reason, deposit ? QStringLiteral("存入") : QStringLiteral("提取")}});
}

int count(const QString &table)
{
    return testjournal::rowsOf(QStringLiteral("select count(*) from ") + table).value(0).value(0).toInt();
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
