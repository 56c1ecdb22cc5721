#pragma once
// The six process-wide fee values: columns 1 to 6 of the first row of 税率表,
// loaded by the main window at its load and read by the entry windows and the
// trade-details report.

namespace store {

// column is 1 to 6.
float feeValue(int column);
void setFeeValue(int column, float value);

} // namespace store
