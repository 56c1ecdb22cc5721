#pragma once
// The quote lookup of the main window: reads one stock's daily bars through
// the reader the source text names, optionally draws the chart of its last
// bars, and returns the last close.
//
// The main window owns a QuoteState and passes it to every call: the count
// and the four extremes of the last read that found a file, and the six
// chart-range values, live there between calls (a read that finds no file
// leaves the previous call's values in place).
//
// Drawing seam: QuoteLookup does not paint. When `draw` is true it computes
// the range of the last bars (CalcChartRange, offset 0, 80 bars) and then
// calls the DrawChart callback with the bars read, the count and the highest
// high and lowest low of that range; the main window passes a callback that
// runs DrawPriceChart on its picture box pPic1 (rising colour red, falling
// colour blue).

#include "Readers.h"
#include "StockBar.h"

#include <QString>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

namespace marketdata {

// The price range of the last bars, kept between calls.
struct ChartRange {
    float highestHigh = 0;
    float lowestLow = 0;
    float highestVolume = 0;
    float lowestVolume = 0;
    float highestAmount = 0;
    float lowestAmount = 0;
};

// The kept read (count and extremes) with the chart range and the bars.
struct QuoteState : BarRead {
    ChartRange chart;
    // The bar array of the last call, reused (zeroed again) by the next one.
    std::shared_ptr<BarArray> bars;
};

using DrawChart = std::function<void(const BarArray &bars, int16_t count, float highestHigh, float lowestLow)>;

// source "0" 钱龙, "1" 胜龙, "2" 分析家, "3" CSV, "4" GET, "5" METATEXT,
// "6" TT2 text, "7" 通达信; any other text reads nothing. The code is trimmed and
// upper-cased. lastClose is written only when the count is not 0.
void QuoteLookup(const QString &dataDir, const QString &source, const QString &code, bool draw, float &lastClose,
                 QuoteState &state, const DrawChart &drawChart = {});

// The daily bars of `code` (trimmed of blanks and upper-cased) through the
// reader the source text names, as QuoteLookup reads them; nothing when the
// text names no reader or the reader finds no file.
std::optional<BarRead> readDailyBars(const QString &dataDir, const QString &source, const QString &code,
                                     BarArray &bars);

// The index of the 通达信 files in the settings' source list.
constexpr int16_t kTdxSource = 7;

// The source text the main window's lookups ask for under the settings'
// DataFormat: "7" for the 通达信 files; for every other choice "0", the 钱龙
// reader looking under whatever directory the settings hold.
QString quoteSourceFor(int16_t dataFormat);

// The range of bars count - n - offset (at least 1) to count - offset.
// When it holds no bar the values are 0, 10000, -1e9, 1e9, -1e9, 1e9.
void CalcChartRange(const BarArray &bars, int16_t count, int16_t offset, int16_t n, ChartRange &range);

} // namespace marketdata
