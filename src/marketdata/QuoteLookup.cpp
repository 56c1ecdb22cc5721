#include "QuoteLookup.h"
#include "Readers.h"
#include "TextFields.h"

#include "base/Numbers.h"

#include <memory>

namespace marketdata {

void CalcChartRange(const BarArray &bars, int16_t count, int16_t offset, int16_t n, ChartRange &range)
{
    int16_t start = base::sub16(base::sub16(count, n), offset);
    if (start < 1)
        start = 1;
    const int16_t end = base::sub16(count, offset);
    range = ChartRange{0, 10000, -1e9f, 1e9f, -1e9f, 1e9f};
    if (start > end)
        return;
    for (int i = start; i <= end; ++i) {
        const StockBar &bar = bars[i];
        if (bar.High >= range.highestHigh)
            range.highestHigh = bar.High;
        if (range.lowestLow >= bar.Low && bar.Low > 0)
            range.lowestLow = bar.Low;
        if (bar.Volume >= range.highestVolume)
            range.highestVolume = bar.Volume;
        if (bar.Volume <= range.lowestVolume)
            range.lowestVolume = bar.Volume;
        if (bar.Amount >= range.highestAmount)
            range.highestAmount = bar.Amount;
        if (bar.Amount <= range.lowestAmount)
            range.lowestAmount = bar.Amount;
    }
}

QString quoteSourceFor(int16_t dataFormat)
{
    return dataFormat == kTdxSource ? QStringLiteral("7") : QStringLiteral("0");
}

std::optional<BarRead> readDailyBars(const QString &dataDir, const QString &source, const QString &code, BarArray &bars)
{
    using Reader = std::optional<BarRead> (*)(const BarRequest &, BarArray &);
    static const struct {
        const char *source;
        Reader reader;      // a package reader, or
        const char *layout; // a text layout
    } table[] = {
        {"0", ReadQianlong, nullptr}, {"1", ReadShenglong, nullptr}, {"2", ReadFenxijia, nullptr},
        {"3", nullptr, "CSV"},        {"4", nullptr, "GET"},         {"5", nullptr, "METATEXT"},
        {"6", nullptr, "TT2"},        {"7", ReadTdx, nullptr},
    };
    for (const auto &row : table) {
        if (source != QLatin1String(row.source))
            continue;
        const BarRequest daily{dataDir, trimBlanks(code).toUpper(), 1, 0, 0};
        return row.reader ? row.reader(daily, bars) : ReadTextBars(daily, QString::fromLatin1(row.layout), bars);
    }
    return std::nullopt;
}

void QuoteLookup(const QString &dataDir, const QString &source, const QString &code, bool draw, float &lastClose,
                 QuoteState &state, const DrawChart &drawChart)
{
    // A zeroed array of 20000 bars; the one of the previous call is cleared
    // rather than allocated again.
    if (!state.bars)
        state.bars = std::make_shared<BarArray>();
    else
        state.bars->clear();
    const std::shared_ptr<BarArray> bars = state.bars;
    // A read that finds no file keeps the previous one's count and extremes.
    if (const std::optional<BarRead> read = readDailyBars(dataDir, source, code, *bars))
        static_cast<BarRead &>(state) = *read;

    if (draw) {
        CalcChartRange(*bars, state.count, 0, 80, state.chart);
        if (drawChart)
            drawChart(*bars, state.count, state.chart.highestHigh, state.chart.lowestLow);
    }
    if (state.count != 0)
        lastClose = (*bars)[state.count].Close;
}

} // namespace marketdata
