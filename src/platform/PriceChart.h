#pragma once
// The candlestick chart of the main window.

#include <QColor>

#include <cstdint>
#include <functional>

namespace platform {

class PictureBox;

struct Candle {
    float open = 0, close = 0, high = 0, low = 0;
};

// Bar i of the caller's array (1-based).
using CandleAt = std::function<Candle(int)>;

// Scales the box from (0, highestHigh) to (scale width, lowestLow), clears it
// and draws one candle per bar from count-81 (at least 1) to count-1; the
// newest bar is not drawn. Continue-on-error: a failing step is skipped.
void DrawPriceChart(const CandleAt &bars, float highestHigh, float lowestLow, int16_t count, int16_t barNumber,
                    PictureBox &box, const QColor &rising, const QColor &falling, int16_t margin);

} // namespace platform
