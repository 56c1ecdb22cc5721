#pragma once
// Rows for the platform tests, stored through the same record-set path the
// entry windows use.

#include "store/Database.h"

#include <QDate>
#include <QString>

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
    store::Recordset rs = db.openRecordset(QStringLiteral("select * from havewhat"));
    rs.AddNew();
    rs.setField(0, t.user);
    rs.setField(1, t.code);
    rs.setField(2, QStringLiteral("股票"));
    rs.setField(3, t.date);
    rs.setField(4, t.price);
    rs.setField(5, t.shares);
    rs.setField(6, t.rate);
    rs.setField(7, t.op);
    rs.setField(8, t.op);
    rs.Update();
}

inline void addCash(store::Database &db, double amount, const QString &op, const QString &user = QStringLiteral("ALICE"))
{
    store::Recordset rs = db.openRecordset(QStringLiteral("select * from 资金表"));
    rs.AddNew();
    rs.setField(0, user);
    rs.setField(1, QDate(2024, 1, 2));
    rs.setField(2, amount);
    rs.setField(3, QString());
    rs.setField(4, op);
    rs.Update();
}

inline const QString kBuy = QStringLiteral("买进");
inline const QString kSell = QStringLiteral("卖出");
