// Daily bars merged into weekly or monthly bars (the 分析家, text and 通达信
// readers), and the collection of the days they read.

#include "Readers.h"

#include "base/RuntimeError.h"

#include <QDate>

namespace marketdata {

namespace {

// The calendar date of a YYYYMMDD number, read the way a date text
// "year/month/day" is read: two-digit years are 1930 .. 2029; a text that is
// no date raises the type-mismatch error.
QDate calendarDate(int32_t yyyymmdd)
{
    int year = yyyymmdd / 10000;
    const int month = (yyyymmdd / 100) % 100;
    const int day = yyyymmdd % 100;
    if (year >= 0 && year < 30)
        year += 2000;
    else if (year >= 30 && year < 100)
        year += 1900;
    const QDate date(year, month, day);
    if (!date.isValid() || year > 9999)
        base::raiseTypeMismatch();
    return date;
}

// Week of the year: weeks begin on Sunday and week 1 holds 1 January.
int weekOfYear(const QDate &date)
{
    const int jan1Weekday = QDate(date.year(), 1, 1).dayOfWeek() % 7; // Sunday 0
    return (date.dayOfYear() - 1 + jan1Weekday) / 7 + 1;
}

int periodKey(int32_t yyyymmdd, int16_t period)
{
    const QDate date = calendarDate(yyyymmdd);
    return period == 2 ? weekOfYear(date) : date.month();
}

void addTo(float &sum, float v) { sum = static_cast<float>(static_cast<double>(sum) + v); }

} // namespace

DayBars::DayBars(BarArray &bars, int16_t period) : m_bars(bars), m_period(period)
{
    if (period != 1)
        m_work = std::make_unique<BarArray>();
}

BarRead DayBars::finish()
{
    BarRead read = m_read;
    if (m_period == 1)
        read.count = static_cast<int16_t>(m_next - 1);
    else if (m_period == 2 || m_period == 3)
        read.count = mergePeriodBars(*m_work, m_next - 1, m_period, m_bars);
    return read;
}

int16_t mergePeriodBars(const BarArray &work, int last, int16_t period, BarArray &bars)
{
    bars[1] = work[1];
    int c = 1;
    int opener = 1;
    for (int t = 2; t <= last; ++t) {
        const StockBar &day = work[t];
        if (periodKey(day.Date, period) == periodKey(work[opener].Date, period)) {
            StockBar &merged = bars[c];
            if (day.Low < merged.Low)
                merged.Low = day.Low;
            if (day.High > merged.High)
                merged.High = day.High;
            addTo(merged.Volume, day.Volume);
            addTo(merged.Amount, day.Amount);
            merged.Close = day.Close;
            merged.Date = day.Date;
        } else {
            ++c;
            bars[c] = day;
            opener = t;
        }
    }
    return static_cast<int16_t>(c);
}

} // namespace marketdata
