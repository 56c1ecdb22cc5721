#include "Values.h"

#include "Errors.h"
#include "base/Numbers.h"

#include <bit>
#include <cmath>
#include <limits>

namespace store {

namespace {

// Day numbers of the engine's date values count from 1899-12-30.
const QDate kDayZero(1899, 12, 30);

QString isoText(const QDateTime &dt)
{
    if (dt.time() == QTime(0, 0))
        return dt.date().toString(Qt::ISODate);
    return dt.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
}

QVariant integerVariant(qint64 v)
{
    if (v >= std::numeric_limits<int>::min() && v <= std::numeric_limits<int>::max())
        return int(v);
    return v;
}

bool isNumberType(const QVariant &v)
{
    switch (v.typeId()) {
    case QMetaType::Double:
    case QMetaType::Float:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::Long:
    case QMetaType::ULong:
    case QMetaType::Char:
    case QMetaType::SChar:
    case QMetaType::UChar:
        return true;
    default:
        return false;
    }
}

bool isDateType(const QVariant &v) { return v.typeId() == QMetaType::QDate || v.typeId() == QMetaType::QDateTime; }

QDateTime asDateTime(const QVariant &v)
{
    return v.typeId() == QMetaType::QDate ? QDateTime(v.toDate(), QTime(0, 0)) : v.toDateTime();
}

} // namespace

Kind kindOf(const char *declared)
{
    if (!declared)
        return Kind::Other;
    const QByteArray t = QByteArray(declared).toUpper();
    if (t.contains("CHAR") || t.contains("TEXT") || t.contains("MEMO") || t.contains("CLOB"))
        return Kind::Text;
    if (t.contains("DATE") || t.contains("TIME"))
        return Kind::Date;
    if (t.contains("SINGLE") || t.contains("FLOAT"))
        return Kind::Single;
    if (t.contains("DOUB") || t.contains("REAL") || t.contains("NUMERIC") || t.contains("DECIMAL") ||
        t.contains("CURRENCY"))
        return Kind::Double;
    if (t.contains("INT") || t.contains("COUNTER") || t.contains("LONG") || t.contains("BYTE"))
        return Kind::Integer;
    return Kind::Other;
}

QVariant fromDayNumber(double v)
{
    if (!std::isfinite(v) || std::fabs(v) > 3e6)
        raiseConversion();
    const double whole = std::floor(v);
    const QDate d = kDayZero.addDays(qint64(whole));
    const qint64 ms = qint64(std::llround((v - whole) * 86400000.0));
    if (ms == 0)
        return d;
    return QDateTime(d, QTime(0, 0)).addMSecs(ms);
}

double toDayNumber(const QDateTime &dt)
{
    const double days = double(kDayZero.daysTo(dt.date()));
    return days + double(dt.time().msecsSinceStartOfDay()) / 86400000.0;
}

// Reads a stored date text; the ISO forms come first, then the forms a user
// may type.
QVariant parseDate(const QString &raw)
{
    const QString s = raw.trimmed();
    // The stored form, yyyy-MM-dd, read directly: a record set of the journal
    // holds one date per row. Anything else goes through the general forms.
    if (s.size() == 10 && s[4] == u'-' && s[7] == u'-') {
        int parts[3] = {0, 0, 0};
        const int starts[3] = {0, 5, 8};
        const int lengths[3] = {4, 2, 2};
        bool digits = true;
        for (int k = 0; k < 3 && digits; ++k)
            for (int i = starts[k]; i < starts[k] + lengths[k]; ++i) {
                const char16_t c = s[i].unicode();
                if (c < u'0' || c > u'9') {
                    digits = false;
                    break;
                }
                parts[k] = parts[k] * 10 + (c - u'0');
            }
        const QDate d(parts[0], parts[1], parts[2]);
        if (digits && d.isValid())
            return d;
    }
    static const char *const dateForms[] = {"yyyy-MM-dd", "yyyy-M-d", "yyyy/M/d"};
    static const char *const timeForms[] = {"yyyy-MM-dd HH:mm:ss", "yyyy-MM-ddTHH:mm:ss", "yyyy-M-d H:mm:ss",
                                            "yyyy/M/d H:mm:ss", "yyyy-MM-dd HH:mm:ss.zzz"};
    for (const char *f : dateForms) {
        const QDate d = QDate::fromString(s, QLatin1String(f));
        if (d.isValid())
            return d;
    }
    for (const char *f : timeForms) {
        const QDateTime dt = QDateTime::fromString(s, QLatin1String(f));
        if (dt.isValid())
            return dt.time() == QTime(0, 0) ? QVariant(dt.date()) : QVariant(dt);
    }
    return QVariant();
}

// The value in the form of its column: dates as QDate or QDateTime, doubles
// as double, singles as float, texts as QString, NULL as a null QVariant.
QVariant valueOf(const RawValue &v, const std::string &arena, Kind kind)
{
    switch (v.type) {
    case RawValue::Null:
        return QVariant();
    case RawValue::Blob:
        return QByteArray(arena.data() + v.bits, qsizetype(v.size));
    case RawValue::Integer:
        return integerVariant(v.bits);
    case RawValue::Text: {
        const QString text = QString::fromUtf8(arena.data() + v.bits, qsizetype(v.size));
        if (kind == Kind::Date) {
            const QVariant d = parseDate(text);
            return d.isValid() ? d : QVariant(text);
        }
        return text;
    }
    case RawValue::Real:
        break;
    }
    const double d = std::bit_cast<double>(v.bits);
    switch (kind) {
    case Kind::Date:
        return fromDayNumber(d);
    case Kind::Single:
        return float(d);
    default:
        return d;
    }
}

namespace {

// The numeric value of an assigned value for a numeric column.
double numberOf(const QVariant &v)
{
    if (v.typeId() == QMetaType::Bool)
        return v.toBool() ? -1.0 : 0.0;
    if (isNumberType(v))
        return v.toDouble();
    if (isDateType(v))
        return toDayNumber(asDateTime(v));
    if (v.typeId() == QMetaType::QString) {
        const QString s = v.toString().trimmed();
        bool ok = false;
        const double d = s.toDouble(&ok);
        if (ok && std::isfinite(d))
            return d;
    }
    raiseConversion();
}

} // namespace

// The value stored for `v` in a column of kind `kind`: null, qint64, double
// or QString, converted as the engine converts an assignment.
QVariant storageValue(const QVariant &v, Kind kind)
{
    if (v.isNull() || !v.isValid())
        return QVariant();
    switch (kind) {
    case Kind::Text:
        if (v.typeId() == QMetaType::QString)
            return v;
        return base::variantText(v);
    case Kind::Double:
        return numberOf(v);
    case Kind::Single: {
        const double d = numberOf(v);
        if (std::fabs(d) > double(std::numeric_limits<float>::max()))
            raise(ErrNumericOverflow, QStringLiteral("数值字段溢出。"));
        return double(float(d));
    }
    case Kind::Integer: {
        const double d = base::roundHalfEven(numberOf(v));
        if (!(d >= -9.2e18 && d <= 9.2e18))
            raise(ErrNumericOverflow, QStringLiteral("数值字段溢出。"));
        return qint64(d);
    }
    case Kind::Date: {
        if (isDateType(v))
            return isoText(asDateTime(v));
        if (v.typeId() == QMetaType::QString) {
            const QVariant d = parseDate(v.toString());
            if (!d.isValid())
                raiseConversion();
            return isoText(asDateTime(d));
        }
        return isoText(asDateTime(fromDayNumber(numberOf(v))));
    }
    case Kind::Other:
        break;
    }
    if (v.typeId() == QMetaType::Bool)
        return qint64(v.toBool() ? -1 : 0);
    if (isNumberType(v))
        return (v.typeId() == QMetaType::Double || v.typeId() == QMetaType::Float) ? QVariant(v.toDouble())
                                                                                   : QVariant(v.toLongLong());
    if (isDateType(v))
        return isoText(asDateTime(v));
    return v.toString();
}

} // namespace store
