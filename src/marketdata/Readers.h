#pragma once
// The price-file readers. Each is asked for one stock's bars (BarRequest),
// fills `bars` from index 1 and returns the count and the range's lowest low
// and highest high with their dates (BarRead), or nothing when there is no
// file to read (or the code names none): the array is then untouched. Errors
// (16-bit overflow, more bars than the array holds, ...) are raised as
// base::RuntimeError.
//
// The readers write into the caller's array rather than returning one: the
// quote lookup reuses its array from call to call, and some reads leave bars
// of the caller's in place (a date range that keeps fewer days than the
// 分析家 index counts, the unfinished-week bar written even when no newer day
// is found).

#include "StockBar.h"

#include <QString>

#include <cstdint>
#include <memory>
#include <optional>

namespace marketdata {

struct BarRequest {
    QString dataDir;      // the source's data folder, e.g. "c:\ml30"
    QString code;         // the stock code, upper case
    int16_t period = 1;   // 1 day, 2 week, 3 month, 4 minutes
    int32_t fromDate = 0; // inclusive YYYYMMDD range; 0 means no limit
    int32_t toDate = 0;

    // The range with its open ends filled in.
    int32_t first() const { return fromDate == 0 ? 1 : fromDate; }
    int32_t last() const { return toDate == 0 ? 60000000 : toDate; }
};

struct BarRead {
    int16_t count = 0; // bars filled from index 1
    float minLow = 100000;
    float maxHigh = 0;
    int32_t minLowDate = 0;
    int32_t maxHighDate = 0;
};

// 钱龙 files: dataDir\data\shase|sznse\day|week|month|min\<code>.day|.wek|.mnt|.nmn.
// Weekly and monthly reads append the unfinished week or month.
std::optional<BarRead> ReadQianlong(const BarRequest &request, BarArray &bars);

// 胜龙 files: dataDir\data\sh|sz\day|week|month|min\<code>.day|.wek|.mnt|.min.
std::optional<BarRead> ReadShenglong(const BarRequest &request, BarArray &bars);

// 分析家 files: dataDir\DATA\SH|SZ\day.dat. The two extreme dates are the raw
// time stamps (seconds) of those records. Period 1 counts the records the
// index names, whatever the date range kept; a period other than 1 to 3
// stores no bar and counts 0.
std::optional<BarRead> ReadFenxijia(const BarRequest &request, BarArray &bars);

// Text files dataDir\<code>.txt in the layouts "CSV", "GET", "METATEXT" and
// "TT2" (or the same names in lower case). The date range is not applied; a
// period other than 1 to 3 stores no bar and counts 0.
std::optional<BarRead> ReadTextBars(const BarRequest &request, const QString &layout, BarArray &bars);

// 通达信 files: dataDir\vipdoc\sh|sz|bj\lday\<market><code>.day, 32-byte
// records of days, oldest first; periods 2 and 3 merge them into weeks and
// months, the week or month still running being the last bar. A length that
// is no multiple of 32 ignores the partial record; a file that cannot be read
// counts as no file. Periods other than 1 to 3 read nothing.
std::optional<BarRead> ReadTdx(const BarRequest &request, BarArray &bars);

// The unfinished bar after lastDate, from the 钱龙 daily file under DataPath()
// (source "钱龙" or "胜龙"): open of the earliest later day, close and date
// of the file's last record, extreme high and low and summed volume and
// amount of the later days. Nothing when there is no such file. It holds a
// newer day only when its date is after lastDate.
std::optional<StockBar> BuildCurrentBar(int32_t lastDate, const QString &code, const QString &source);

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
        if (bar.High > m_read.maxHigh) {
            m_read.maxHigh = bar.High;
            m_read.maxHighDate = bar.Date;
        }
        if (bar.Low < m_read.minLow) {
            m_read.minLow = bar.Low;
            m_read.minLowDate = bar.Date;
        }
    }
    // The days kept (period 1) or the merged bars (periods 2 and 3; 0 for
    // another period), with the four extremes.
    BarRead finish();

private:
    BarArray &m_bars;
    int16_t m_period;
    std::unique_ptr<BarArray> m_work;
    int m_next = 1;
    BarRead m_read;
};

// Merges daily bars work[1 .. last] into one bar per calendar week (period 2;
// weeks begin on Sunday, week 1 holds 1 January) or month (period 3), the year
// not compared. Returns the number of merged bars.
int16_t mergePeriodBars(const BarArray &work, int last, int16_t period, BarArray &bars);

} // namespace marketdata
