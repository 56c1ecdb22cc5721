#pragma once
// Corporate actions (分红送配) of an account: bonus and converted shares, cash
// dividends with the tax withheld, rights issues. They live in their own table
// of the journal file, created on first use; the windows that show the
// journal's classic figures never read it.
//
// One row is one distribution plan of one stock on one ex-date, as a company
// announces it ("10送3转增2派1元"), or what a broker booked for it (shares or
// cash credited, tax charged). Every figure is a whole number, so that nothing
// drifts:
//   - ratios are per 10 shares held at the end of the day before the ex-date,
//     in ten-thousandths (10送3 is bonusPer10 = 30000);
//   - per-share money (cash per 10, rights price) in ten-thousandths of a yuan;
//   - booked money in fen, booked shares in shares;
//   - the tax rate in hundredths of a percent (20% is 2000).
//
// The functions run plain statements with bound values on the caller's handle
// and never begin or end a transaction themselves, so a caller may store
// actions and trades together between db.execute("BEGIN") and "COMMIT".

#include <QDate>
#include <QString>

#include <cstdint>
#include <vector>

namespace store {
class Database;
}

namespace analysis {

// The table's name in user2.mdb.
inline const QString kActionTable = QStringLiteral("分红送配");

struct CorporateAction {
    int64_t id = 0; // the row id; 0 for an action not stored yet
    QString code;   // stock code, as in havewhat.股票代码
    QDate exDate;   // 除权除息日: applied before that day's trades

    int64_t bonusPer10 = 0;    // 送股: shares per 10 held, ten-thousandths
    int64_t transferPer10 = 0; // 转增: shares per 10 held, ten-thousandths
    int64_t cashPer10 = 0;     // 派息: yuan per 10 held before tax, ten-thousandths
    int64_t taxFen = 0;        // tax withheld as an amount, fen
    int64_t taxRate = 0;       // or as a rate of the dividend, hundredths of a percent

    int64_t rightsPer10 = 0;  // 配股: shares offered per 10 held, ten-thousandths
    int64_t rightsPrice = 0;  // price per offered share, ten-thousandths of a yuan
    bool rightsTaken = false; // whether the offered shares were bought

    int64_t bookedShares = 0;  // shares credited as booked (added to the ratios' result)
    int64_t bookedCashFen = 0; // dividend credited before tax as booked, fen

    QString note;
};

bool operator==(const CorporateAction &a, const CorporateAction &b);

// Creates the table when the file does not have it yet (same file, same key).
void ensureActionTable(store::Database &db);

// Whether the journal file has a table of that name.
bool hasTable(store::Database &db, const QString &name);

// The actions of `user` (the upper-case userid), by ex-date, then in the order
// they were stored; none while the table does not exist.
std::vector<CorporateAction> listActions(store::Database &db, const QString &user);

// Stores a new action of `user` and returns its row id (also written into
// `action.id`). Creates the table when it is missing; does not validate.
int64_t addAction(store::Database &db, const QString &user, CorporateAction &action);

// Deletes the action `id` of `user`; tells whether a row was deleted.
bool deleteAction(store::Database &db, const QString &user, int64_t id);

// Checks an action against the figures alone: an empty code, an invalid date,
// negative or impossible ratios, a tax larger than the dividend, a rights
// issue without a price, an action that changes nothing. Returns the Chinese
// message of the first fault, or an empty text.
QString checkActionFigures(const CorporateAction &action);

// Everything checkActionFigures checks, and that the account holds the stock
// at the end of the day before the ex-date (trades and the actions stored
// before it counted). Returns the Chinese message, or an empty text.
QString validateAction(store::Database &db, const QString &user, const CorporateAction &action);

} // namespace analysis
