// Importing a statement of 10,000 rows (trades of 100 stocks with deposits
// between them) into an empty journal: reading and classifying the file,
// then storing it in one transaction. Each run starts from a fresh journal.
#include "Bench.h"

#include "base/Paths.h"
#include "import/ImportStore.h"
#include "store/FeeRates.h"
#include "store/Schema.h"

#include <QElapsedTimer>
#include <QTemporaryDir>

#include <cstdio>

namespace {

constexpr int kRows = 10000;
constexpr int kRuns = 3;

// A tab-separated statement: every tenth row a bank transfer, the others
// purchases (and every fourth trade a sale) of 100 shares.
QByteArray statementBytes()
{
    QString text = QStringLiteral("成交日期\t证券代码\t证券名称\t操作\t成交数量\t成交均价\t成交金额\t手续费\t印花税\t过户费\t发生金额\t合同编号\n");
    const QDate first(2015, 1, 5);
    for (int i = 0; i < kRows; ++i) {
        const QString date = first.addDays(i / 8).toString(QStringLiteral("yyyyMMdd"));
        if (i % 10 == 0) {
            text += QStringLiteral("%1\t\t\t银行转证券\t0\t0\t0\t0\t0\t0\t5000.00\t\n").arg(date);
            continue;
        }
        const bool sale = i % 4 == 0;
        const QString code = QStringLiteral("6%1").arg(i % 100, 5, 10, QLatin1Char('0'));
        const double price = 5.0 + (i % 37) * 0.13;
        const double amount = price * 100;
        text += QStringLiteral("%1\t%2\t股票%3\t%4\t100\t%5\t%6\t5.00\t%7\t0.10\t0\t%8\n")
                    .arg(date, code, QString::number(i % 100), sale ? QStringLiteral("证券卖出") : QStringLiteral("证券买入"))
                    .arg(price, 0, 'f', 2)
                    .arg(amount, 0, 'f', 2)
                    .arg(sale ? amount / 1000 : 0.0, 0, 'f', 2)
                    .arg(i);
    }
    return text.toUtf8();
}

} // namespace

TESSALY_BENCH(import_10k)
{
    const QString previous = base::programFolder();
    const QByteArray bytes = statementBytes();
    std::vector<double> samples;
    for (int run = 0; run < kRuns; ++run) {
        QTemporaryDir folder;
        store::createJournal(folder.path() + QStringLiteral("/user2.mdb"));
        base::setProgramFolder(folder.path());
        QElapsedTimer t;
        t.start();
        const importer::StatementTable table = importer::readStatement(bytes);
        store::Database db = store::openUserDatabase();
        store::loadFeeValues(db);
        const importer::JournalState journal = importer::readJournalState(db, QStringLiteral("BENCH"));
        db.close();
        const QList<importer::PreviewRow> rows = importer::classify(table, table.columns, journal);
        const importer::StoreResult r = importer::storeImport(rows, QStringLiteral("BENCH"), QStringLiteral("bench.txt"));
        samples.push_back(t.nsecsElapsed() / 1e6);
        if (r.stored.trades + r.stored.deposits != kRows)
            std::fprintf(stderr, "import bench: %d rows stored\n", r.stored.trades + r.stored.deposits);
    }
    bench::figure(QStringLiteral("import_10k_ms"), bench::median(samples), QStringLiteral("ms"));
    base::setProgramFolder(previous);
}
