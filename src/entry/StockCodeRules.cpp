#include "StockCodeRules.h"

#include "marketdata/StockList.h"
#include "store/FeeRates.h"

#include <QStringView>

namespace entry {

namespace {

struct PrefixRate {
    QStringView prefix;
    int feeColumn; // column of 税率表 / index of store::feeValue
};

// Compared in this order; the first match wins.
constexpr PrefixRate kPrefixRates[] = {
    {u"000", 1}, // Shenzhen A shares
    {u"200", 6}, // Shenzhen B shares
    {u"184", 2}, // Shenzhen funds
    {u"600", 1}, // Shanghai A shares
    {u"900", 5}, // Shanghai B shares
};

constexpr int kCodeLength = 6;
constexpr int kNameStart = 6; // entries are "code name": the code, a blank, the name

} // namespace

float feeRateForCode(const QString &code)
{
    const QString head = code.trimmed().left(3);
    for (const PrefixRate &p : kPrefixRates) {
        if (head == p.prefix)
            return store::feeValue(p.feeColumn);
    }
    return 0.0f;
}

QString stockNameFor(const QString &typedCode)
{
    const QString code = typedCode.trimmed();
    if (typedCode.isEmpty() || code.size() != kCodeLength)
        return {};
    for (int i = 0; i <= marketdata::StockCount(); ++i) {
        const QString &entry = marketdata::StockList(i);
        if (entry.contains(code, Qt::CaseSensitive))
            return entry.mid(kNameStart).trimmed();
    }
    return {};
}

} // namespace entry
