#include "Database.h"

#include "Backup.h"
#include "CipherKey.h"
#include "Engine.h"
#include "Errors.h"
#include "SqlText.h"
#include "base/Paths.h"

#include <QFile>
#include <QFileInfo>

namespace store {

Database::Database() = default;
Database::~Database() = default;
Database::Database(Database &&) noexcept = default;
Database &Database::operator=(Database &&) noexcept = default;

namespace {

QString passwordOf(const QString &connect)
{
    const QStringList parts = connect.split(u';');
    for (const QString &p : parts) {
        const qsizetype eq = p.indexOf(u'=');
        if (eq > 0 && p.left(eq).trimmed().compare(QLatin1String("pwd"), Qt::CaseInsensitive) == 0)
            return p.mid(eq + 1);
    }
    return QString();
}

// Opens the connection and proves the key by reading the schema; closes it
// again on failure. Returns the engine's result code.
int tryOpen(const QString &path, bool readOnly, const QByteArray &key, sqlite3 **out)
{
    const int flags = (readOnly ? SQLITE_OPEN_READONLY : SQLITE_OPEN_READWRITE) | SQLITE_OPEN_NOMUTEX;
    sqlite3 *db = nullptr;
    int rc = sqlite3_open_v2(QFile::encodeName(path).constData(), &db, flags, nullptr);
    if (rc == SQLITE_OK && !key.isEmpty())
        rc = sqlite3_key(db, key.constData(), int(key.size()));
    if (rc == SQLITE_OK)
        rc = sqlite3_exec(db, "SELECT count(*) FROM sqlite_master", nullptr, nullptr, nullptr);
    // A store that has returned must survive a power loss right after it:
    // the rollback journal is deleted at commit (the file stays one file, with
    // no write-ahead log beside it), and EXTRA syncs the journal before the
    // file is changed, the file before the journal goes, and the folder after
    // the journal is deleted, so that a lost deletion cannot bring the journal
    // back to undo the commit.
    if (rc == SQLITE_OK)
        rc = sqlite3_exec(db, "PRAGMA journal_mode=DELETE; PRAGMA synchronous=EXTRA", nullptr, nullptr, nullptr);
    if (rc != SQLITE_OK) {
        sqlite3_close_v2(db);
        return rc;
    }
    sqlite3_busy_timeout(db, 2000);
    registerCaseFold(db);
    // Every page read from the file is decrypted and checked; the default
    // cache (2 MB) is smaller than a journal of some ten thousand trades, so
    // the per-stock queries of the holdings and reports would decrypt the
    // same pages again and again. Pages are only allocated when read.
    sqlite3_exec(db, "PRAGMA cache_size=-65536", nullptr, nullptr, nullptr);
    *out = db;
    return SQLITE_OK;
}

// The file `name` stands for; ErrFileNotFound when there is none.
QFileInfo requireFile(const QString &text)
{
    const QFileInfo info(base::resolvePath(text));
    if (!info.exists() || !info.isFile())
        raise(ErrFileNotFound, QStringLiteral("找不到文件 '%1'。").arg(base::nativeSeparators(text)));
    return info;
}

QString userDatabaseName() { return base::programFolder() + QStringLiteral("\\user2.mdb"); }

} // namespace

Database Database::open(const QString &text, int options, bool readOnly, const QString &connect)
{
    Q_UNUSED(options); // never exclusive: several handles of this process share the file
    const QString name = base::nativeSeparators(text); // as messages show it
    const QFileInfo info = requireFile(text);
    const QString path = info.filePath();

    QByteArray head;
    {
        QFile f(path);
        if (!f.open(QIODevice::ReadOnly))
            raiseEngine(nullptr, SQLITE_CANTOPEN, name);
        head = f.read(kSaltBytes);
    }
    const qint64 size = info.size();
    const bool plain = head.startsWith(QByteArrayView("SQLite format 3"));
    const QString password = passwordOf(connect);
    // An encrypted file is whole pages of 1024 bytes; anything shorter than a
    // salt cannot be one (and the engine would take an empty file as new).
    if (head.size() < kSaltBytes)
        raise(ErrNotADatabase, QStringLiteral("不可识别的数据库格式 '%1'。").arg(name));

    const QByteArray key = (password.isEmpty() || plain) ? QByteArray() : rawKeyText(password, head);
    sqlite3 *db = nullptr;
    const int rc = (plain && !password.isEmpty()) ? SQLITE_NOTADB : tryOpen(path, readOnly, key, &db);
    if (rc != SQLITE_OK) {
        if (!key.isEmpty())
            forgetRawKey(password, head);
        const int primary = rc & 0xff;
        if (primary == SQLITE_NOTADB || primary == SQLITE_CORRUPT) {
            const bool looksEncrypted = !plain && size % 1024 == 0;
            if (looksEncrypted)
                raise(ErrNotValidPassword, QStringLiteral("不是有效的密码。"));
            raise(ErrNotADatabase, QStringLiteral("不可识别的数据库格式 '%1'。").arg(name));
        }
        raiseEngine(nullptr, rc, name);
    }
    Database d;
    d.m_impl = std::make_shared<Impl>();
    d.m_impl->db = db;
    d.m_impl->name = name;
    return d;
}

bool Database::isOpen() const { return m_impl && m_impl->db; }

void Database::execute(const QString &sql, const QVariantList &params)
{
    sqlite3 *db = connectionOf(m_impl);
    Statement st(db, sql, m_impl->name);
    st.bindAll(params);
    if (sqlite3_column_count(st.get()) > 0)
        raise(ErrSelectNotExecutable, QStringLiteral("不能执行选定查询。"));
    if (!sqlite3_stmt_readonly(st.get()))
        backupBeforeFirstWrite(db);
    const int rc = sqlite3_step(st.get());
    if (rc != SQLITE_DONE)
        raiseEngine(db, rc, m_impl->name);
}

QList<TableDef> Database::tableDefs()
{
    sqlite3 *db = connectionOf(m_impl);
    QList<TableDef> defs;
    defs.append({QStringLiteral("sqlite_master"), kSystemObject});
    Statement st(db, QStringLiteral("SELECT name FROM sqlite_master WHERE type='table' ORDER BY rowid"), m_impl->name);
    int rc;
    while ((rc = sqlite3_step(st.get())) == SQLITE_ROW) {
        const QString name = fromUtf8(reinterpret_cast<const char *>(sqlite3_column_text(st.get(), 0)));
        const bool own = name.startsWith(QLatin1String("sqlite_"), Qt::CaseInsensitive);
        defs.append({name, own ? kSystemObject : 0});
    }
    if (rc != SQLITE_DONE)
        raiseEngine(db, rc, m_impl->name);
    return defs;
}

void Database::close()
{
    connectionOf(m_impl); // ErrObjectNotSet or ErrObjectClosed
    m_impl->closeConnection();
}

ReadBatch::ReadBatch(Database &db)
{
    if (db.m_impl && db.m_impl->db && sqlite3_get_autocommit(db.m_impl->db) &&
        sqlite3_exec(db.m_impl->db, "BEGIN", nullptr, nullptr, nullptr) == SQLITE_OK)
        m_db = db.m_impl;
}

ReadBatch::~ReadBatch()
{
    // The handle may have been closed meanwhile; closing ended the transaction.
    if (m_db && m_db->db && !sqlite3_get_autocommit(m_db->db) &&
        sqlite3_exec(m_db->db, "COMMIT", nullptr, nullptr, nullptr) != SQLITE_OK)
        sqlite3_exec(m_db->db, "ROLLBACK", nullptr, nullptr, nullptr);
}

Transaction::Transaction(Database &db)
{
    sqlite3 *c = connectionOf(db.m_impl);
    const int rc = sqlite3_exec(c, "BEGIN", nullptr, nullptr, nullptr);
    if (rc != SQLITE_OK)
        raiseEngine(c, rc, db.m_impl->name);
    m_db = db.m_impl;
}

Transaction::~Transaction()
{
    if (m_db && m_db->db && !sqlite3_get_autocommit(m_db->db))
        sqlite3_exec(m_db->db, "ROLLBACK", nullptr, nullptr, nullptr);
}

void Transaction::commit()
{
    sqlite3 *c = connectionOf(m_db);
    const int rc = sqlite3_exec(c, "COMMIT", nullptr, nullptr, nullptr);
    if (rc != SQLITE_OK)
        raiseEngine(c, rc, m_db->name);
    m_db.reset();
}

Database openUserDatabase()
{
    removeUnfinishedBackups();
    return Database::open(userDatabaseName(), 1, false, kConnect);
}

void requireUserDatabase() { requireFile(userDatabaseName()); }

} // namespace store
