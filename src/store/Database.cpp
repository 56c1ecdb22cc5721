#include "Database.h"

#include "Backup.h"
#include "CipherKey.h"
#include "SqlText.h"
#include "base/Numbers.h"
#include "base/Paths.h"

#include <QDate>
#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QSet>

#include <sqlcipher/sqlite3.h>

#include <bit>
#include <cmath>
#include <algorithm>
#include <limits>
#include <string>
#include <utility>
#include <vector>

namespace store {

namespace {

[[noreturn]] void raise(int number, const QString &description)
{
    throw base::RuntimeError(number, description);
}

[[noreturn]] void raiseNotSet()
{
    raise(ErrObjectNotSet, QStringLiteral("对象变量或 With 块变量未设置"));
}

[[noreturn]] void raiseClosed()
{
    raise(ErrObjectClosed, QStringLiteral("对象无效或不再被设置。"));
}

[[noreturn]] void raiseNoCurrentRecord()
{
    raise(ErrNoCurrentRecord, QStringLiteral("无当前记录。"));
}

[[noreturn]] void raiseConversion()
{
    raise(ErrConversion, QStringLiteral("数据类型转换错误。"));
}

// Turns an engine failure into the runtime error the program reports.
[[noreturn]] void raiseEngine(sqlite3 *db, int rc, const QString &fileName)
{
    const QString message = QString::fromUtf8(db ? sqlite3_errmsg(db) : sqlite3_errstr(rc));
    const int primary = rc & 0xff;
    static const QString noTable = QStringLiteral("no such table: ");
    if (message.startsWith(noTable))
        raise(ErrNoSuchTable,
              QStringLiteral("Microsoft Jet 数据库引擎找不到输入表或查询 '%1'。确定它是否存在，以及它的名称的拼写是否正确。")
                  .arg(message.mid(noTable.size())));
    if (message.startsWith(QStringLiteral("no such column")))
        raise(ErrTooFewParameters, QStringLiteral("参数不足，期待是 1。"));
    switch (primary) {
    case SQLITE_CONSTRAINT:
        raise(ErrDuplicateValue,
              QStringLiteral("由于数据会在索引、主关键字或关系中产生重复的值，请求对表的改变没有成功。"));
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
        raise(ErrLocked, QStringLiteral("不能更新；当前被锁定。"));
    case SQLITE_READONLY:
        raise(ErrReadOnly, QStringLiteral("不能更新。数据库或对象为只读。"));
    case SQLITE_NOTADB:
    case SQLITE_CORRUPT:
        raise(ErrNotADatabase, QStringLiteral("不可识别的数据库格式 '%1'。").arg(fileName));
    case SQLITE_IOERR:
    case SQLITE_FULL:
        raise(ErrDiskIo, QStringLiteral("磁盘或网络错误。"));
    case SQLITE_CANTOPEN:
    case SQLITE_PERM:
        raise(ErrCannotOpen,
              QStringLiteral("数据库引擎打不开文件 '%1'。它已经被别的用户以独占方式打开，或没有查看数据的权限。")
                  .arg(fileName));
    case SQLITE_NOMEM:
        raise(7, QStringLiteral("内存不够"));
    default:
        raise(ErrSyntax, QStringLiteral("查询表达式中的语法错误 (%1)。").arg(message));
    }
}

// The column types the program distinguishes, from the declared type.
enum class Kind { Text, Date, Double, Single, Integer, Other };

Kind kindOf(const char *declared)
{
    if (!declared)
        return Kind::Other;
    const QByteArray t = QByteArray(declared).toUpper();
    if (t.contains("CHAR") || t.contains("TEXT") || t.contains("MEMO") || t.contains("CLOB"))
        return Kind::Text;
    if (t.contains("DATE") || t.contains("TIME"))
        return Kind::Date;
    if (t.contains("SINGLE") || t.contains("FLOAT"))
        return Kind::Single;
    if (t.contains("DOUB") || t.contains("REAL") || t.contains("NUMERIC") || t.contains("DECIMAL")
        || t.contains("CURRENCY"))
        return Kind::Double;
    if (t.contains("INT") || t.contains("COUNTER") || t.contains("LONG") || t.contains("BYTE"))
        return Kind::Integer;
    return Kind::Other;
}

// Day numbers of the engine's date values count from 1899-12-30.
const QDate kDayZero(1899, 12, 30);

QVariant fromDayNumber(double v)
{
    if (!std::isfinite(v) || std::fabs(v) > 3e6)
        raiseConversion();
    const double whole = std::floor(v);
    const QDate d = kDayZero.addDays(qint64(whole));
    const qint64 ms = qint64(std::llround((v - whole) * 86400000.0));
    if (ms == 0)
        return d;
    return QDateTime(d, QTime(0, 0)).addMSecs(ms);
}

double toDayNumber(const QDateTime &dt)
{
    const double days = double(kDayZero.daysTo(dt.date()));
    return days + double(dt.time().msecsSinceStartOfDay()) / 86400000.0;
}

QString isoText(const QDateTime &dt)
{
    if (dt.time() == QTime(0, 0))
        return dt.date().toString(Qt::ISODate);
    return dt.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
}

// Reads a stored date text; the ISO forms come first, then the forms a user
// may type.
QVariant parseDate(const QString &raw)
{
    const QString s = raw.trimmed();
    // The stored form, yyyy-MM-dd, read directly: a record set of the journal
    // holds one date per row. Anything else goes through the general forms.
    if (s.size() == 10 && s[4] == u'-' && s[7] == u'-') {
        int parts[3] = {0, 0, 0};
        const int starts[3] = {0, 5, 8};
        const int lengths[3] = {4, 2, 2};
        bool digits = true;
        for (int k = 0; k < 3 && digits; ++k)
            for (int i = starts[k]; i < starts[k] + lengths[k]; ++i) {
                const char16_t c = s[i].unicode();
                if (c < u'0' || c > u'9') {
                    digits = false;
                    break;
                }
                parts[k] = parts[k] * 10 + (c - u'0');
            }
        const QDate d(parts[0], parts[1], parts[2]);
        if (digits && d.isValid())
            return d;
    }
    static const char *const dateForms[] = {"yyyy-MM-dd", "yyyy-M-d", "yyyy/M/d"};
    static const char *const timeForms[] = {"yyyy-MM-dd HH:mm:ss", "yyyy-MM-ddTHH:mm:ss", "yyyy-M-d H:mm:ss",
                                            "yyyy/M/d H:mm:ss", "yyyy-MM-dd HH:mm:ss.zzz"};
    for (const char *f : dateForms) {
        const QDate d = QDate::fromString(s, QLatin1String(f));
        if (d.isValid())
            return d;
    }
    for (const char *f : timeForms) {
        const QDateTime dt = QDateTime::fromString(s, QLatin1String(f));
        if (dt.isValid())
            return dt.time() == QTime(0, 0) ? QVariant(dt.date()) : QVariant(dt);
    }
    return QVariant();
}

QVariant integerVariant(qint64 v)
{
    if (v >= std::numeric_limits<int>::min() && v <= std::numeric_limits<int>::max())
        return int(v);
    return v;
}

// One value of a result row as the engine handed it out for its column's
// kind: a record set keeps these and makes the QVariant only when the field
// is read, so that a snapshot of many rows costs no allocation per value.
struct RawValue {
    enum Type : quint8 { Null, Integer, Real, Text, Blob } type = Null;
    quint32 size = 0; // bytes of a text or blob
    qint64 bits = 0;  // the integer, the double's bits, or the bytes' offset in the arena
};

// Reads value i of the current row of `st`; texts and blobs go to the end of
// `arena`. A numeric date outside the engine's range fails here, when the
// row is read, as a conversion error.
RawValue captureValue(sqlite3_stmt *st, int i, Kind kind, std::string &arena)
{
    RawValue v;
    const int type = sqlite3_column_type(st, i);
    if (type == SQLITE_NULL)
        return v;
    const auto bytes = [&](RawValue::Type as) {
        const char *p = as == RawValue::Blob ? static_cast<const char *>(sqlite3_column_blob(st, i))
                                             : reinterpret_cast<const char *>(sqlite3_column_text(st, i));
        const int n = sqlite3_column_bytes(st, i);
        v.type = as;
        v.bits = qint64(arena.size());
        v.size = quint32(n);
        if (n > 0)
            arena.append(p, size_t(n));
        return v;
    };
    const auto real = [&] {
        v.type = RawValue::Real;
        v.bits = std::bit_cast<qint64>(sqlite3_column_double(st, i));
        return v;
    };
    if (type == SQLITE_BLOB)
        return bytes(RawValue::Blob);
    const bool numeric = type == SQLITE_INTEGER || type == SQLITE_FLOAT;
    switch (kind) {
    case Kind::Text:
        return bytes(RawValue::Text);
    case Kind::Date:
        if (!numeric)
            return bytes(RawValue::Text);
        real();
        fromDayNumber(std::bit_cast<double>(v.bits)); // range check
        return v;
    case Kind::Double:
    case Kind::Single:
        return numeric ? real() : bytes(RawValue::Text);
    case Kind::Integer:
    case Kind::Other:
        break;
    }
    if (type == SQLITE_INTEGER) {
        v.type = RawValue::Integer;
        v.bits = sqlite3_column_int64(st, i);
        return v;
    }
    return numeric ? real() : bytes(RawValue::Text);
}

// The value in the form of its column: dates as QDate or QDateTime, doubles
// as double, singles as float, texts as QString, NULL as a null QVariant.
QVariant valueOf(const RawValue &v, const std::string &arena, Kind kind)
{
    switch (v.type) {
    case RawValue::Null:
        return QVariant();
    case RawValue::Blob:
        return QByteArray(arena.data() + v.bits, qsizetype(v.size));
    case RawValue::Integer:
        return integerVariant(v.bits);
    case RawValue::Text: {
        const QString text = QString::fromUtf8(arena.data() + v.bits, qsizetype(v.size));
        if (kind == Kind::Date) {
            const QVariant d = parseDate(text);
            return d.isValid() ? d : QVariant(text);
        }
        return text;
    }
    case RawValue::Real:
        break;
    }
    const double d = std::bit_cast<double>(v.bits);
    switch (kind) {
    case Kind::Date:
        return fromDayNumber(d);
    case Kind::Single:
        return float(d);
    default:
        return d;
    }
}

bool isNumberType(const QVariant &v)
{
    switch (v.typeId()) {
    case QMetaType::Double:
    case QMetaType::Float:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::Long:
    case QMetaType::ULong:
    case QMetaType::Char:
    case QMetaType::SChar:
    case QMetaType::UChar:
        return true;
    default:
        return false;
    }
}

bool isDateType(const QVariant &v)
{
    return v.typeId() == QMetaType::QDate || v.typeId() == QMetaType::QDateTime;
}

QDateTime asDateTime(const QVariant &v)
{
    return v.typeId() == QMetaType::QDate ? QDateTime(v.toDate(), QTime(0, 0)) : v.toDateTime();
}

// The numeric value of an assigned value for a numeric column.
double numberOf(const QVariant &v)
{
    if (v.typeId() == QMetaType::Bool)
        return v.toBool() ? -1.0 : 0.0;
    if (isNumberType(v))
        return v.toDouble();
    if (isDateType(v))
        return toDayNumber(asDateTime(v));
    if (v.typeId() == QMetaType::QString) {
        const QString s = v.toString().trimmed();
        bool ok = false;
        const double d = s.toDouble(&ok);
        if (ok && std::isfinite(d))
            return d;
    }
    raiseConversion();
}

// The value stored for `v` in a column of kind `kind`: null, qint64, double
// or QString, converted as the engine converts an assignment.
QVariant storageValue(const QVariant &v, Kind kind)
{
    if (v.isNull() || !v.isValid())
        return QVariant();
    switch (kind) {
    case Kind::Text:
        if (v.typeId() == QMetaType::QString)
            return v;
        return base::variantText(v);
    case Kind::Double:
        return numberOf(v);
    case Kind::Single: {
        const double d = numberOf(v);
        if (std::fabs(d) > double(std::numeric_limits<float>::max()))
            raise(ErrNumericOverflow, QStringLiteral("数值字段溢出。"));
        return double(float(d));
    }
    case Kind::Integer: {
        const double d = base::roundHalfEven(numberOf(v));
        if (!(d >= -9.2e18 && d <= 9.2e18))
            raise(ErrNumericOverflow, QStringLiteral("数值字段溢出。"));
        return qint64(d);
    }
    case Kind::Date: {
        if (isDateType(v))
            return isoText(asDateTime(v));
        if (v.typeId() == QMetaType::QString) {
            const QVariant d = parseDate(v.toString());
            if (!d.isValid())
                raiseConversion();
            return isoText(asDateTime(d));
        }
        return isoText(asDateTime(fromDayNumber(numberOf(v))));
    }
    case Kind::Other:
        break;
    }
    if (v.typeId() == QMetaType::Bool)
        return qint64(v.toBool() ? -1 : 0);
    if (isNumberType(v))
        return (v.typeId() == QMetaType::Double || v.typeId() == QMetaType::Float) ? QVariant(v.toDouble())
                                                                                  : QVariant(v.toLongLong());
    if (isDateType(v))
        return isoText(asDateTime(v));
    return v.toString();
}

void bindValue(sqlite3_stmt *st, int index, const QVariant &v)
{
    if (v.isNull() || !v.isValid()) {
        sqlite3_bind_null(st, index);
    } else if (v.typeId() == QMetaType::LongLong || v.typeId() == QMetaType::Int || v.typeId() == QMetaType::Bool) {
        sqlite3_bind_int64(st, index, v.toLongLong());
    } else if (v.typeId() == QMetaType::Double) {
        sqlite3_bind_double(st, index, v.toDouble());
    } else {
        const QByteArray utf8 = v.toString().toUtf8();
        sqlite3_bind_text(st, index, utf8.constData(), int(utf8.size()), SQLITE_TRANSIENT);
    }
}

QString quoteIdentifier(const QString &name)
{
    QString q = name;
    q.replace(u'"', QStringLiteral("\"\""));
    return u'"' + q + u'"';
}

// A prepared statement, finalized however the scope is left.
class Statement {
public:
    Statement(sqlite3 *db, const QString &sql, const QString &fileName)
    {
        checkStatementText(sql);
        const QByteArray utf8 = sql.toUtf8();
        const char *tail = nullptr;
        const int rc = sqlite3_prepare_v2(db, utf8.constData(), int(utf8.size()), &m_st, &tail);
        if (rc != SQLITE_OK)
            raiseEngine(db, rc, fileName);
        if (!m_st)
            raise(ErrInvalidSqlStatement,
                  QStringLiteral("无效的 SQL语句；期待 'DELETE'、'INSERT'、'PROCEDURE'、'SELECT'、或 'UPDATE'。"));
        // Anything but blanks, comments and semicolons after the statement is refused.
        if (tail && *tail) {
            sqlite3_stmt *rest = nullptr;
            const char *restTail = nullptr;
            const int rc2 = sqlite3_prepare_v2(db, tail, -1, &rest, &restTail);
            const bool more = rc2 != SQLITE_OK || rest != nullptr;
            sqlite3_finalize(rest);
            if (more) {
                sqlite3_finalize(m_st);
                m_st = nullptr;
                raise(ErrTrailingCharacters, QStringLiteral("在 SQL 语句结束后找到字符。"));
            }
        }
    }
    ~Statement() { sqlite3_finalize(m_st); }
    Statement(const Statement &) = delete;
    Statement &operator=(const Statement &) = delete;

