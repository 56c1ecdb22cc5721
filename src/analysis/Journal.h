#pragma once
// The rows of one account as the analysis reads them: trades (havewhat), cash
// movements (资金表) and corporate actions, plus the two minimum fees of
// 税率表. Values keep the types the file stores; turning them into exact
// figures is the analysis' business.

#include "CorporateActions.h"

#include <QDate>
#include <QString>

#include <vector>

namespace store {
class Database;
}

namespace analysis {

struct TradeRow {
    int64_t rowid = 0;
    QString code;
    QString name;
    QDate date;
    double price = 0;  // 成交价格
    double shares = 0; // 成交股数, as typed (a sale too is positive)
    float rate = 0;    // 交易费率, percent
    bool buy = true;   // 操作记录 "买进"; "卖出" otherwise
};

struct CashRow {
    QDate date;
    double amount = 0; // 资金数量, as typed
    bool deposit = true;
};

struct Journal {
    std::vector<TradeRow> trades; // by date, then in stored order
    std::vector<CashRow> cash;    // by date, then in stored order
    std::vector<CorporateAction> actions;
    float minShenzhen = 0; // 税率表 position 3
    float minShanghai = 0; // 税率表 position 4
};

// Reads the journal of `user` (the upper-case userid). Trades whose operation
// is neither "买进" nor "卖出" are left out, as every report leaves them out.
Journal loadJournal(store::Database &db, const QString &user);

} // namespace analysis
