#pragma once
// What the journal code shares about the engine: the connection behind a
// handle, prepared statements, binding and reading values, and the mapping
// of the engine's failures to the program's errors. Used by Database.cpp and
// Recordset.cpp only.

#include "Database.h"
#include "Values.h"

#include <sqlcipher/sqlite3.h>

#include <memory>
#include <string>

namespace store {

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

// The open connection of a handle; ErrObjectNotSet without a handle,
// ErrObjectClosed after close().
sqlite3 *connectionOf(const std::shared_ptr<Database::Impl> &impl);

// Turns an engine failure into the runtime error the program reports.
[[noreturn]] void raiseEngine(sqlite3 *db, int rc, const QString &fileName);

// Binds a value made by storageValue (or a parameter): integers and
// booleans as integers, doubles as reals, anything else as text.
void bindValue(sqlite3_stmt *st, int index, const QVariant &v);

// Value i of the current row of `st`; texts and blobs go to the end of
// `arena`. A numeric date outside the engine's range fails here, when the
// row is read, as a conversion error.
RawValue captureValue(sqlite3_stmt *st, int i, Kind kind, std::string &arena);

QString quoteIdentifier(const QString &name);
QString fromUtf8(const char *p);

// A prepared statement, finalized however the scope is left. Text after the
// statement other than blanks, comments and semicolons is refused.
class Statement {
public:
    Statement(sqlite3 *db, const QString &sql, const QString &fileName);
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

} // namespace store
