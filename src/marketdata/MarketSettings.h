#pragma once
// The market-data settings shared by the whole program: the data directory
// of the chosen source and the index of that source in the DataSet list.
// Both start empty and 0 and change only through DataSet::GetDateSet and
// the window's accept button.

#include <QString>

#include <cstdint>

namespace marketdata {

const QString &DataPath();
void setDataPath(const QString &path);

int16_t DataFormat();
void setDataFormat(int16_t format);

// The settings file dateset.dat: the source index in the line-printing number
// form (a blank or the minus sign, the digits, a blank), CR LF, the directory
// as typed, CR LF; GBK.
QByteArray dateSetFileBytes(int16_t index, const QString &directory);

// Reads the two items of a dateset.dat text by list input. A read that fails
// (no such item, not a 16-bit number) is skipped: its value keeps what it held.
void readDateSetItems(const QString &text, int16_t &index, QString &directory);

} // namespace marketdata
