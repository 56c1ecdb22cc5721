#include "Database.h"

#include "Backup.h"
#include "Engine.h"
#include "Errors.h"

#include <QHash>
#include <QSet>

#include <algorithm>
#include <utility>
#include <vector>

namespace store {

namespace {

// Whether `text` starts with `word` (blanks before it), followed by a blank
// or a star; *after is set past it.
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

struct Column {
    QString name;
    QString origin; // column of the base table, empty for a computed one
    Kind kind = Kind::Other;
};

struct Row {
    qint64 rowid = 0;
    qsizetype first = 0;    // its first value in the record set's raw values, -1 while not read
    QList<QVariant> values; // set instead for a row stored through the record set
    bool deleted = false;   // deleted through this record set
    bool gone = false;      // deleted by another handle before its values were read
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
    QString table;             // base table when the rows can be changed, else empty
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

    sqlite3 *connection() const { return connectionOf(db); }

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
            raiseRecordDeleted();
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
            raiseRecordDeleted();
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
        insertQueryRows(std::move(read));
    }

    // Puts rows read from the query after those read before and ahead of any
    // row added through the record set.
    void insertQueryRows(std::vector<Row> read)
    {
        const qsizetype added = qsizetype(read.size());
        rows.insert(rows.begin() + queryRows, std::make_move_iterator(read.begin()),
                    std::make_move_iterator(read.end()));
        if (pos >= queryRows)
            pos += added; // past the end, or on a row added through the record set
        queryRows += added;
    }

    QSet<qint64> heldIds() const
    {
        QSet<qint64> ids;
        for (const Row &r : rows)
            ids.insert(r.rowid);
        return ids;
    }

    // The base-table columns of the record set, in its order, for a SELECT.
    QString columnList() const
    {
        QStringList cols;
        for (const Column &c : columns)
            cols << quoteIdentifier(c.origin);
        return cols.join(u',');
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
        Statement st(connection(), query, db->name);
        st.bindAll(params);
        readRows(st.get(), -1, withIds ? heldIds() : QSet<qint64>(), queryRows);
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
        const QSet<qint64> known = heldIds();
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
        insertQueryRows(std::move(read));
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
        QStringList marks;
        for (qsizetype k = 0; k < wanted.size(); ++k)
            marks << QStringLiteral("?");
        Statement st(connection(),
                     QStringLiteral("SELECT rowid, %1 FROM %2 WHERE rowid IN (%3)")
                         .arg(columnList(), quoteIdentifier(table), marks.join(u',')),
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
        Statement st(connection(),
                     QStringLiteral("SELECT %1 FROM %2 WHERE rowid=?").arg(columnList(), quoteIdentifier(table)),
                     db->name);
        sqlite3_bind_int64(st.get(), 1, rowid);
        const int rc = sqlite3_step(st.get());
        if (rc == SQLITE_DONE)
            raiseRecordDeleted();
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

bool Recordset::isSet() const { return bool(m_impl); }

bool Recordset::BOF() const { return checked(m_impl).bof; }

bool Recordset::EOF_() const { return checked(m_impl).eof; }

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

void Recordset::MoveNext() { Move(1); }

void Recordset::MovePrevious() { Move(-1); }

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

int Recordset::fieldCount() const { return int(checked(m_impl).columns.size()); }

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
        raiseUpdateWithoutEdit();
    r.buffer[i] = value;
    r.assigned[i] = true;
}

void Recordset::Update()
{
    Impl &r = checked(m_impl);
    if (r.mode == Impl::Mode::None)
        raiseUpdateWithoutEdit();
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
            raiseRecordDeleted();
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
        raiseUpdateWithoutEdit();
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
        raiseRecordDeleted();
    r.rows[size_t(r.pos)].deleted = true;
}

} // namespace store
