#pragma once
// The cost method an account last chose in the analysis window, kept in a
// small table of the journal file (created on first use).

#include "Portfolio.h"

namespace store {
class Database;
}

namespace analysis {

CostMethod savedCostMethod(store::Database &db, const QString &user);
void saveCostMethod(store::Database &db, const QString &user, CostMethod method);

} // namespace analysis
