#pragma once
// Values between the program and the file: the column kinds the program
// tells apart, how an assigned value is stored in a column of each kind, and
// how a stored value comes back. No engine and no file are involved, so the
// rules are tested on plain values.

#include <QDate>
#include <QDateTime>
#include <QString>
#include <QVariant>

#include <string>

namespace store {

// The column types the program distinguishes, from the declared type.
enum class Kind { Text, Date, Double, Single, Integer, Other };
Kind kindOf(const char *declared);

// Day numbers of the engine's date values count from 1899-12-30. A number
// beyond some eight thousand years either way raises the conversion error.
QVariant fromDayNumber(double v);
double toDayNumber(const QDateTime &dt);

// A stored date text (ISO first, then the forms a user may type) as QDate or
// QDateTime; a null QVariant when it is none of them.
QVariant parseDate(const QString &raw);

// One value of a result row as the engine handed it out for its column's
// kind: a record set keeps these and makes the QVariant only when the field
// is read, so that a snapshot of many rows costs no allocation per value.
struct RawValue {
    enum Type : quint8 { Null, Integer, Real, Text, Blob } type = Null;
    quint32 size = 0; // bytes of a text or blob
    qint64 bits = 0;  // the integer, the double's bits, or the bytes' offset in the arena
};

// The value in the form of its column: dates as QDate or QDateTime, doubles
// as double, singles as float, texts as QString, NULL as a null QVariant.
// Texts and blobs are read from `arena`.
QVariant valueOf(const RawValue &v, const std::string &arena, Kind kind);

// The value stored for `v` in a column of kind `kind`: null, qint64, double
// or QString, converted as the engine converts an assignment. A value the
// column cannot take raises the conversion error, a number too large for it
// the numeric-overflow error.
QVariant storageValue(const QVariant &v, Kind kind);

} // namespace store
