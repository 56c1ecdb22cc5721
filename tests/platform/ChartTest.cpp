#include "platform/PictureBox.h"
#include "platform/PriceChart.h"

#include "support/Helpers.h"

using platform::Candle;

namespace {

const QColor kRed(255, 0, 0);
const QColor kBlue(0, 0, 255);

// Draws `bars` (index 0 is bar 1) into an 830 x 200 box: slots of 10 pixels.
QImage draw(const std::vector<Candle> &bars, float high, float low)
{
    platform::PictureBox box;
    box.resize(830, 200);
    platform::DrawPriceChart([&](int i) { return bars.at(static_cast<size_t>(i - 1)); }, high, low,
                             static_cast<int16_t>(bars.size()), 80, box, kRed, kBlue, 3);
    return box.image().copy(0, 0, 830, 200);
}

int countColour(const QImage &img, int x0, int x1, const QColor &c)
{
    int n = 0;
    for (int x = std::max(0, x0); x <= std::min(img.width() - 1, x1); ++x)
        for (int y = 0; y < img.height(); ++y)
            if (img.pixelColor(x, y) == c)
                ++n;
    return n;
}

} // namespace

TEST(PriceChart, RisingRedFallingBlueAndTheNewestBarIsNotDrawn)
{
    const std::vector<Candle> bars = {
        {10, 12, 13, 9},  // rising, slot 1 at x = 10
        {12, 10, 12.5, 9.5}, // falling, slot 2 at x = 20
        {10, 13, 14, 8},  // newest: never drawn
    };
    const QImage img = draw(bars, 14, 8);
    EXPECT_GT(countColour(img, 7, 13, kRed), 20);
    EXPECT_GT(countColour(img, 17, 23, kBlue), 20);
    EXPECT_EQ((std::vector<int>{countColour(img, 7, 13, kBlue), countColour(img, 17, 23, kRed), countColour(img, 25, 829, kRed),
                                countColour(img, 25, 829, kBlue)}),
              std::vector<int>(4, 0));

    // The scale runs from the highest high at the top to the lowest low at
    // the bottom: bar 1's upper shadow reaches 13 of 14..8, a sixth down.
    int top = -1;
    for (int y = 0; y < img.height() && top < 0; ++y)
        if (img.pixelColor(10, y) == kRed)
            top = y;
    EXPECT_NEAR(top, 200 / 6, 2);
}

TEST(PriceChart, OneBarOrNoneLeavesOnlyTheClearedBox)
{
    for (const auto &bars : {std::vector<Candle>{}, std::vector<Candle>{{10, 12, 13, 9}}}) {
        const QImage img = draw(bars, bars.empty() ? 0.0f : 13.0f, bars.empty() ? 10000.0f : 9.0f);
        EXPECT_EQ(countColour(img, 0, 829, kRed) + countColour(img, 0, 829, kBlue), 0);
    }
}

TEST(PriceChart, OnlyTheLastEightyOneBarsBeforeTheNewestAreDrawn)
{
    // 100 rising bars: bars 19 to 99 are drawn in slots 1 to 81.
    std::vector<Candle> bars(100, Candle{10, 11, 12, 9});
    const QImage img = draw(bars, 12, 9);
    EXPECT_GT(countColour(img, 8, 12, kRed), 0);   // slot 1
    EXPECT_GT(countColour(img, 808, 812, kRed), 0); // slot 81
    EXPECT_EQ(countColour(img, 815, 829, kRed), 0); // no slot 82
}

// Also run with QT_SCALE_FACTOR=2 (see CMakeLists.txt): the image then has
// twice the pixels each way and a line stays one device pixel thin. The
// drawing survives a resize.
TEST(PictureBox, DrawsAtDevicePixels)
{
    platform::PictureBox box;
    box.resize(200, 100);
    box.show();
    const qreal dpr = box.devicePixelRatioF();
    box.scale(0, 10, 200, 0);
    box.line(0, 5, 199, 5, kRed);
    const QImage img = box.image();
    EXPECT_EQ(img.devicePixelRatio(), dpr);
    EXPECT_EQ(img.size(), QSize(200, 100) * dpr);
    int thick = 0;
    for (int y = 0; y < img.height(); ++y)
        thick += img.pixelColor(int(100 * dpr), y) == kRed;
    EXPECT_EQ(thick, 1);
    box.resize(400, 300);
    EXPECT_EQ(box.image().pixelColor(int(100 * dpr), int(50 * dpr)), kRed);
    EXPECT_GE(box.image().width(), 400 * dpr);
}
