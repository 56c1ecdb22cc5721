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

} // namespace marketdata
