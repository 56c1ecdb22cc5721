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

TdxSecurity tdxSecurity(const QString &code)
{
    static const struct {
        const char *prefix;
        const char *market;
        int divisor;
    } table[] = {
        // Shanghai: A shares, the 科创板, the index codes; B shares are quoted
        // in US dollars to the tenth of a cent; funds; convertible bonds.
        {"60", "sh", 100},
        {"68", "sh", 100},
        {"1A", "sh", 100},
        {"1B", "sh", 100},
        {"90", "sh", 1000},
        {"50", "sh", 1000},
        {"51", "sh", 1000},
        {"52", "sh", 1000},
        {"56", "sh", 1000},
        {"58", "sh", 1000},
        {"11", "sh", 1000},
        // Shenzhen: A shares, the 创业板, B shares, indexes; funds; convertible bonds.
        {"00", "sz", 100},
        {"30", "sz", 100},
        {"20", "sz", 100},
        {"39", "sz", 100},
        {"15", "sz", 1000},
        {"16", "sz", 1000},
        {"18", "sz", 1000},
        {"12", "sz", 1000},
        // Beijing.
        {"43", "bj", 100},
        {"83", "bj", 100},
        {"87", "bj", 100},
        {"92", "bj", 100},
    };
    if (code.size() != 6)
        return {};
    const QStringView head = QStringView(code).left(2);
    for (const auto &row : table)
        if (head == QLatin1String(row.prefix))
            return {QString::fromLatin1(row.market), qianlongIndexStem(code), row.divisor};
    return {};
}

} // namespace marketdata
