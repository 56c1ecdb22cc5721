#include "Numbers.h"

#include "RuntimeError.h"

#include <QDate>
#include <QDateTime>
#include <QLocale>

#include <algorithm>
#include <cfenv>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <limits>
#include <string>

namespace base {

namespace {

bool isBlank(QChar c) { return c == u' ' || c == u'\t' || c == u'\r' || c == u'\n'; }

// Writes the decimal digits of n (n > 0) at `out`; returns the end.
char *writeUnsigned(char *out, unsigned long long n)
{
    char tmp[24];
    int len = 0;
    do {
        tmp[len++] = char('0' + n % 10);
        n /= 10;
    } while (n);
    while (len)
        *out++ = tmp[--len];
    return out;
}

// Formats v with `digits` significant digits in the fixed or scientific form
// described in the header. Everything is built in a stack buffer: the grids
// call this for every number cell they show.
QString shortestText(double v, int digits)
{
    if (v == 0.0 || std::isnan(v))
        return QStringLiteral("0");
    if (std::isinf(v))
        return v > 0 ? QStringLiteral("1.#INF") : QStringLiteral("-1.#INF");

    static constexpr double kPowers[] = {1e0, 1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7, 1e8,
                                         1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15, 1e16};
    char out[64];
    char *end = out;
    const bool negative = v < 0;
    const double magnitude = std::fabs(v);

    // A whole number with at most `digits` digits is its own shortest text.
    if (magnitude < kPowers[digits] && magnitude == std::floor(magnitude)) {
        if (negative)
            *end++ = '-';
        end = writeUnsigned(end, static_cast<unsigned long long>(magnitude));
        return QString::fromLatin1(out, end - out);
    }

    // [d.ddddd]e[+-]xx, correctly rounded like printf's %.*e.
    char sci[48];
    const auto res = std::to_chars(sci, sci + sizeof sci, magnitude, std::chars_format::scientific, digits - 1);
    const char *ePos = std::find(sci, res.ptr, 'e');
    char mant[24];
    int mantLen = 0;
    for (const char *p = sci; p < ePos; ++p)
        if (*p != '.')
            mant[mantLen++] = *p;
    while (mantLen > 1 && mant[mantLen - 1] == '0')
        --mantLen;
    int exp10 = 0;
    {
        const char *p = ePos + 1;
        const bool expNegative = *p == '-';
        if (*p == '-' || *p == '+')
            ++p;
        for (; p < res.ptr; ++p)
            exp10 = exp10 * 10 + (*p - '0');
        if (expNegative)
            exp10 = -exp10;
    }

    if (negative)
        *end++ = '-';
    if (exp10 < -4 || exp10 >= digits) {
        *end++ = mant[0];
        if (mantLen > 1) {
            *end++ = '.';
            end = std::copy(mant + 1, mant + mantLen, end);
        }
        *end++ = 'E';
        *end++ = exp10 < 0 ? '-' : '+';
        const int e = std::abs(exp10);
        if (e < 10)
            *end++ = '0';
        end = writeUnsigned(end, static_cast<unsigned long long>(e));
    } else if (exp10 < 0) {
        *end++ = '0';
        *end++ = '.';
        end = std::fill_n(end, -exp10 - 1, '0');
        end = std::copy(mant, mant + mantLen, end);
    } else {
        const int intLen = exp10 + 1;
        if (mantLen <= intLen) {
            end = std::copy(mant, mant + mantLen, end);
            end = std::fill_n(end, intLen - mantLen, '0');
        } else {
            end = std::copy(mant, mant + intLen, end);
            *end++ = '.';
            end = std::copy(mant + intLen, mant + mantLen, end);
        }
    }
    return QString::fromLatin1(out, end - out);
}

} // namespace

double val(const QString &text)
{
    std::string s;
    s.reserve(static_cast<size_t>(text.size()));
    int i = 0;
    const int n = text.size();
    auto skipBlanks = [&] {
        while (i < n && isBlank(text[i]))
            ++i;
    };
    auto isDigit = [&](int k) { return k < n && text[k] >= u'0' && text[k] <= u'9'; };

    skipBlanks();
    if (i < n && (text[i] == u'+' || text[i] == u'-')) {
        s.push_back(static_cast<char>(text[i].unicode()));
        ++i;
    }
    bool anyDigit = false;
    for (;;) {
        skipBlanks();
        if (!isDigit(i))
            break;
        s.push_back(static_cast<char>(text[i].unicode()));
        anyDigit = true;
        ++i;
    }
    skipBlanks();
    if (i < n && text[i] == u'.') {
        s.push_back('.');
        ++i;
        for (;;) {
            skipBlanks();
            if (!isDigit(i))
                break;
            s.push_back(static_cast<char>(text[i].unicode()));
            anyDigit = true;
            ++i;
        }
    }
    if (!anyDigit)
        return 0.0;
    skipBlanks();
    if (i < n && (text[i] == u'e' || text[i] == u'E' || text[i] == u'd' || text[i] == u'D')) {
        int j = i + 1;
        std::string e = "e";
        while (j < n && isBlank(text[j]))
            ++j;
        if (j < n && (text[j] == u'+' || text[j] == u'-')) {
            e.push_back(static_cast<char>(text[j].unicode()));
            ++j;
        }
        bool expDigit = false;
        for (;;) {
            while (j < n && isBlank(text[j]))
                ++j;
            if (!isDigit(j))
                break;
            // Keep the exponent text short; anything beyond is out of range anyway.
            if (e.size() < 8)
                e.push_back(static_cast<char>(text[j].unicode()));
            expDigit = true;
            ++j;
        }
        if (expDigit)
            s += e;
    }
    const double v = std::strtod(s.c_str(), nullptr);
    if (std::isinf(v))
        raiseOverflow();
    return v;
}

double roundHalfEven(double v)
{
    // nearbyint follows the current rounding mode, which is to-nearest-even
    // unless someone changed it; make that explicit.
    const int old = std::fegetround();
    if (old != FE_TONEAREST)
        std::fesetround(FE_TONEAREST);
    const double r = std::nearbyint(v);
    if (old != FE_TONEAREST)
        std::fesetround(old);
    return r;
}

int16_t toInt16(double v)
{
    const double r = roundHalfEven(v);
    if (!(r >= -32768.0 && r <= 32767.0))
        raiseOverflow();
    return static_cast<int16_t>(r);
}

int32_t toInt32(double v)
{
    const double r = roundHalfEven(v);
    if (!(r >= -2147483648.0 && r <= 2147483647.0))
        raiseOverflow();
    return static_cast<int32_t>(r);
}

int16_t add16(int16_t a, int16_t b)
{
    const int r = int(a) + int(b);
    if (r < -32768 || r > 32767)
        raiseOverflow();
    return static_cast<int16_t>(r);
}

int16_t sub16(int16_t a, int16_t b)
{
    const int r = int(a) - int(b);
    if (r < -32768 || r > 32767)
        raiseOverflow();
    return static_cast<int16_t>(r);
}

int16_t mul16(int16_t a, int16_t b)
{
    const int r = int(a) * int(b);
    if (r < -32768 || r > 32767)
        raiseOverflow();
    return static_cast<int16_t>(r);
}

double divide(double a, double b)
{
    if (b == 0.0) {
        if (a == 0.0)
            raiseOverflow();
        raiseDivisionByZero();
    }
    return a / b;
}

float toSingle(double v)
{
    if (std::isfinite(v) && std::fabs(v) > double(std::numeric_limits<float>::max()))
        raiseOverflow();
    return static_cast<float>(v);
}

QString singleText(float v) { return shortestText(static_cast<double>(v), 7); }

QString doubleText(double v) { return shortestText(v, 15); }

QString signedForm(double v)
{
    const QString t = doubleText(v);
    return t.startsWith(u'-') ? t : QStringLiteral(" ") + t;
}

QString shortDate(const QDate &date)
{
    static const QLocale chinese(QLocale::Chinese, QLocale::China);
    // The locale's form is year/month/day without leading zeros; a report
    // shows tens of thousands of dates, so that form is written directly.
    static const bool yearMonthDay = chinese.dateFormat(QLocale::ShortFormat) == QLatin1String("yyyy/M/d");
    int year = 0, month = 0, day = 0;
    date.getDate(&year, &month, &day);
    if (yearMonthDay && date.isValid() && year >= 1000 && year <= 9999) {
        char out[16];
        char *end = writeUnsigned(out, static_cast<unsigned long long>(year));
        *end++ = '/';
        end = writeUnsigned(end, static_cast<unsigned long long>(month));
        *end++ = '/';
        end = writeUnsigned(end, static_cast<unsigned long long>(day));
        return QString::fromLatin1(out, end - out);
    }
    return chinese.toString(date, QLocale::ShortFormat);
}

QString variantText(const QVariant &v)
{
    if (v.isNull() || !v.isValid())
        return QString();
    switch (v.typeId()) {
    case QMetaType::QDate:
        return shortDate(v.toDate());
    case QMetaType::QDateTime: {
        const QDateTime dt = v.toDateTime();
        if (dt.time() == QTime(0, 0))
            return shortDate(dt.date());
        return shortDate(dt.date()) + u' ' + dt.time().toString(QStringLiteral("H:mm:ss"));
    }
    case QMetaType::Double:
        return doubleText(v.toDouble());
    case QMetaType::Float:
        return singleText(v.toFloat());
    case QMetaType::Bool:
        return v.toBool() ? QStringLiteral("True") : QStringLiteral("False");
    default:
        return v.toString();
    }
}

} // namespace base
