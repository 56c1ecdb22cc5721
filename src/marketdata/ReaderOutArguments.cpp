// The readers in their out-argument form: each asks the result-returning
// reader and copies the result into the caller's variables.

#include "Readers.h"

namespace marketdata {

namespace {

// Nothing is written when no file was read; `count` only when the reader
// counts the period (the 分析家 and text readers leave it for another).
void copyOut(const std::optional<BarRead> &read, bool countsPeriod, int16_t &count, float &minLow, float &maxHigh,
             int32_t &minLowDate, int32_t &maxHighDate)
{
    if (!read)
        return;
    if (countsPeriod)
        count = read->count;
    minLow = read->minLow;
    maxHigh = read->maxHigh;
    minLowDate = read->minLowDate;
    maxHighDate = read->maxHighDate;
}

bool mergingReaderCounts(int16_t period) { return period >= 1 && period <= 3; }

} // namespace

void ReadQianlong(const QString &dataDir, const QString &code, int16_t period, int32_t fromDate, int32_t toDate,
                  BarArray &bars, int16_t &count, float &minLow, float &maxHigh, int32_t &minLowDate,
                  int32_t &maxHighDate)
{
    copyOut(ReadQianlong({dataDir, code, period, fromDate, toDate}, bars), true, count, minLow, maxHigh, minLowDate,
            maxHighDate);
}

void ReadShenglong(const QString &dataDir, const QString &code, int16_t period, int32_t fromDate, int32_t toDate,
                   BarArray &bars, int16_t &count, float &minLow, float &maxHigh, int32_t &minLowDate,
                   int32_t &maxHighDate)
{
    copyOut(ReadShenglong({dataDir, code, period, fromDate, toDate}, bars), true, count, minLow, maxHigh, minLowDate,
            maxHighDate);
}

void ReadFenxijia(const QString &dataDir, const QString &code, int16_t period, int32_t fromDate, int32_t toDate,
                  BarArray &bars, int16_t &count, float &minLow, float &maxHigh, int32_t &minLowDate,
                  int32_t &maxHighDate)
{
    copyOut(ReadFenxijia({dataDir, code, period, fromDate, toDate}, bars), mergingReaderCounts(period), count, minLow,
            maxHigh, minLowDate, maxHighDate);
}

void ReadTextBars(const QString &dataDir, const QString &code, int16_t period, int32_t fromDate, int32_t toDate,
                  const QString &layout, BarArray &bars, int16_t &count, float &minLow, float &maxHigh,
                  int32_t &minLowDate, int32_t &maxHighDate)
{
    copyOut(ReadTextBars({dataDir, code, period, fromDate, toDate}, layout, bars), mergingReaderCounts(period), count,
            minLow, maxHigh, minLowDate, maxHighDate);
}

void ReadTdx(const QString &dataDir, const QString &code, int16_t period, int32_t fromDate, int32_t toDate,
             BarArray &bars, int16_t &count, float &minLow, float &maxHigh, int32_t &minLowDate, int32_t &maxHighDate)
{
    copyOut(ReadTdx({dataDir, code, period, fromDate, toDate}, bars), true, count, minLow, maxHigh, minLowDate,
            maxHighDate);
}

void BuildCurrentBar(int32_t lastDate, int16_t /*period*/, const QString &code, const QString &source, int32_t &date,
                     float &open, float &close, float &high, float &low, float &volume, float &amount, bool &found)
{
    const std::optional<StockBar> bar = BuildCurrentBar(lastDate, code, source);
    if (!bar)
        return;
    date = bar->Date;
    open = bar->Open;
    close = bar->Close;
    high = bar->High;
    low = bar->Low;
    volume = bar->Volume;
    amount = bar->Amount;
    found = date > lastDate;
}

} // namespace marketdata
