// Quote lookup: dispatch on the source text, the state kept between calls,
// the chart range and the drawing seam.

#include "MarketTestUtil.h"

#include "marketdata/QuoteLookup.h"


using namespace mdtest;

TEST(QuoteLookup, DispatchesOnSourceText)
{
    DataFolder d;
    d.write(QStringLiteral("data/shase/day/600000.day"), qlRec(20240102, 1, 2, 0.5, 1.5) + qlRec(20240103, 1, 2, 0.5, 1.75));
    d.write(QStringLiteral("data/sh/day/600000.day"), rec40(20240102, 1000, 2250, 3000, 500, 0, 0));
    d.write(QStringLiteral("DATA/SH/day.dat"), fxjFile({FxjStock{"600000", {{beijingMidnight(2024, 1, 2), 1, 2, 0.5f, 3.25f, 1, 1}}}}));
    d.write(QStringLiteral("vipdoc/sh/lday/sh600000.day"), tdxRec(20240102, 100, 200, 50, 625));
    d.write(QStringLiteral("600000.txt"), "2024/01/02,1,2,0.5,4.5,1,1\r\n"
                                          "20240102,1,2,0.5,5.5,1,1\r\n");
    // Equal lows keep the first line's date, which each layout cuts its own
    // way: CSV 20240102, GET and TT2 "1/02" "20" "4/" -> 1, METATEXT 2024.
    const struct {
        const char *source;
        float close;
        int16_t count;
        int32_t minLowDate;
    } cases[] = {{"0", 1.75f, 2, 20240102}, {"1", 2.25f, 1, 20240102},
                 {"2", 3.25f, 1, beijingMidnight(2024, 1, 2)},
                 {"3", 5.5f, 2, 20240102}, {"4", 5.5f, 2, 1}, {"5", 5.5f, 2, 2024}, {"6", 5.5f, 2, 1},
                 {"7", 6.25f, 1, 20240102}};
    QuoteState state;
    float last = -1;
    for (const auto &c : cases) {
        state = QuoteState{};
        last = -1;
        QuoteLookup(d.path(), QLatin1String(c.source), QStringLiteral(" 600000 "), false, last, state);
        EXPECT_EQ(std::make_tuple(last, state.count, state.minLowDate), std::make_tuple(c.close, c.count, c.minLowDate))
            << c.source;
    }
    // Any other source reads nothing: the count stays, and the close is that
    // of the fresh, zeroed array.
    state.count = 2;
    QuoteLookup(d.path(), QStringLiteral("8"), QStringLiteral("600000"), false, last, state);
    EXPECT_EQ(std::make_pair(state.count, last), std::make_pair(int16_t(2), 0.0f));

    // The main window asks for the 通达信 files only when the settings choose
    // them; every other choice reads the 钱龙 files.
    for (int16_t format = -1; format <= 8; ++format)
        EXPECT_EQ(quoteSourceFor(format), QLatin1String(format == 7 ? "7" : "0")) << format;
}

TEST(QuoteLookup, StateKeptBetweenCalls)
{
    DataFolder d;
    d.write(QStringLiteral("data/shase/day/600000.day"), qlRec(20240102, 1, 2, 0.5, 1.5));
    QuoteState state;
    float last = -1;
    // Nothing read and count 0: the close is left as it was.
    QuoteLookup(d.path(), QStringLiteral("0"), QStringLiteral("600001"), false, last, state);
    EXPECT_EQ(last, -1.0f);
    QuoteLookup(d.path(), QStringLiteral("0"), QStringLiteral("600000"), false, last, state);
    EXPECT_EQ(std::make_pair(last, state.minLowDate), std::make_pair(1.5f, 20240102));
    // A missing file keeps the old count: the close of a zeroed bar comes back.
    QuoteLookup(d.path(), QStringLiteral("0"), QStringLiteral("600001"), false, last, state);
    EXPECT_EQ(std::make_pair(state.count, last), std::make_pair(int16_t(1), 0.0f));
    // The code is upper-cased before the lookup.
    d.write(QStringLiteral("data/shase/day/000001.day"), qlRec(20240102, 1, 2, 0.5, 2900));
    QuoteLookup(d.path(), QStringLiteral("0"), QStringLiteral("1a0001"), false, last, state);
    EXPECT_EQ(last, 2900.0f);
}

TEST(QuoteLookup, DrawComputesRangeAndCallsTheChart)
{
    DataFolder d;
    QByteArray file;
    for (int i = 1; i <= 100; ++i)
        file += qlRec(20240000 + i, 10, 10 + i * 0.1, i == 95 ? 0 : 9 - i * 0.01, 10);
    d.write(QStringLiteral("data/shase/day/600000.day"), file);
    QuoteState state;
    float last = 0;
    int calls = 0;
    QuoteLookup(d.path(), QStringLiteral("0"), QStringLiteral("600000"), true, last, state,
                [&](const BarArray &bars, int16_t count, float high, float low) {
                    ++calls;
                    // Bar 95's zero low is not counted.
                    EXPECT_EQ(std::make_tuple(count, bars[100].Date, high, low), std::make_tuple(int16_t(100), 20240100, 20.0f, 8.0f));
                });
    // Without draw the chart is not called.
    QuoteLookup(d.path(), QStringLiteral("0"), QStringLiteral("600000"), false, last, state,
                [&](const BarArray &, int16_t, float, float) { ++calls; });
    EXPECT_EQ(calls, 1);
}

TEST(ChartRange, LastBarsAndStartValues)
{
    BarArray bars;
    for (int i = 1; i <= 100; ++i)
        bars[i] = StockBar{i, 1, 1, float(i), float(i), float(1000 - i), float(i * 2)};
    ChartRange r;
    const auto all = [&] {
        return std::vector<float>{r.highestHigh,   r.lowestLow,     r.highestVolume,
                                  r.lowestVolume, r.highestAmount, r.lowestAmount};
    };
    CalcChartRange(bars, 100, 0, 80, r); // bars 20 .. 100: 81 bars
    EXPECT_EQ(all(), (std::vector<float>{100, 20, 980, 900, 200, 40}));
    CalcChartRange(bars, 100, 10, 5, r); // bars 85 .. 90
    EXPECT_EQ(std::make_pair(r.highestHigh, r.lowestLow), std::make_pair(90.0f, 85.0f));
    CalcChartRange(bars, -3, 0, 80, r);
    EXPECT_EQ(all(), (std::vector<float>{0, 10000, -1e9f, 1e9f, -1e9f, 1e9f}));
    bars[98].Low = -1; // only lows above zero set the bottom (a zero one: the draw test)
    CalcChartRange(bars, 100, 0, 3, r);
    EXPECT_EQ(r.lowestLow, 97.0f);
}
