#pragma once
// Rows for the platform tests, stored through the same record-set path the
// entry windows use.

#include "support/Helpers.h"

struct Trade {
    QString code;
    QString op; // "买进" or "卖出"
    double price;
    double shares;
    float rate;
    QDate date = QDate(2024, 3, 1);
    QString user = QStringLiteral("ALICE");
};

inline void addTrade(store::Database &db, const Trade &t)
{
    testjournal::addRows(db, QStringLiteral("havewhat"),
                         {{t.user, t.code, QStringLiteral("股票"), t.date, t.price, t.shares, t.rate, t.op, t.op}});
}

inline void addCash(store::Database &db, double amount, const QString &op, const QString &user = QStringLiteral("ALICE"))
{
    testjournal::addRows(db, QStringLiteral("资金表"), {{user, QDate(2024, 1, 2), amount, QString(), op}});
}

inline const QString kBuy = QStringLiteral("买进");
inline const QString kSell = QStringLiteral("卖出");
