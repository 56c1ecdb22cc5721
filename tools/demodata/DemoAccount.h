#pragma once
// The demo account: a user "demo" (password "demo") holding trades and cash
// movements over the demo market, stored through the same code as the entry
// windows, so that a first run shows holdings, a chart and every report filled.

#include "DemoMarket.h"

#include <QString>

namespace demodata {

struct DemoAccountInfo {
    int trades = 0;
    int cashMovements = 0;
};

// Adds the account and its journal to the user2.mdb of `programFolder`, with
// prices taken from the demo market that `options` describes. The fee values
// are those of the file's 税率表 row.
DemoAccountInfo makeDemoAccount(const QString &programFolder, const DemoOptions &options);

inline const QString kDemoUser = QStringLiteral("demo");
inline const QString kDemoPassword = QStringLiteral("demo");

} // namespace demodata
