#pragma once
// Storing one trade in havewhat. The buy and sell windows share this code;
// everything in which they differ is one row of the TradeKind table.

#include <QDate>
#include <QString>
#include <QStringList>

namespace store {
class Recordset;
}

namespace entry {

struct TradeKind {
    QString captionWord;         // appended to the user name in the caption
    QStringList labels;          // Label1 .. Label6
    QString quantityMessage;     // shown when the quantity box is empty
    QString operation;           // 操作记录, and the reason stored when none is typed
    bool looksUpName;            // keys in the code box empty the name box; Enter fills it from the stock list
    bool selectsCodeOnDateEnter; // Enter in the date picker also selects the code box's text
    bool numbersBeforeChecks;    // price and quantity go into the row before the two checks
};

//                                caption      labels: date, code, name, price, quantity, reason
inline const TradeKind kBuy{QStringLiteral("  买入"),
                            {QStringLiteral("买入日期"), QStringLiteral("股票代码"), QStringLiteral("股票名称"),
                             QStringLiteral("买入价格"), QStringLiteral("买入数量"), QStringLiteral("买入原因")},
                            QStringLiteral("没有输入买入数量！"),
                            QStringLiteral("买进"),
                            /*looksUpName*/ true,
                            /*selectsCodeOnDateEnter*/ false,
                            /*numbersBeforeChecks*/ true};

inline const TradeKind kSell{QStringLiteral("  卖出"),
                             {QStringLiteral("卖出日期"), QStringLiteral("股票代码"), QStringLiteral("股票名称"),
                              QStringLiteral("卖出价格"), QStringLiteral("卖出数量"), QStringLiteral("卖出原因")},
                             QStringLiteral("没有输入卖出数量！"),
                             QStringLiteral("卖出"),
                             /*looksUpName*/ false,
                             /*selectsCodeOnDateEnter*/ true,
                             /*numbersBeforeChecks*/ false};

inline const QString kNoCodeMessage = QStringLiteral("没有输入代码！");
inline const QString kDefaultStockName = QStringLiteral("股票");
inline const QString kTradeQuery = QStringLiteral("select * from havewhat");

// The contents of the boxes as typed (untrimmed) and the picker's date.
struct TradeInput {
    QString user;
    QDate date;
    QString code;
    QString name;
    QString price;
    QString quantity;
    QString reason;
};

// One havewhat row as stored, every value already decided.
struct TradeRow {
    QString user;
    QString code; // trimmed
    QString name; // trimmed, kDefaultStockName when none
    QDate date;
    double price = 0;
    double shares = 0;
    float feeRate = 0; // percent
    QString operation; // kBuy.operation or kSell.operation
    QString reason;    // trimmed, the operation when none
};

// Assigns every column of the row that `rs` (a record set on kTradeQuery)
// has started with AddNew, by position, and updates it.
void putTrade(store::Recordset &rs, const TradeRow &row);

// Opens the user database, starts a new havewhat row and fills it in the
// window's order. An empty code box or quantity box (untrimmed, so blanks
// pass) abandons the row and returns the message to show; nothing is stored.
// Otherwise the row is stored, the handle closed and an empty text returned.
// Engine errors and number overflows propagate.
QString storeTrade(const TradeKind &kind, const TradeInput &input);

} // namespace entry
