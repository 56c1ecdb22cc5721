#include "Accounts.h"

#include "base/ErrorGuard.h"
#include "base/Numbers.h"
#include "store/SqlText.h"

namespace store {

namespace {

// A text variable cannot take a null.
QString textOf(const QVariant &v)
{
    if (v.isNull() || !v.isValid())
        throw base::RuntimeError(ErrInvalidNull, QStringLiteral("无效使用 Null"));
    return base::variantText(v);
}

// Runs one statement of a procedure in the given error mode.
template <typename F>
void step(OnError mode, F &&f)
{
    if (mode == OnError::ResumeNext)
        base::resumeNext(std::forward<F>(f));
    else
        std::forward<F>(f)();
}

bool isEmpty(const Recordset &rs) { return rs.BOF() && rs.EOF_(); }

} // namespace

QString accountQuery(const QString &name)
{
    return QStringLiteral("select * from user where ") + foldedEquals(QStringLiteral("username"), name);
}

QString accountListQuery() { return QStringLiteral("select * from user where username<>'supervisor'"); }

int16_t FindUser(Database &db, Recordset &rs, const QString &sql, QString &password, QString &role, OnError mode)
{
    int16_t found = 0;
    step(mode, [&] { rs = db.openRecordset(sql); });
    step(mode, [&] {
        if (isEmpty(rs)) {
            found = 0;
        } else {
            found = 1;
            password = textOf(rs.field(2));
            role = textOf(rs.field(3));
        }
    });
    return found;
}

LoginResult checkLogin(Database &db, Recordset &rs, const QString &typedName, const QString &typedPassword,
                       LoginButton button)
{
    LoginResult r;
    const QString name = typedName.trimmed().toUpper();
    const QString password = typedPassword.trimmed();
    QString stored;
    QString role;
    const int16_t found = FindUser(db, rs, accountQuery(name), stored, role);
    const bool lookupCounts = button == LoginButton::Confirm || !name.isEmpty();
    if (lookupCounts && found != 1)
        return r;
    if (password != stored)
        return r;
    r.accepted = true;
    r.name = name;
    r.role = role;
    return r;
}

bool rightsAllow(const QString &target, const QString &callerName, const QString &callerRole)
{
    if (target == QLatin1String("SUPERVISOR"))
        return false;
    return callerRole == QLatin1String("System") || callerName == target;
}

QStringList fillUserList(Database &db, Recordset &rs, int &count)
{
    QStringList names;
    rs = db.openRecordset(accountListQuery());
    rs.MoveFirst();
    rs.MoveLast();
    count = rs.RecordCount();
    rs.MoveFirst();
    while (!rs.EOF_()) {
        names << base::variantText(rs.field(1));
        rs.MoveNext();
    }
    return names;
}

bool addAccount(Database &db, Recordset &rs, const QString &name, const QString &password)
{
    QString stored, role;
    if (FindUser(db, rs, accountQuery(name), stored, role, OnError::ResumeNext) != 0)
        return false;
    rs.AddNew();
    rs.setField(1, name);
    rs.setField(2, password);
    rs.setField(3, QStringLiteral("user"));
    rs.Update();
    return true;
}

void changeAccount(Database &db, Recordset &rs, const QString &name, const QString &password)
{
    const OnError mode = OnError::ResumeNext;
    QString stored, role;
    const int16_t found = FindUser(db, rs, accountQuery(name), stored, role, mode);
    if (found == 0)
        return;
    step(mode, [&] { rs.Edit(); });
    step(mode, [&] { rs.setField(1, name); });
    step(mode, [&] { rs.setField(2, password); });
    step(mode, [&] { rs.setField(3, role); });
    step(mode, [&] { rs.Update(); });
}

void deleteCurrent(Recordset &rs)
{
    if (!isEmpty(rs))
        rs.Delete();
}

} // namespace store
