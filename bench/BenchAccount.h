#pragma once
// The trade journal the main-window figures run on.

#include "DemoMarket.h"

#include <QList>
#include <QString>

class frmBefor;

namespace bench {

// Makes a fresh user2.mdb in `folder`, points the program folder at it and
// stores `tradesPerStock` trades of `user` for each of `stocks` (every
// fourth a sale of 100 shares, the others purchases of 200), in one
// transaction.
void writeTradeJournal(const QString &folder, const QList<demodata::DemoStock> &stocks, int tradesPerStock,
                       const QString &user);

// Median time of one confirmation of the buy window opened from `main` for
// `user` (open, append, close) with the main window's refresh of its raw
// trade records, as the program connects them.
double confirmBuyMs(frmBefor &main, const QString &user);

} // namespace bench
