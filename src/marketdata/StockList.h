#pragma once
// The process-wide stock list: entries "code name" at indexes 0 to 20000 and
// StockCount, the index of the last entry written. Filled by LoadStockList
// from the GpSz and GpSh files of the program folder; read by the buy window.

#include <QString>
#include <QStringList>

namespace marketdata {

constexpr int kStockListLast = 20000;

// Entry i (0 .. 20000); an index outside that range raises the
// subscript-out-of-range error.
const QString &StockList(int i);
void setStockList(int i, const QString &entry);

int StockCount();
void setStockCount(int count);

// Empties every entry and sets StockCount to 0.
void clearStockList();

// Reads "\GpSz" then "\GpSh" of the program folder.
void LoadStockList();

// The bytes of such a file (GBK): every record code & name, with a marker
// character in front when that makes 11 characters or more, each followed by
// the character with code 1, on one line ended by CR LF.
QByteArray stockListFileBytes(const QStringList &records);

} // namespace marketdata
