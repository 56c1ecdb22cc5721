#include "MarketCodes.h"

namespace marketdata {

Market marketOf(const QString &code, std::span<const char *const> shanghaiPrefixes)
{
    if (code.size() == 4)
        return Market::Shenzhen;
    if (code.size() != 6)
        return Market::None;
    const QStringView head = QStringView(code).left(2);
    for (const char *p : shanghaiPrefixes)
        if (head == QLatin1String(p))
            return Market::Shanghai;
    for (const char *p : {"39", "00", "20", "18"})
        if (head == QLatin1String(p))
            return Market::Shenzhen;
    return Market::None;
}

QString qianlongIndexStem(const QString &code)
{
    static const struct {
        const char *code;
        const char *stem;
    } table[] = {
        {"1A0001", "000001"}, {"1A0002", "000002"}, {"1A0003", "000003"}, {"1B0001", "000004"},
        {"1B0002", "000005"}, {"1B0003", "000006"}, {"1B0004", "000007"}, {"1B0005", "000008"},
        {"1B0006", "000009"}, {"1B0007", "000010"}, {"1B0008", "000011"},
    };
    for (const auto &row : table)
        if (code == QLatin1String(row.code))
            return QString::fromLatin1(row.stem);
    return code;
}

} // namespace marketdata
