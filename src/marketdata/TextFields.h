#pragma once
// Pieces of the text reader that tests and the fuzzer reach directly.

#include "StockBar.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <QStringView>

namespace marketdata {

// The text without leading and trailing blanks (spaces only).
QString trimBlanks(const QString &s);

// Fields of one line: a field ends at a blank, a comma or the line's last
// character; a lone blank makes no field, a blank before a comma makes an
// empty one. More than 15 fields raise the subscript error.
QStringList splitTextFields(QStringView line);

// Lines of a text: CR, LF and CR LF end a line; a last line without an end counts.
QList<QStringView> splitTextLines(QStringView text);

// The bar of one line's fields in a layout ("CSV", "GET", "METATEXT", "TT2" or
// the same in lower case); Date 0 when the line holds no date.
StockBar textBar(const QStringList &fields, const QString &layout);

} // namespace marketdata
