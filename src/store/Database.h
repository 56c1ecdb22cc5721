#pragma once
// The journal database: an SQLCipher file opened like the original engine's
// workspace.OpenDatabase, and record sets that are snapshots of a query's rows
// (with the base table's row ids, so that AddNew/Edit/Update/Delete act on the
// table). A record set reads its first rows when opened and the others when
// it first moves or counts, so that appending through one costs nothing per row
// of the table. Where the rows carry row ids, moving and counting read only
// the ids; the values of a row are read when it is first looked at, a block
// of rows at a time. No statement stays open between calls.
//
// Every failure raises base::RuntimeError with the engine's error number and
// a Chinese description.

#include "base/RuntimeError.h"

#include <QList>
#include <QString>
#include <QVariant>

#include <memory>

namespace store {

// The connect text of the delivered file; the password is the SQLCipher key.
inline const QString kConnect = QStringLiteral(";pwd=qtr.vemblox.nzk");

// Engine error numbers used by the program.
enum EngineError : int {
    ErrNoCurrentRecord = 3021,     // "无当前记录。"
    ErrUpdateWithoutEdit = 3020,   // "更新或取消更新时没有 AddNew 或 Edit。"
    ErrFileNotFound = 3024,        // "找不到文件 '…'。"
    ErrNotValidPassword = 3031,    // "不是有效的密码。"
    ErrSyntax = 3075,              // SQL that the engine cannot run
    ErrNoSuchTable = 3078,         // "Microsoft Jet 数据库引擎找不到输入表或查询 '…'。"
    ErrNotADatabase = 3343,        // "不可识别的数据库格式 '…'。"
    ErrObjectClosed = 3420,        // "对象无效或不再被设置。"
    ErrConversion = 3421,          // "数据类型转换错误。"
    ErrObjectNotSet = 91,          // "对象变量或 With 块变量未设置"
    ErrInvalidNull = 94,           // "无效使用 Null"
    ErrDuplicateValue = 3022,      // a unique column would hold a value twice
    ErrReadOnly = 3027,            // "不能更新。数据库或对象为只读。"
    ErrDiskIo = 3043,              // "磁盘或网络错误。"
    ErrCannotOpen = 3051,          // the file cannot be opened (permissions, locked)
    ErrTooFewParameters = 3061,    // "参数不足，期待是 1。" (an unknown column name)
    ErrSelectNotExecutable = 3065, // "不能执行选定查询。" (execute() of a select)
    ErrInvalidSqlStatement = 3129, // empty or not a statement
    ErrTrailingCharacters = 3142,  // "在 SQL 语句结束后找到字符。"
    ErrFieldNotUpdatable = 3164,   // "不能更新字段。" (a computed column)
    ErrRecordDeleted = 3167,       // "记录已删除。"
    ErrLocked = 3218,              // "不能更新；当前被锁定。"
    ErrInvalidOperation = 3219,    // "无效的操作。" (openRecordset of an action query)
    ErrItemNotFound = 3265,        // "在此集合中找不到项目。"
    ErrNumericOverflow = 3349,     // "数值字段溢出。"
};

// TableDef attributes of the engine's own tables (the system-object flag).
constexpr int kSystemObject = int(0x80000002u);

struct TableDef {
    QString name;
    int attributes = 0; // 0 for an ordinary table; system/hidden tables are not 0
};

class Recordset;

class Database {
public:
    Database(); // no file: every operation raises ErrObjectNotSet
    ~Database();
    Database(const Database &) = delete;
    Database &operator=(const Database &) = delete;
    Database(Database &&) noexcept;
    Database &operator=(Database &&) noexcept;

    // workspace(0).OpenDatabase(name, options, readOnly, connect). `name` is a
    // path text that goes through base::resolvePath. Never creates the file.
    static Database open(const QString &name, int options, bool readOnly, const QString &connect);

    bool isOpen() const;

    // Runs SQL text and returns the snapshot of its rows, positioned on the
    // first row (or at BOF and EOF together when there is none). `params`
    // are bound to the statement's placeholders (?) in order: integers and
    // booleans as integers, doubles as reals, anything else as text.
    Recordset openRecordset(const QString &sql, const QVariantList &params = {});

