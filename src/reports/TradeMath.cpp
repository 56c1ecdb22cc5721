#include "TradeMath.h"

#include "base/Numbers.h"
#include "base/RuntimeError.h"

namespace reports {

FeeClass feeClassOf(const QString &code)
{
    const QString head = code.left(2);
    if (head == u"00" || head == u"40")
        return FeeClass::Shenzhen;
    if (head == u"60")
        return FeeClass::Shanghai;
    return FeeClass::None;
}

TradeFee tradeFee(double price, double shares, float rate, const QString &code, float minShenzhen, float minShanghai)
{
    TradeFee result;
    result.fee = base::toSingle(base::toInt32(price * shares * static_cast<double>(rate)) / 100.0);
    switch (feeClassOf(code)) {
    case FeeClass::Shenzhen:
        if (result.fee <= minShenzhen)
            result.fee = minShenzhen;
        result.shown = true;
        break;
    case FeeClass::Shanghai:
        if (result.fee <= minShanghai)
            result.fee = minShanghai;
        result.shown = true;
        break;
    case FeeClass::None:
        break;
    }
    return result;
}

double tradeAmount(double price, double shares, float fee, bool purchase)
{
    const double hundredths = base::roundHalfEven((price * shares + static_cast<double>(fee)) * 100.0);
    return purchase ? -(hundredths / 100.0) : hundredths / 100.0;
}

int16_t shareTotal16(const QVariant &sum)
{
    if (sum.isNull())
        return 0;
    return base::toInt16(sum.toDouble());
}

ProfitRow profitRow(const QVariant &saleProceeds, const QVariant &sharesSold, const QVariant &purchaseCost,
                    const QVariant &sharesBought)
{
    ProfitRow row;
    row.proceeds = saleProceeds.isNull() ? int16_t(0) : base::toInt16(saleProceeds.toDouble());
    if (!purchaseCost.isNull())
        row.cost =
            base::toInt16(sharesSold.toDouble() * base::divide(purchaseCost.toDouble(), sharesBought.toDouble()));
    const double perShare = base::divide(saleProceeds.toDouble(), sharesSold.toDouble());
    row.averagePrice = base::doubleText(base::toInt32(perShare * 100.0) / 100.0);
    row.sharesSold = base::variantText(sharesSold);
    row.profit = base::sub16(row.proceeds, row.cost);
    return row;
}

} // namespace reports
