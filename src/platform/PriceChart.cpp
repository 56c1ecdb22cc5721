#include "PriceChart.h"

#include "PictureBox.h"
#include "base/ErrorGuard.h"

namespace platform {

void DrawPriceChart(const CandleAt &bars, float highestHigh, float lowestLow, int16_t count, int16_t barNumber,
                    PictureBox &box, const QColor &rising, const QColor &falling, int16_t margin)
{
    using base::resumeNext;
    // The width is taken before scaling, in the scale the box has now; the
    // user scale keeps it, so x runs over the same range.
    const double width = box.scaleWidth();
    resumeNext([&] { box.scale(0, highestHigh, width, lowestLow); });
    resumeNext([&] { box.cls(); });

    const float slot = static_cast<float>(width / (barNumber + margin));
    const float halfBody = slot / 2.0f * 0.6f;
    int first = count - barNumber - 1;
    if (first < 1)
        first = 1;
    int16_t slotNo = 1;
    for (int i = first; i <= count - 1; ++i) {
        resumeNext([&] {
            const Candle c = bars(i);
            const double x = double(slot) * slotNo;
            const bool falling_ = c.open > c.close;
            const float top = falling_ ? c.open : c.close;
            const float bottom = falling_ ? c.close : c.open;
            const QColor &color = falling_ ? falling : rising;
            box.box(x - halfBody, c.open, x + halfBody, c.close, color);
            if (c.high > top)
                box.line(x, top, x, c.high, color);
            if (c.low < bottom)
                box.line(x, bottom, x, c.low, color);
        });
        ++slotNo;
    }
}

} // namespace platform
