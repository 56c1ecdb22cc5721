#pragma once
// What a stock code decides in the trade windows: the fee rate stored with a
// trade, and the name filled in from the stock list.

#include <QString>

namespace entry {

// The fee rate in percent for a code, from the process-wide fee values at the
// moment of the call. The first three characters of the trimmed code are
// compared exactly with the prefixes in their fixed order; the first match
// wins; any other code (also one shorter than three characters) gives 0.
float feeRateForCode(const QString &code);

// The name of the stock whose code is typed in the code box, or an empty text
// when none is found. Only a box that is not empty and whose trimmed text is
// six characters long is searched: the stock list is walked from index 0 up
// to and including StockCount(), and the first entry containing the trimmed
// code anywhere gives its text from the seventh character on, trimmed.
QString stockNameFor(const QString &typedCode);

} // namespace entry
