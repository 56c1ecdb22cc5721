#include "FeeRates.h"

namespace store {

namespace {
float g_fees[6] = {0, 0, 0, 0, 0, 0};
}

float feeValue(int column)
{
    return (column >= 1 && column <= 6) ? g_fees[column - 1] : 0.0f;
}

void setFeeValue(int column, float value)
{
    if (column >= 1 && column <= 6)
        g_fees[column - 1] = value;
}

} // namespace store
