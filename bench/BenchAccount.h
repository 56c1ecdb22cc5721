#pragma once
// The trade journal the main-window figures run on.

#include "DemoMarket.h"

#include <QList>
#include <QString>

namespace bench {

// Makes a fresh user2.mdb in `folder`, points the program folder at it and
// stores `tradesPerStock` trades of `user` for each of `stocks` (every
// fourth a sale of 100 shares, the others purchases of 200), in one
// transaction.
void writeTradeJournal(const QString &folder, const QList<demodata::DemoStock> &stocks, int tradesPerStock,
                       const QString &user);

} // namespace bench
