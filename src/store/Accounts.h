#pragma once
// The account logic behind the login and user-management windows, callable
// without a display. The windows keep the database handle and the current
// record set and hand them in.

#include "store/Database.h"

#include <QString>
#include <QStringList>

#include <cstdint>

namespace store {

// "select * from user where username='<name>'" (no escaping), the name
// compared with both sides case-folded for letters beyond A to Z.
QString accountQuery(const QString &name);
// The accounts listed by user management (the administrator is left out by SQL).
QString accountListQuery();

// How FindUser treats errors: the login lets them end the program, user
// management skips the failing statement and goes on.
enum class OnError { Raise, ResumeNext };

// Runs `sql` on `db`, keeps its record set in `rs` and returns 1 when it has
// a row (then `password` and `role` take columns 2 and 3 of that row, a null
// there is an error) or 0 when it is empty (outputs untouched).
int16_t FindUser(Database &db, Recordset &rs, const QString &sql, QString &password, QString &role,
                 OnError mode = OnError::Raise);

// What the login window says when the name or the password is wrong.
inline const QString kLoginFailed = QStringLiteral("用户名或密码错误！");

// The two buttons of the login window.
enum class LoginButton { Confirm, Manage };

struct LoginResult {
    bool accepted = false;
    QString name; // trimmed, upper case
    QString role;
};

// Checks the typed name and password. Confirm needs a found account; Manage
// only when a name was typed, so that with both boxes empty it admits the
// caller with an empty name and role.
LoginResult checkLogin(Database &db, Recordset &rs, const QString &typedName, const QString &typedPassword,
                       LoginButton button);

// Whether a caller may delete or change the account `target` (trimmed, upper
// case): never the administrator; "System" callers any other; everybody else
// only his own.
bool rightsAllow(const QString &target, const QString &callerName, const QString &callerRole);

// Fills the account list: runs the list query into `rs` and returns column 1
// of every row. Errors propagate (an empty list makes MoveFirst fail).
QStringList fillUserList(Database &db, Recordset &rs, int &count);

// Adds an account with the role "user" unless one of that name exists
// (compared without regard to letter case); the lookup skips its errors,
// the storing does not. `rs` becomes the lookup's record set.
bool addAccount(Database &db, Recordset &rs, const QString &name, const QString &password);

// Changes the password (and the letter case of the name) of an existing
// account, keeping its role; every statement skips its errors.
void changeAccount(Database &db, Recordset &rs, const QString &name, const QString &password);

// Deletes the current row of `rs` unless it is empty.
void deleteCurrent(Recordset &rs);

} // namespace store
