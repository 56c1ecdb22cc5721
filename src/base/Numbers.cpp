#include "Numbers.h"

#include "RuntimeError.h"

#include <QDate>
#include <QDateTime>
#include <QLocale>

#include <cfenv>
#include <cmath>
#include <cstdio>
#include <limits>
#include <string>

namespace base {

namespace {

bool isBlank(QChar c)
{
    return c == u' ' || c == u'\t' || c == u'\r' || c == u'\n';
}

// Formats v with `digits` significant digits in the fixed or scientific form
// described in the header.
QString shortestText(double v, int digits)
{
    if (v == 0.0 || std::isnan(v))
        return QStringLiteral("0");
    if (std::isinf(v))
        return v > 0 ? QStringLiteral("1.#INF") : QStringLiteral("-1.#INF");

    char buf[64];
    std::snprintf(buf, sizeof buf, "%.*e", digits - 1, v);
    // buf: [-]d.ddddde[+-]xx
    std::string s(buf);
    const auto ePos = s.find('e');
    std::string mant = s.substr(0, ePos);
    const int exp10 = std::stoi(s.substr(ePos + 1));
    const bool negative = mant[0] == '-';
    if (negative)
        mant.erase(0, 1);
    std::string digitsOnly;
    for (char c : mant)
        if (c != '.')
            digitsOnly.push_back(c);
    while (digitsOnly.size() > 1 && digitsOnly.back() == '0')
        digitsOnly.pop_back();

    std::string out;
    if (exp10 < -4 || exp10 >= digits) {
        out = digitsOnly.substr(0, 1);
        if (digitsOnly.size() > 1)
            out += "." + digitsOnly.substr(1);
        char e[16];
        std::snprintf(e, sizeof e, "E%c%02d", exp10 < 0 ? '-' : '+', std::abs(exp10));
        out += e;
    } else if (exp10 < 0) {
        out = "0." + std::string(static_cast<size_t>(-exp10 - 1), '0') + digitsOnly;
    } else {
        const size_t intLen = static_cast<size_t>(exp10) + 1;
        if (digitsOnly.size() <= intLen) {
            out = digitsOnly + std::string(intLen - digitsOnly.size(), '0');
        } else {
            out = digitsOnly.substr(0, intLen) + "." + digitsOnly.substr(intLen);
        }
    }
    if (negative)
        out.insert(out.begin(), '-');
    return QString::fromLatin1(out.c_str());
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

float toSingle(double v)
{
    if (std::isfinite(v) && std::fabs(v) > double(std::numeric_limits<float>::max()))
        raiseOverflow();
    return static_cast<float>(v);
}

QString singleText(float v)
{
    return shortestText(static_cast<double>(v), 7);
}

QString doubleText(double v)
{
    return shortestText(v, 15);
}

QString signedForm(double v)
{
    const QString t = doubleText(v);
    return t.startsWith(u'-') ? t : QStringLiteral(" ") + t;
}

QString shortDate(const QDate &date)
{
    static const QLocale chinese(QLocale::Chinese, QLocale::China);
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
