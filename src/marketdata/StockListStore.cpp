#include "StockList.h"

#include "base/RuntimeError.h"

#include <vector>

namespace marketdata {

namespace {
std::vector<QString> &entries()
{
    static std::vector<QString> list(kStockListLast + 1);
    return list;
}
int g_count = 0;
} // namespace

const QString &StockList(int i)
{
    if (i < 0 || i > kStockListLast)
        base::raiseSubscript();
    return entries()[static_cast<size_t>(i)];
}

void setStockList(int i, const QString &entry)
{
    if (i < 0 || i > kStockListLast)
        base::raiseSubscript();
    entries()[static_cast<size_t>(i)] = entry;
}

int StockCount() { return g_count; }
void setStockCount(int count) { g_count = count; }

void clearStockList()
{
    for (auto &e : entries())
        e.clear();
    g_count = 0;
}

} // namespace marketdata
