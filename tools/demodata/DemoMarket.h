#pragma once
// A small demonstration market: 钱龙-layout daily, weekly and monthly files of
// real-looking Shanghai and Shenzhen stocks, the stock-list files GpSz and GpSh
// and a dateset.dat pointing at the market folder. Deterministic: the same
// options always give the same bytes.

#include "marketdata/StockBar.h"

#include <QByteArray>
#include <QList>
#include <QString>

#include <cstdint>
#include <vector>

namespace demodata {

struct DemoStock {
    QString code; // as the program asks for it ("600000", "000001", "1A0001")
    QString name;
    bool shanghai;
};

struct DemoOptions {
    int stocks = 30;          // the first ones are well-known stocks, then numbered ones
    int bars = 1500;          // trading days per stock
    int32_t lastDate = 20240628;
    uint64_t seed = 20240628;
    bool withIndex = true;    // the Shanghai composite index (1A0001, file 000001)
};

// The stocks the options describe, in the order they are written.
QList<DemoStock> demoStocks(const DemoOptions &options);

// `bars` trading days (Monday to Friday) ending at or before lastDate, as a
// random walk that depends only on the seed and the stock's position.
std::vector<marketdata::StockBar> demoDailyBars(int position, const DemoOptions &options);

// Calendar-week (period 2) or calendar-month (period 3) bars of daily bars,
// leaving out the last, unfinished week or month.
std::vector<marketdata::StockBar> finishedPeriodBars(const std::vector<marketdata::StockBar> &days, int period);

// One 40-byte 钱龙 record: date, open, high, low, close x 1000, amount,
// volume, 12 zero bytes.
QByteArray qianlongRecord(const marketdata::StockBar &bar);
QByteArray qianlongFile(const std::vector<marketdata::StockBar> &bars);

// The list-file text of `stocks` (marketdata::stockListFileBytes).
QByteArray stockListFile(const QList<DemoStock> &stocks);

// Writes <folder>/market/data/{shase,sznse}/{day,week,month}/..., <folder>/GpSz,
// <folder>/GpSh and <folder>/dateset.dat (index 0, the market folder).
// Returns false when a file cannot be written.
bool makeDemoMarket(const QString &programFolder, const DemoOptions &options);

} // namespace demodata
