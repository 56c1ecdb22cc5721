#include "FeeRates.h"

#include "Database.h"
#include "base/Numbers.h"

namespace store {

namespace {
float g_fees[6] = {0, 0, 0, 0, 0, 0};
}

float feeValue(int column) { return (column >= 1 && column <= 6) ? g_fees[column - 1] : 0.0f; }

void setFeeValue(int column, float value)
{
    if (column >= 1 && column <= 6)
        g_fees[column - 1] = value;
}

void loadFeeValues(Database &db)
{
    Recordset rs = db.openRecordset(QStringLiteral("select * from 税率表"));
    for (int c = 1; c <= 6; ++c)
        setFeeValue(c, base::toSingle(rs.field(c).toDouble()));
}

} // namespace store