    sqlite3_stmt *get() const { return m_st; }

    void bindAll(const QVariantList &params)
    {
        for (int i = 0; i < params.size(); ++i)
            bindValue(m_st, i + 1, params[i]);
    }

private:
    sqlite3_stmt *m_st = nullptr;
};

QString fromUtf8(const char *p)
{
    return p ? QString::fromUtf8(p) : QString();
}

bool startsWithWord(const QString &text, const QString &word, int *after)
{
    int i = 0;
    while (i < text.size() && text[i].isSpace())
        ++i;
    if (text.mid(i, word.size()).compare(word, Qt::CaseInsensitive) != 0)
        return false;
    const int end = i + int(word.size());
    if (end < text.size() && !text[end].isSpace() && text[end] != u'*')
        return false;
    *after = end;
    return true;
}

// The statement without its quoted texts, so that a value such as 'Group'
// is not taken for a keyword.
QString withoutLiterals(const QString &sql)
{
    QString out;
    out.reserve(sql.size());
    bool inText = false;
    for (QChar c : sql) {
        if (c == u'\'')
            inText = !inText; // a doubled quote leaves and re-enters at once
        else if (!inText)
            out += c;
    }
    return out;
}

// Words that make a query's rows stand for more than one table row.
bool combinesRows(const QString &statement)
{
    static const char *const words[] = {"distinct", "group", "union", "intersect", "except", "join"};
    const QString sql = withoutLiterals(statement);
    for (const char *w : words) {
        const QString word = QLatin1String(w);
        qsizetype from = 0;
        while ((from = sql.indexOf(word, from, Qt::CaseInsensitive)) >= 0) {
            const qsizetype end = from + word.size();
            const bool leftOk = from == 0 || !sql[from - 1].isLetterOrNumber();
            const bool rightOk = end >= sql.size() || !sql[end].isLetterOrNumber();
            if (leftOk && rightOk)
                return true;
            from = end;
        }
    }
    return false;
}

} // namespace

// ---------------------------------------------------------------- Database

struct Database::Impl {
    sqlite3 *db = nullptr;
    QString name; // the file name as given, for messages

