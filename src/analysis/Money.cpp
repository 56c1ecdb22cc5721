#include "Money.h"

#include "reports/TradeMath.h"

#include <QByteArray>

#include <cmath>

namespace analysis {

namespace {

Int128 pow10(int n)
{
    Int128 p = 1;
    while (n-- > 0)
        p *= 10;
    return p;
}

// Parses the 'g' text of a value ("12.5", "1.5e-05", "-3e+07").
std::optional<Decimal> parse(const QByteArray &text)
{
    Decimal d;
    bool negative = false;
    int i = 0;
    if (i < text.size() && (text[i] == '-' || text[i] == '+'))
        negative = text[i++] == '-';
    bool point = false;
    for (; i < text.size() && text[i] != 'e'; ++i) {
        if (text[i] == '.') {
            point = true;
            continue;
        }
        d.digits = d.digits * 10 + (text[i] - '0');
        if (point)
            ++d.scale;
    }
    if (i < text.size())
        d.scale -= text.mid(i + 1).toInt();
    if (d.scale < 0) {
        d.digits *= pow10(-d.scale);
        d.scale = 0;
    }
    if (negative)
        d.digits = -d.digits;
    return d;
}

std::optional<Decimal> fromValue(double v, int digits)
{
    if (!std::isfinite(v) || std::fabs(v) >= 1e15)
        return std::nullopt;
    return parse(QByteArray::number(v, 'g', digits));
}

} // namespace

std::optional<Decimal> decimalOf(double v) { return fromValue(v, 15); }

std::optional<Decimal> decimalOfSingle(float v) { return fromValue(double(v), 7); }

int64_t roundHalfEven(Int128 num, Int128 den)
{
    Int128 q = num / den;
    Int128 r = num % den;
    if (r < 0) { // floor division
        r += den;
        --q;
    }
    if (2 * r > den || (2 * r == den && (q % 2 != 0)))
        ++q;
    return int64_t(q);
}

std::optional<int64_t> roundedProduct(std::initializer_list<Decimal> factors, int shift)
{
    // Keeps every intermediate product below 2^126 (about 8.5e37).
    constexpr double kLimit = 8e37;
    Int128 num = 1;
    int scale = -shift;
    double magnitude = 1;
    for (const Decimal &f : factors) {
        magnitude *= std::fabs(double(f.digits)) + 1;
        if (magnitude > kLimit)
            return std::nullopt;
        num *= f.digits;
        scale += f.scale;
    }
    if (scale <= 0) {
        const Int128 p = pow10(-scale);
        if (magnitude * double(p) > kLimit)
            return std::nullopt;
        num *= p;
        scale = 0;
    }
    const int64_t r = roundHalfEven(num, pow10(scale));
    const Int128 check = num / pow10(scale);
    if (check > Int128(INT64_MAX / 2) || check < -Int128(INT64_MAX / 2))
        return std::nullopt;
    return r;
}

std::optional<int64_t> fenOf(double yuan)
{
    const auto d = decimalOf(yuan);
    if (!d)
        return std::nullopt;
    return roundedProduct({*d}, 2);
}

std::optional<int64_t> tradeFeeFen(double price, int64_t shares, float rate, const QString &code, float minShenzhen,
                                   float minShanghai)
{
    const auto p = decimalOf(price);
    const auto r = decimalOfSingle(rate);
    if (!p || !r)
        return std::nullopt;
    const auto fee = roundedProduct({*p, Decimal{shares, 0}, *r});
    if (!fee)
        return std::nullopt;
    float minimum = 0;
    switch (reports::feeClassOf(code)) {
    case reports::FeeClass::Shenzhen:
        minimum = minShenzhen;
        break;
    case reports::FeeClass::Shanghai:
        minimum = minShanghai;
        break;
    case reports::FeeClass::None:
        return fee;
    }
    const auto m = decimalOfSingle(minimum);
    const auto minFen = m ? roundedProduct({*m}, 2) : std::nullopt;
    if (minFen && *fee <= *minFen)
        return minFen;
    return fee;
}

QString yuanText(int64_t fen)
{
    const bool negative = fen < 0;
    const uint64_t a = negative ? uint64_t(0) - uint64_t(fen) : uint64_t(fen);
    return QStringLiteral("%1%2.%3")
        .arg(negative ? QStringLiteral("-") : QString())
        .arg(a / 100)
        .arg(int(a % 100), 2, 10, QLatin1Char('0'));
}

} // namespace analysis

namespace analysis {

std::optional<int64_t> parseScaled(const QString &text, int decimals)
{
    const QString t = text.trimmed();
    int64_t value = 0;
    int fraction = -1; // digits after the point, -1 before it
    int digits = 0;
    for (const QChar ch : t) {
        if (ch == u'.' && fraction < 0) {
            fraction = 0;
            continue;
        }
        if (ch < u'0' || ch > u'9' || ++digits > 15)
            return std::nullopt;
        if (fraction >= 0 && ++fraction > decimals)
            return std::nullopt;
        value = value * 10 + (ch.unicode() - u'0');
    }
    if (t == QStringLiteral("."))
        return std::nullopt;
    for (int i = std::max(fraction, 0); i < decimals; ++i)
        value *= 10;
    return value;
}

} // namespace analysis
