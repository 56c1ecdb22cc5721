#pragma once
// Numbers and their text forms, as the whole program uses them.

#include <QString>
#include <QVariant>
#include <cstdint>

namespace base {

// The leading-number rule: blanks (space, tab, CR, LF) are ignored wherever
// they stand; the longest leading part that forms a decimal number (sign,
// digits, one point, an exponent with E or D) is taken; otherwise 0.
// "12.5abc" gives 12.5, "abc" gives 0, " 1 2 3" gives 123. A number too large
// for a double raises the overflow error.
double val(const QString &text);

// Rounds to the nearest whole number, halves to the even neighbour (2.5 -> 2).
double roundHalfEven(double v);

// Checked conversions: round half to even, then raise the overflow error when
// the result does not fit. NaN raises overflow too.
int16_t toInt16(double v);
int32_t toInt32(double v);

// 16-bit arithmetic that raises the overflow error instead of wrapping.
int16_t add16(int16_t a, int16_t b);
int16_t sub16(int16_t a, int16_t b);
int16_t mul16(int16_t a, int16_t b);

// Division as the runtime does it: x / 0 raises "除数为零", 0 / 0 overflows.
double divide(double a, double b);

// Single-precision value of a double (float rounding; overflow raises).
float toSingle(double v);

// The shortest text of a single: at most seven significant digits, trailing
// zeros dropped, no grouping; scientific form ("1.234568E+07") outside the
// range 1E-04 .. 9999999.
QString singleText(float v);
// The same for a double with at most fifteen significant digits.
QString doubleText(double v);

// The form with a reserved leading blank: a blank before a non-negative
// number, the minus sign before a negative one ("12.5" -> " 12.5").
QString signedForm(double v);

// Text of a value as the ordinary conversion gives it: dates in the Chinese
// short date form (with the time when it is not midnight), doubles and singles
// in their shortest text, integers in decimal, null as the empty text.
QString variantText(const QVariant &v);

// Chinese short date form, for example 2024/1/5.
QString shortDate(const QDate &date);

} // namespace base
