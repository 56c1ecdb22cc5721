#pragma once
// The ANSI code page of the list and settings files: GBK (read as GB18030,
// which contains it).

#include <QByteArray>
#include <QString>

namespace base {

// Decodes GBK bytes; a byte sequence that is not GBK becomes U+FFFD.
QString fromGbk(const QByteArray &bytes);
// Encodes to GBK/GB18030; never fails.
QByteArray toGbk(const QString &text);

} // namespace base