    // Runs a statement that returns no rows, with the same binding.
    void execute(const QString &sql, const QVariantList &params = {});

    // The tables of the file, in the file's order, including the engine's own.
    QList<TableDef> tableDefs();

    // Closes this handle; later use raises ErrObjectClosed.
    void close();

    struct Impl;

private:
    std::shared_ptr<Impl> m_impl;
    friend class Recordset;
    friend class ReadBatch;
    friend class Transaction;
};

// Many queries in a row on one handle: while a ReadBatch lives they all read
// within one transaction, so the file is locked and its header checked once
// instead of once per query. Meant for reading only. When the handle is not
// open or a transaction is already running it does nothing; it never raises.
class ReadBatch {
public:
    explicit ReadBatch(Database &db);
    ~ReadBatch();
    ReadBatch(const ReadBatch &) = delete;
    ReadBatch &operator=(const ReadBatch &) = delete;

private:
    std::shared_ptr<Database::Impl> m_db;
};

// Several changes that are stored together or not at all: BEGIN when it is
// made, ROLLBACK when it ends without commit() (an error on the way out).
class Transaction {
public:
    explicit Transaction(Database &db);
    ~Transaction();
    Transaction(const Transaction &) = delete;
    Transaction &operator=(const Transaction &) = delete;
    void commit();

private:
    std::shared_ptr<Database::Impl> m_db;
};

// The program's database: programFolder() + "\user2.mdb", options 1,
// read-write, connect text kConnect.
Database openUserDatabase();
// Raises what openUserDatabase raises when the file is missing, without
// opening it (no key derivation).
void requireUserDatabase();

class Recordset {
public:
    Recordset(); // "Nothing": every operation raises ErrObjectNotSet
    ~Recordset();
    Recordset(const Recordset &) = delete;
    Recordset &operator=(const Recordset &) = delete;
    Recordset(Recordset &&) noexcept;
    Recordset &operator=(Recordset &&) noexcept;

    bool isSet() const;

    bool BOF() const;
    bool EOF_() const; // EOF is a macro of <cstdio>
    void MoveFirst();
    void MoveLast();
    void MoveNext();
    void MovePrevious();
    // Moves `rows` from the current record (negative moves back); moving
    // before the first record leaves BOF set, after the last EOF.
    void Move(int rows);
    // Rows of the snapshot (after MoveLast, as the original engine reports it).
    int RecordCount() const;

    int fieldCount() const;
    QString fieldName(int i) const;
    // Value of field i of the current row; ErrNoCurrentRecord at BOF/EOF.
    // Dates come as QDate (QDateTime when they carry a time), doubles as
    // double, single columns as float, texts as QString, NULL as a null QVariant.
    QVariant field(int i) const;

    // Starts a new row (all fields null); Update appends it.
    void AddNew();
    // Starts changing the current row.
    void Edit();
    // Assigns field i of the row being added or edited; the value is converted
    // to the column's type at Update (a number into a text column becomes its
    // text; a text a numeric column cannot take fails with ErrConversion).
    void setField(int i, const QVariant &value);
    // Stores the row being added or edited (one statement, all or nothing).
    void Update();
    // Abandons the row being added or edited.
    void CancelUpdate();
    // Deletes the current row from its table; the record set then has no
    // current row until it is moved.
    void Delete();

    struct Impl;

    // The rows of the record set as a table, read without moving it: value
    // of field i of row `row` (0 is the first row of the snapshot). It keeps
    // the rows alive after the record set is reassigned, so a grid can show
    // them as it scrolls. Outside the rows or the fields it gives a null
    // value; a row deleted since raises ErrRecordDeleted.
    class Rows {
    public:
        QVariant value(int row, int i) const;

    private:
        friend class Recordset;
        std::shared_ptr<Impl> m_impl;
    };
    Rows rows() const;

private:
    std::shared_ptr<Impl> m_impl;
    friend class Database;
};

} // namespace store