    ~Impl() { closeConnection(); }
    void closeConnection()
    {
        if (db) {
            sqlite3_close_v2(db);
            db = nullptr;
        }
    }
};

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

QString userDatabaseName()
{
    return base::programFolder() + QStringLiteral("\\user2.mdb");
}

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

bool Database::isOpen() const
{
    return m_impl && m_impl->db;
}

namespace {
sqlite3 *connectionOf(const std::shared_ptr<Database::Impl> &impl)
{
    if (!impl)
        raiseNotSet();
    if (!impl->db)
        raiseClosed();
    return impl->db;
}
} // namespace

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
    if (!m_impl)
        raiseNotSet();
    if (!m_impl->db)
        raiseClosed();
    m_impl->closeConnection();
}

ReadBatch::ReadBatch(Database &db)
{
    if (db.m_impl && db.m_impl->db && sqlite3_get_autocommit(db.m_impl->db)
        && sqlite3_exec(db.m_impl->db, "BEGIN", nullptr, nullptr, nullptr) == SQLITE_OK)
        m_db = db.m_impl;
}

ReadBatch::~ReadBatch()
{
    // The handle may have been closed meanwhile; closing ended the transaction.
    if (m_db && m_db->db && !sqlite3_get_autocommit(m_db->db)
        && sqlite3_exec(m_db->db, "COMMIT", nullptr, nullptr, nullptr) != SQLITE_OK)
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

void requireUserDatabase()
{
    requireFile(userDatabaseName());
}

// ---------------------------------------------------------------- Recordset

namespace {

struct Column {
    QString name;
    QString origin; // column of the base table, empty for a computed one
    Kind kind = Kind::Other;
};

struct Row {
    qint64 rowid = 0;
    qsizetype first = 0;     // its first value in the record set's raw values, -1 while not read
    QList<QVariant> values;  // set instead for a row stored through the record set
    bool deleted = false;    // deleted through this record set
    bool gone = false;       // deleted by another handle before its values were read
};

// Rows whose values are read together when one of them is first looked at.
constexpr qsizetype kValueBlock = 256;

} // namespace

struct Recordset::Impl {
    std::shared_ptr<Database::Impl> db;
    QList<Column> columns;
    std::vector<Row> rows;
    std::vector<RawValue> raw; // the values of the rows as read, row after row
    std::string arena;         // their texts and blobs
    QString table; // base table when the rows can be changed, else empty
    // The statement the rows come from (with the row id in front when the
    // rows can be changed). Rows are read from it as they are needed: the
    // first ones at open, the rest at the first move or count.
    QString query;
    QString idQuery; // the same rows, their ids only (empty when it cannot be built)
    QVariantList params;
    bool withIds = false;
    bool complete = false;
    qsizetype queryRows = 0; // rows read from the query; rows added follow them
    qsizetype pos = -1;
    bool bof = true;
    bool eof = true;
    enum class Mode { None, Adding, Editing } mode = Mode::None;
    QList<QVariant> buffer;
    QList<bool> assigned;

    sqlite3 *connection() const
    {
        if (!db->db)
            raiseClosed();
        return db->db;
    }

    qsizetype liveCount() const
    {
        qsizetype n = 0;
        for (const Row &r : rows)
            n += r.deleted ? 0 : 1;
        return n;
    }
    qsizetype firstLive(qsizetype from) const
    {
        for (qsizetype i = std::max<qsizetype>(from, 0); i < qsizetype(rows.size()); ++i)
            if (!rows[size_t(i)].deleted)
                return i;
        return -1;
    }
    qsizetype lastLive(qsizetype from) const
    {
        for (qsizetype i = std::min<qsizetype>(from, qsizetype(rows.size()) - 1); i >= 0; --i)
            if (!rows[size_t(i)].deleted)
                return i;
        return -1;
    }
    void toFirst()
    {
        pos = firstLive(0);
        bof = eof = pos < 0;
    }
    const Row &current() const
    {
        if (bof || eof || pos < 0 || pos >= qsizetype(rows.size()))
            raiseNoCurrentRecord();
        const Row &r = rows[size_t(pos)];
        if (r.deleted)
            raise(ErrRecordDeleted, QStringLiteral("记录已删除。"));
        return r;
    }
    // Value i of row p, its block of rows read first when they were not.
    QVariant value(qsizetype p, int i)
    {
        Row *row = &rows[size_t(p)];
        if (row->first < 0 && row->values.isEmpty() && !row->gone) {
            readValues(p);
            row = &rows[size_t(p)];
        }
        if (row->deleted || row->gone)
            raise(ErrRecordDeleted, QStringLiteral("记录已删除。"));
        if (!row->values.isEmpty())
            return row->values[i];
        return valueOf(raw[size_t(row->first + i)], arena, columns[i].kind);
    }
    void checkIndex(int i) const
    {
        if (i < 0 || i >= columns.size())
            raise(ErrItemNotFound, QStringLiteral("在此集合中找不到项目。"));
    }
    void requireUpdatable() const
    {
        if (table.isEmpty())
            raise(ErrReadOnly, QStringLiteral("不能更新。数据库或对象为只读。"));
    }

    // Reads rows of `st` into the snapshot, at most `limit` (all when
    // negative), leaving out those whose row ids it holds already; the rows
    // read go before any row added through the record set.
    void readRows(sqlite3_stmt *st, qsizetype limit, const QSet<qint64> &known = {}, qsizetype skip = 0)
    {
        const int n = int(columns.size());
        const int offset = withIds ? 1 : 0;
        std::vector<Row> read;
        int rc = SQLITE_ROW;
        while ((limit < 0 || qsizetype(read.size()) < limit) && (rc = sqlite3_step(st)) == SQLITE_ROW) {
            Row r;
            r.rowid = withIds ? sqlite3_column_int64(st, 0) : 0;
            if (withIds ? known.contains(r.rowid) : skip-- > 0)
                continue;
            r.first = qsizetype(raw.size());
            for (int i = 0; i < n; ++i)
                raw.push_back(captureValue(st, i + offset, columns[i].kind, arena));
            read.push_back(std::move(r));
        }
        if (limit < 0 || qsizetype(read.size()) < limit) {
            if (rc != SQLITE_DONE)
                raiseEngine(db->db, rc, db->name);
            complete = true;
        }
        const qsizetype added = qsizetype(read.size());
        rows.insert(rows.begin() + queryRows, std::make_move_iterator(read.begin()),
                    std::make_move_iterator(read.end()));
        if (pos >= queryRows)
            pos += added; // past the end, or on a row added through the record set
        queryRows += added;
    }

    // Reads the rest of the query's rows: the query runs again and the rows
    // the snapshot holds already (by row id, or the first ones read when the
    // rows have none) are left out. Rows with ids are read as ids only when
    // the id query walks the table in the same order as the query.
    void readAll()
    {
        if (complete)
            return;
        if (withIds && readIds())
            return;
        QSet<qint64> known;
        if (withIds)
            for (const Row &r : rows)
                known.insert(r.rowid);
        Statement st(connection(), query, db->name);
        st.bindAll(params);
        readRows(st.get(), -1, known, queryRows);
    }

    // The steps of the engine's plan for `sql`, an index counted the same
    // whether or not it covers the columns asked for.
    QStringList planOf(const QString &sql)
    {
        Statement st(connection(), QStringLiteral("EXPLAIN QUERY PLAN ") + sql, db->name);
        st.bindAll(params);
        QStringList steps;
        while (sqlite3_step(st.get()) == SQLITE_ROW)
            steps << fromUtf8(reinterpret_cast<const char *>(sqlite3_column_text(st.get(), 3)))
                         .remove(QLatin1String("COVERING "));
        return steps;
    }

    // Reads the ids of the rows not held yet, when the id query visits the
    // rows as the query does: the same plan, and no sorting step whose order
    // among equal keys could differ. Returns false (nothing read) otherwise.
    bool readIds()
    {
        if (idQuery.isEmpty())
            return false;
        try {
            const QStringList plan = planOf(idQuery);
            if (plan != planOf(query) || plan.join(u'\n').contains(QLatin1String("TEMP B-TREE")))
                return false;
        } catch (const base::RuntimeError &) {
            return false;
        }
        QSet<qint64> known;
        for (const Row &r : rows)
            known.insert(r.rowid);
        Statement st(connection(), idQuery, db->name);
        st.bindAll(params);
        std::vector<Row> read;
        int rc;
        while ((rc = sqlite3_step(st.get())) == SQLITE_ROW) {
            const qint64 id = sqlite3_column_int64(st.get(), 0);
            if (!known.contains(id))
                read.push_back(Row{id, -1, {}, false, false});
        }
        if (rc != SQLITE_DONE)
            raiseEngine(db->db, rc, db->name);
        const qsizetype added = qsizetype(read.size());
        rows.insert(rows.begin() + queryRows, std::make_move_iterator(read.begin()),
                    std::make_move_iterator(read.end()));
        if (pos >= queryRows)
            pos += added;
        queryRows += added;
        complete = true;
        return true;
    }

    // Reads the values of the rows of p's block that have none yet, by row
    // id; a row no longer in the table is marked gone.
    void readValues(qsizetype p)
    {
        const qsizetype from = p / kValueBlock * kValueBlock;
        const qsizetype to = std::min<qsizetype>(from + kValueBlock, qsizetype(rows.size()));
        QHash<qint64, qsizetype> wanted;
        for (qsizetype k = from; k < to; ++k) {
            const Row &r = rows[size_t(k)];
            if (r.first < 0 && r.values.isEmpty() && !r.gone)
                wanted.insert(r.rowid, k);
        }
        QStringList cols, marks;
        for (const Column &c : columns)
            cols << quoteIdentifier(c.origin);
        for (qsizetype k = 0; k < wanted.size(); ++k)
            marks << QStringLiteral("?");
        Statement st(connection(),
                     QStringLiteral("SELECT rowid, %1 FROM %2 WHERE rowid IN (%3)")
                         .arg(cols.join(u','), quoteIdentifier(table), marks.join(u',')),
                     db->name);
        int index = 1;
        for (auto it = wanted.cbegin(); it != wanted.cend(); ++it)
            sqlite3_bind_int64(st.get(), index++, it.key());
        const int n = int(columns.size());
        int rc;
        while ((rc = sqlite3_step(st.get())) == SQLITE_ROW) {
            const qsizetype k = wanted.take(sqlite3_column_int64(st.get(), 0));
            Row &r = rows[size_t(k)];
            r.first = qsizetype(raw.size());
            for (int i = 0; i < n; ++i)
                raw.push_back(captureValue(st.get(), i + 1, columns[i].kind, arena));
        }
        if (rc != SQLITE_DONE)
            raiseEngine(db->db, rc, db->name);
        for (const qsizetype k : std::as_const(wanted))
            rows[size_t(k)].gone = true;
    }

    // Reads the stored row back into the snapshot's column order.
    QList<QVariant> readRow(qint64 rowid)
    {
        QStringList cols;
        for (const Column &c : columns)
            cols << quoteIdentifier(c.origin);
        Statement st(connection(),
                     QStringLiteral("SELECT %1 FROM %2 WHERE rowid=?").arg(cols.join(u','), quoteIdentifier(table)),
                     db->name);
        sqlite3_bind_int64(st.get(), 1, rowid);
        const int rc = sqlite3_step(st.get());
        if (rc == SQLITE_DONE)
            raise(ErrRecordDeleted, QStringLiteral("记录已删除。"));
        if (rc != SQLITE_ROW)
            raiseEngine(connection(), rc, db->name);
        QList<QVariant> values;
        std::string bytes;
        for (int i = 0; i < columns.size(); ++i) {
            bytes.clear();
            values << valueOf(captureValue(st.get(), i, columns[i].kind, bytes), bytes, columns[i].kind);
        }
        return values;
    }
};

Recordset::Recordset() = default;
Recordset::~Recordset() = default;
Recordset::Recordset(Recordset &&) noexcept = default;
Recordset &Recordset::operator=(Recordset &&) noexcept = default;

Recordset Database::openRecordset(const QString &sql, const QVariantList &params)
{
    sqlite3 *db = connectionOf(m_impl);
    auto rs = std::make_unique<Recordset::Impl>();
    rs->db = m_impl;

    // Rows of a plain query on one table carry that table's row ids, read
    // through the same query with the row id in front. That statement is
    // tried first; the query as written is only prepared when it cannot serve
    // (several tables, computed columns, grouping), so a record set on a
    // table costs one preparation, not two.
    const auto describe = [&](sqlite3_stmt *st, int offset, int n, QString &table) {
        QList<Column> columns;
        bool oneTable = true;
        for (int i = offset; i < offset + n; ++i) {
            Column c;
            c.name = fromUtf8(sqlite3_column_name(st, i));
            c.origin = fromUtf8(sqlite3_column_origin_name(st, i));
            c.kind = kindOf(sqlite3_column_decltype(st, i));
            const QString t = fromUtf8(sqlite3_column_table_name(st, i));
            const QString schema = fromUtf8(sqlite3_column_database_name(st, i));
            if (c.origin.isEmpty() || schema != QLatin1String("main"))
                oneTable = false;
            else if (table.isEmpty())
                table = t;
            else if (t.compare(table, Qt::CaseInsensitive) != 0)
                oneTable = false;
            columns.append(c);
        }
        if (!oneTable)
            table.clear();
        return columns;
    };

    // Whether a statement has row ids is settled by its columns' origins,
    // which are the same in both statements; the order of trying only saves
    // work. A select list with a call in it (sum(...)) is computed, so the
    // query as written goes first there and the row-id statement is only
    // tried when its columns do come from one table.
    int afterSelect = 0;
    std::unique_ptr<Statement> withId;
    std::unique_ptr<Statement> plain;
    const bool mayHaveIds = startsWithWord(sql, QStringLiteral("select"), &afterSelect) && !combinesRows(sql);
    const qsizetype from = sql.indexOf(QLatin1String("from"), afterSelect, Qt::CaseInsensitive);
    const bool looksComputed = sql.mid(afterSelect, from < 0 ? -1 : from - afterSelect).contains(u'(');
    QString plainTable;
    const auto preparePlain = [&] {
        plain = std::make_unique<Statement>(db, sql, m_impl->name);
        const int n = sqlite3_column_count(plain->get());
        if (n == 0)
            raise(ErrInvalidOperation, QStringLiteral("无效的操作。"));
        rs->columns = describe(plain->get(), 0, n, plainTable);
    };
    if (mayHaveIds && looksComputed)
        preparePlain();
    if (mayHaveIds && (!plain || !plainTable.isEmpty())) {
        try {
            withId = std::make_unique<Statement>(
                db, QStringLiteral("SELECT rowid AS tessaly_rowid_, ") + sql.mid(afterSelect), m_impl->name);
        } catch (const base::RuntimeError &) {
            withId.reset();
        }
        if (withId) {
            QString table;
            const int n = sqlite3_column_count(withId->get()) - 1;
            QList<Column> columns = describe(withId->get(), 1, n, table);
            if (n > 0 && !table.isEmpty() && (!plain || n == int(rs->columns.size()))) {
                rs->columns = std::move(columns);
                rs->table = table;
            } else {
                withId.reset();
            }
        }
    }
    if (!withId && !plain)
        preparePlain();

    // Only the first rows are read now: a record set opened to append a row,
    // or to look at its first row, never reads the rest of the table. The
    // other rows are read when the record set first moves or counts; most
    // queries of the program have fewer rows than this and run only once.
    constexpr qsizetype kFirstRows = 64;
    rs->query = withId ? QStringLiteral("SELECT rowid AS tessaly_rowid_, ") + sql.mid(afterSelect) : sql;
    if (withId && from > afterSelect)
        rs->idQuery = QStringLiteral("SELECT rowid AS tessaly_rowid_ ") + sql.mid(from);
    rs->params = params;
    rs->withIds = bool(withId);
    Statement &chosen = withId ? *withId : *plain;
    chosen.bindAll(params);
    rs->readRows(chosen.get(), kFirstRows);
    rs->toFirst();

    Recordset result;
    result.m_impl = std::shared_ptr<Recordset::Impl>(std::move(rs));
    return result;
}

namespace {
Recordset::Impl &checked(const std::shared_ptr<Recordset::Impl> &impl)
{
    if (!impl)
        raiseNotSet();
    impl->connection();
    return *impl;
}
} // namespace

bool Recordset::isSet() const
{
    return bool(m_impl);
}

bool Recordset::BOF() const
{
    return checked(m_impl).bof;
}

bool Recordset::EOF_() const
{
    return checked(m_impl).eof;
}

void Recordset::MoveFirst()
{
    Impl &r = checked(m_impl);
    qsizetype p = r.firstLive(0);
    if (p < 0 || p >= r.queryRows) { // the first row read may have been deleted since
        r.readAll();
        p = r.firstLive(0);
    }
    if (p < 0)
        raiseNoCurrentRecord();
    r.mode = Impl::Mode::None;
    r.pos = p;
    r.bof = r.eof = false;
}

void Recordset::MoveLast()
{
    Impl &r = checked(m_impl);
    r.readAll();
    const qsizetype p = r.lastLive(qsizetype(r.rows.size()) - 1);
    if (p < 0)
        raiseNoCurrentRecord();
    r.mode = Impl::Mode::None;
    r.pos = p;
    r.bof = r.eof = false;
}

void Recordset::MoveNext()
{
    Move(1);
}

void Recordset::MovePrevious()
{
    Move(-1);
}

void Recordset::Move(int rows)
{
    Impl &r = checked(m_impl);
    if ((rows > 0 && r.eof) || (rows < 0 && r.bof) || (rows == 0 && (r.bof || r.eof)))
        raiseNoCurrentRecord();
    r.readAll();
    r.mode = Impl::Mode::None;
    const qsizetype size = qsizetype(r.rows.size());
    qsizetype p = r.bof ? -1 : (r.eof ? size : r.pos);
    for (int step = rows; step > 0; --step) {
        p = r.firstLive(p + 1);
        if (p < 0) {
            r.pos = size;
            r.eof = true;
            r.bof = false;
            return;
        }
    }
    for (int step = rows; step < 0; ++step) {
        p = r.lastLive(p - 1);
        if (p < 0) {
            r.pos = -1;
            r.bof = true;
            r.eof = false;
            return;
        }
    }
    r.pos = p;
    r.bof = r.eof = false;
}

int Recordset::RecordCount() const
{
    Impl &r = checked(m_impl);
    r.readAll();
    return int(r.liveCount());
}

int Recordset::fieldCount() const
{
    return int(checked(m_impl).columns.size());
}

QString Recordset::fieldName(int i) const
{
    const Impl &r = checked(m_impl);
    r.checkIndex(i);
    return r.columns[i].name;
}

QVariant Recordset::field(int i) const
{
    Impl &r = checked(m_impl);
    r.checkIndex(i);
    if (r.mode != Impl::Mode::None) {
        if (r.assigned[i])
            return r.buffer[i];
        if (r.mode == Impl::Mode::Adding)
            return QVariant();
    }
    r.current();
    return r.value(r.pos, i);
}

Recordset::Rows Recordset::rows() const
{
    checked(m_impl);
    Rows rows;
    rows.m_impl = m_impl;
    return rows;
}

QVariant Recordset::Rows::value(int row, int i) const
{
    Impl &r = checked(m_impl);
    r.readAll();
    if (row < 0 || row >= qsizetype(r.rows.size()) || i < 0 || i >= r.columns.size())
        return QVariant();
    return r.value(row, i);
}

void Recordset::AddNew()
{
    Impl &r = checked(m_impl);
    r.requireUpdatable();
    r.mode = Impl::Mode::Adding;
    r.buffer = QList<QVariant>(r.columns.size());
    r.assigned = QList<bool>(r.columns.size(), false);
}

void Recordset::Edit()
{
    Impl &r = checked(m_impl);
    r.requireUpdatable();
    r.current();
    r.mode = Impl::Mode::Editing;
    r.buffer = QList<QVariant>(r.columns.size());
    r.assigned = QList<bool>(r.columns.size(), false);
}

void Recordset::setField(int i, const QVariant &value)
{
    Impl &r = checked(m_impl);
    r.checkIndex(i);
    if (r.mode == Impl::Mode::None)
        raise(ErrUpdateWithoutEdit, QStringLiteral("更新或取消更新时没有 AddNew 或 Edit。"));
    r.buffer[i] = value;
    r.assigned[i] = true;
}

void Recordset::Update()
{
    Impl &r = checked(m_impl);
    if (r.mode == Impl::Mode::None)
        raise(ErrUpdateWithoutEdit, QStringLiteral("更新或取消更新时没有 AddNew 或 Edit。"));
    sqlite3 *db = r.connection();

    // Every assigned value is converted before anything is written; a later
    // assignment to the same table column wins.
    QStringList names;
    QList<QVariant> values;
    for (int i = 0; i < r.columns.size(); ++i) {
        if (!r.assigned[i])
            continue;
        const QVariant stored = storageValue(r.buffer[i], r.columns[i].kind);
        const qsizetype k = names.indexOf(r.columns[i].origin);
        if (k >= 0) {
            values[k] = stored;
        } else {
            names << r.columns[i].origin;
            values << stored;
        }
    }

    const bool adding = r.mode == Impl::Mode::Adding;
    qint64 rowid = adding ? 0 : r.current().rowid;
    QString sql;
    if (adding) {
        QStringList cols, marks;
        for (const QString &n : names) {
            cols << quoteIdentifier(n);
            marks << QStringLiteral("?");
        }
        sql = names.isEmpty() ? QStringLiteral("INSERT INTO %1 DEFAULT VALUES").arg(quoteIdentifier(r.table))
                              : QStringLiteral("INSERT INTO %1 (%2) VALUES (%3)")
                                    .arg(quoteIdentifier(r.table), cols.join(u','), marks.join(u','));
    } else if (!names.isEmpty()) {
        QStringList sets;
        for (const QString &n : names)
            sets << quoteIdentifier(n) + QStringLiteral("=?");
        sql = QStringLiteral("UPDATE %1 SET %2 WHERE rowid=?").arg(quoteIdentifier(r.table), sets.join(u','));
    }
    if (!sql.isEmpty()) {
        backupBeforeFirstWrite(db);
        Statement st(db, sql, r.db->name);
        int index = 1;
        for (const QVariant &v : values)
            bindValue(st.get(), index++, v);
        if (!adding)
            sqlite3_bind_int64(st.get(), index, rowid);
        const int rc = sqlite3_step(st.get());
        if (rc != SQLITE_DONE)
            raiseEngine(db, rc, r.db->name);
        if (!adding && sqlite3_changes(db) == 0)
            raise(ErrRecordDeleted, QStringLiteral("记录已删除。"));
        if (adding)
            rowid = sqlite3_last_insert_rowid(db);
    }
    r.mode = Impl::Mode::None;

    // The snapshot shows the row as stored; an added row goes to its end and
    // the current record stays where it was.
    QList<QVariant> stored = r.readRow(rowid);
    if (adding)
        r.rows.push_back(Row{rowid, 0, std::move(stored), false, false});
    else
        r.rows[size_t(r.pos)].values = std::move(stored);
}

void Recordset::CancelUpdate()
{
    Impl &r = checked(m_impl);
    if (r.mode == Impl::Mode::None)
        raise(ErrUpdateWithoutEdit, QStringLiteral("更新或取消更新时没有 AddNew 或 Edit。"));
    r.mode = Impl::Mode::None;
}

void Recordset::Delete()
{
    Impl &r = checked(m_impl);
    r.requireUpdatable();
    r.mode = Impl::Mode::None;
    const qint64 rowid = r.current().rowid;
    sqlite3 *db = r.connection();
    backupBeforeFirstWrite(db);
    Statement st(db, QStringLiteral("DELETE FROM %1 WHERE rowid=?").arg(quoteIdentifier(r.table)), r.db->name);
    sqlite3_bind_int64(st.get(), 1, rowid);
    const int rc = sqlite3_step(st.get());
    if (rc != SQLITE_DONE)
        raiseEngine(db, rc, r.db->name);
    if (sqlite3_changes(db) == 0)
        raise(ErrRecordDeleted, QStringLiteral("记录已删除。"));
    r.rows[size_t(r.pos)].deleted = true;
}

} // namespace store
