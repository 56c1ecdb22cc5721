#pragma once
// The price-file readers. Each fills `bars` from index 1 with the bars of one
// stock and reports the count and the range's lowest low and highest high with
// their dates. A missing file (or a code that names no file) returns without
// writing any out argument. Errors (16-bit overflow, more bars than the array
// holds, ...) are raised as base::RuntimeError.
//
// fromDate/toDate: inclusive YYYYMMDD range, 0 meaning no limit.
// period: 1 day, 2 week, 3 month, 4 minutes.

#include "StockBar.h"

#include <QString>

#include <cstdint>
#include <memory>

namespace marketdata {

// 钱龙 files: dataDir\data\shase|sznse\day|week|month|min\<code>.day|.wek|.mnt|.nmn.
// Weekly and monthly reads append the unfinished week or month.
void ReadQianlong(const QString &dataDir, const QString &code, int16_t period, int32_t fromDate, int32_t toDate,
                  BarArray &bars, int16_t &count, float &minLow, float &maxHigh, int32_t &minLowDate,
                  int32_t &maxHighDate);

// The unfinished bar after lastDate, from the 钱龙 daily file under DataPath()
// (source "钱龙" or "胜龙"). Writes the out arguments only when the file is there.
void BuildCurrentBar(int32_t lastDate, int16_t period, const QString &code, const QString &source, int32_t &date,
                     float &open, float &close, float &high, float &low, float &volume, float &amount, bool &found);

// 胜龙 files: dataDir\data\sh|sz\day|week|month|min\<code>.day|.wek|.mnt|.min.
void ReadShenglong(const QString &dataDir, const QString &code, int16_t period, int32_t fromDate, int32_t toDate,
                   BarArray &bars, int16_t &count, float &minLow, float &maxHigh, int32_t &minLowDate,
                   int32_t &maxHighDate);

// 分析家 files: dataDir\DATA\SH|SZ\day.dat. The two extreme dates are the raw
// time stamps (seconds) of those records.
void ReadFenxijia(const QString &dataDir, const QString &code, int16_t period, int32_t fromDate, int32_t toDate,
                  BarArray &bars, int16_t &count, float &minLow, float &maxHigh, int32_t &minLowDate,
                  int32_t &maxHighDate);

// Text files dataDir\<code>.txt in the layouts "CSV", "GET", "METATEXT" and
// "TT2" (or the same names in lower case). The date range is not applied.
void ReadTextBars(const QString &dataDir, const QString &code, int16_t period, int32_t fromDate, int32_t toDate,
                  const QString &layout, BarArray &bars, int16_t &count, float &minLow, float &maxHigh,
                  int32_t &minLowDate, int32_t &maxHighDate);

// 通达信 files: dataDir\vipdoc\sh|sz|bj\lday\<market><code>.day, 32-byte
// records of days, oldest first; periods 2 and 3 merge them into weeks and
// months, the week or month still running being the last bar. A length that
// is no multiple of 32 ignores the partial record; a file that cannot be read
// counts as no file. Periods other than 1 to 3 read nothing.
void ReadTdx(const QString &dataDir, const QString &code, int16_t period, int32_t fromDate, int32_t toDate,
             BarArray &bars, int16_t &count, float &minLow, float &maxHigh, int32_t &minLowDate,
             int32_t &maxHighDate);

// The daily bars a reader keeps, in the order it reads them, with the lowest
// low and highest high and their dates (strict comparisons: on a tie the
// earlier bar stays). Period 1 stores straight into the caller's array, any
// other period into a work array of 20000 days that finish() merges for
// periods 2 and 3; a day beyond 20000 raises the subscript error.
class DayBars {
public:
    DayBars(BarArray &bars, int16_t period);
    void add(StockBar bar) // by value: the bar stays in registers
    {
        (m_work ? *m_work : m_bars)[m_next] = bar;
        ++m_next;
        if (bar.High > m_high) {
            m_high = bar.High;
            m_highDate = bar.Date;
        }
        if (bar.Low < m_low) {
            m_low = bar.Low;
            m_lowDate = bar.Date;
        }
    }
    // count: the days kept (period 1) or the merged bars (periods 2 and 3;
    // another period leaves it); then the four extremes.
    void finish(int16_t &count, float &minLow, float &maxHigh, int32_t &minLowDate, int32_t &maxHighDate);

private:
    BarArray &m_bars;
    int16_t m_period;
    std::unique_ptr<BarArray> m_work;
    int m_next = 1;
    float m_low = 100000, m_high = 0;
    int32_t m_lowDate = 0, m_highDate = 0;
};

// Merges daily bars work[1 .. last] into one bar per calendar week (period 2;
// weeks begin on Sunday, week 1 holds 1 January) or month (period 3), the year
// not compared. Returns the number of merged bars.
int16_t mergePeriodBars(const BarArray &work, int last, int16_t period, BarArray &bars);

} // namespace marketdata
