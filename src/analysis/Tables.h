#pragma once
// The analysis as tables of texts: what the analysis window shows, what its
// "导出" writes and what the export tool prints come from these functions.

#include "Portfolio.h"

#include <QByteArray>
#include <QStringList>

#include <vector>

namespace analysis {

struct Table {
    QStringList headers;
    std::vector<QStringList> rows;
};

// One row per stock, then the row "合计".
Table stockTable(const Analysis &a);
// One row per trade, in date order, with the "问题" column.
Table tradeTable(const Analysis &a);
// The account figures: "项目", "数值".
Table summaryTable(const Analysis &a);
// The corporate actions and what they did.
Table actionTable(const Analysis &a);
// The value series, one row per day.
Table valueTable(const std::vector<ValuePoint> &values);

// "12.34%", or "--" when there is no figure.
QString percentText(const std::optional<double> &percent);

// CSV in UTF-8 with a byte-order mark (so that a spreadsheet reads the
// Chinese right), CR LF line ends, fields quoted when they need it.
QByteArray csvBytes(const Table &t);

} // namespace analysis
