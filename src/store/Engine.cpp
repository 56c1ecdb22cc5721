#include "Engine.h"

#include "Errors.h"
#include "SqlText.h"

#include <bit>

namespace store {

[[noreturn]] void raiseEngine(sqlite3 *db, int rc, const QString &fileName)
{
    const QString message = QString::fromUtf8(db ? sqlite3_errmsg(db) : sqlite3_errstr(rc));
    const int primary = rc & 0xff;
    static const QString noTable = QStringLiteral("no such table: ");
    if (message.startsWith(noTable))
        raise(ErrNoSuchTable,
              QStringLiteral(
                  "Microsoft Jet 数据库引擎找不到输入表或查询 '%1'。确定它是否存在，以及它的名称的拼写是否正确。")
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

sqlite3 *connectionOf(const std::shared_ptr<Database::Impl> &impl)
{
    if (!impl)
        raiseNotSet();
    if (!impl->db)
        raiseClosed();
    return impl->db;
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

QString quoteIdentifier(const QString &name)
{
    QString q = name;
    q.replace(u'"', QStringLiteral("\"\""));
    return u'"' + q + u'"';
}

QString fromUtf8(const char *p) { return p ? QString::fromUtf8(p) : QString(); }

Statement::Statement(sqlite3 *db, const QString &sql, const QString &fileName)
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

} // namespace store
