#pragma once
// Daily closes of the stocks of a journal, read through the quote lookup of
// the main window from whichever source the market-data settings name.

#include "Portfolio.h"

#include <QString>

namespace analysis {

// Closes of every code in `journal` from the source "0" .. "6" under
// `dataDir`. A code without a file, or whose file a reader refuses (its
// runtime error), has no entry.
PriceHistory readPrices(const Journal &journal, const QString &dataDir, const QString &source);

// The same from the loaded market-data settings (DataPath, DataFormat).
PriceHistory readPrices(const Journal &journal);

} // namespace analysis
