#pragma once
// The six process-wide fee values: columns 1 to 6 of the first row of 税率表,
// loaded by the main window at its load and read by the entry windows and the
// trade-details report.

namespace store {

class Database;

// column is 1 to 6.
float feeValue(int column);
void setFeeValue(int column, float value);

// Copies columns 1 to 6 of the first row of 税率表 of `db` into the values.
void loadFeeValues(Database &db);

} // namespace store
