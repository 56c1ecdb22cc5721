#include "Schema.h"

#include "base/RuntimeError.h"

#include <QFile>
#include <QFileInfo>
#include <QStringList>

#include <sqlcipher/sqlite3.h>

namespace store {

namespace {

// Column types of the file. Text compares without regard to letter case;
// every number is stored as a real so that arithmetic in SQL never turns
// into integer division; "SINGLE REAL" marks the single-precision columns
// (the record sets hand them out as float); dates are ISO text.
const QString kText = QStringLiteral("TEXT COLLATE NOCASE");
const QString kDate = QStringLiteral("DATETIME");
const QString kDouble = QStringLiteral("DOUBLE");
const QString kSingle = QStringLiteral("SINGLE REAL");

struct ColumnDef {
    QString name;
    QString type;
};

QString createTable(const QString &table, const QList<ColumnDef> &columns)
{
    QStringList parts;
    for (const ColumnDef &c : columns)
        parts << u'"' + c.name + QStringLiteral("\" ") + c.type;
    return QStringLiteral("CREATE TABLE \"%1\" (%2)").arg(table, parts.join(QStringLiteral(", ")));
}

QStringList schemaStatements()
{
    QList<ColumnDef> fee{{kFeeColumns[0], QStringLiteral("INTEGER")}};
    for (int i = 1; i <= 6; ++i)
        fee.append({kFeeColumns[i], kSingle});
    return {
        createTable(QStringLiteral("user"), {{user_col::id, QStringLiteral("INTEGER PRIMARY KEY AUTOINCREMENT")},
                                             {user_col::username, kText},
                                             {user_col::password, kText},
                                             {user_col::power, kText}}),
        createTable(QStringLiteral("havewhat"), {{QStringLiteral("userid"), kText},
                                                 {QStringLiteral("股票代码"), kText},
                                                 {QStringLiteral("股票名称"), kText},
                                                 {QStringLiteral("成交日期"), kDate},
                                                 {QStringLiteral("成交价格"), kDouble},
                                                 {QStringLiteral("成交股数"), kDouble},
                                                 {QStringLiteral("交易费率"), kSingle},
                                                 {QStringLiteral("操作记录"), kText},
                                                 {kTradeReasonColumn, kText}}),
        createTable(QStringLiteral("资金表"), {{QStringLiteral("userid"), kText},
                                               {QStringLiteral("操作日期"), kDate},
                                               {QStringLiteral("资金数量"), kDouble},
                                               {kCashReasonColumn, kText},
                                               {QStringLiteral("操作表示"), kText}}),
        createTable(QStringLiteral("税率表"), fee),
        // Every query of the program filters on the user, most on the code and
        // the operation too: without these the holdings and reports scan the
        // whole journal once per stock.
        QStringLiteral("CREATE INDEX \"havewhat_user_code_op\" ON \"havewhat\" (userid, 股票代码, 操作记录)"),
        QStringLiteral("CREATE INDEX \"资金表_user_op\" ON \"资金表\" (userid, 操作表示)"),
        QStringLiteral("CREATE INDEX \"user_name\" ON \"user\" (username)"),
    };
}

[[noreturn]] void raiseCreate(sqlite3 *db, const QString &path)
{
    const QString message = QString::fromUtf8(sqlite3_errmsg(db));
    throw base::RuntimeError(3051, QStringLiteral("不能创建文件 '%1'：%2").arg(path, message));
}

void exec(sqlite3 *db, const QString &sql, const QString &path)
{
    if (sqlite3_exec(db, sql.toUtf8().constData(), nullptr, nullptr, nullptr) != SQLITE_OK)
        raiseCreate(db, path);
}

void insert(sqlite3 *db, const QString &sql, const QList<QVariant> &values, const QString &path)
{
    sqlite3_stmt *st = nullptr;
    const QByteArray utf8 = sql.toUtf8();
    if (sqlite3_prepare_v2(db, utf8.constData(), int(utf8.size()), &st, nullptr) != SQLITE_OK)
        raiseCreate(db, path);
    int i = 1;
    for (const QVariant &v : values) {
        if (v.typeId() == QMetaType::QString) {
            const QByteArray t = v.toString().toUtf8();
            sqlite3_bind_text(st, i++, t.constData(), int(t.size()), SQLITE_TRANSIENT);
        } else {
            sqlite3_bind_double(st, i++, v.toDouble());
        }
    }
    const int rc = sqlite3_step(st);
    sqlite3_finalize(st);
    if (rc != SQLITE_DONE)
        raiseCreate(db, path);
}

} // namespace

void createJournal(const QString &path, const QString &password, const FeeRow &fees)
{
    if (QFileInfo::exists(path))
        throw base::RuntimeError(58, QStringLiteral("文件已存在"));

    sqlite3 *db = nullptr;
    const int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE;
    if (sqlite3_open_v2(QFile::encodeName(path).constData(), &db, flags, nullptr) != SQLITE_OK) {
        const QString message = QString::fromUtf8(sqlite3_errmsg(db));
        sqlite3_close_v2(db);
        throw base::RuntimeError(3051, QStringLiteral("不能创建文件 '%1'：%2").arg(path, message));
    }
    try {
        // The engine's default cipher settings, so that any SQLCipher shell
        // opens the file with the password alone.
        const QByteArray key = password.toUtf8();
        if (!key.isEmpty() && sqlite3_key(db, key.constData(), int(key.size())) != SQLITE_OK)
            raiseCreate(db, path);
        exec(db, QStringLiteral("BEGIN"), path);
        for (const QString &sql : schemaStatements())
            exec(db, sql, path);
        insert(db,
               QStringLiteral("INSERT INTO \"user\" (%1, %2, %3) VALUES (?, ?, ?)")
                   .arg(user_col::username, user_col::password, user_col::power),
               {kAdminName, kAdminPassword, kAdminRole}, path);
        QStringList cols, marks;
        QList<QVariant> values{1.0};
        cols << u'"' + kFeeColumns[0] + u'"';
        marks << QStringLiteral("?");
        for (int i = 1; i <= 6; ++i) {
            cols << u'"' + kFeeColumns[i] + u'"';
            marks << QStringLiteral("?");
            values << double(fees.values[i - 1]);
        }
        insert(db, QStringLiteral("INSERT INTO \"税率表\" (%1) VALUES (%2)").arg(cols.join(u','), marks.join(u',')),
               values, path);
        exec(db, QStringLiteral("COMMIT"), path);
    } catch (...) {
        sqlite3_close_v2(db);
        QFile::remove(path);
        throw;
    }
    sqlite3_close_v2(db);
}

} // namespace store
