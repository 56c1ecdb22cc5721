// 分析家 reader and the weekly/monthly merge it shares with the text reader.

#include "MarketTestUtil.h"

using namespace mdtest;

namespace {

FxjRecord day(int y, int m, int d, float open, float high, float low, float close, float vol = 1, float amount = 1000)
{
    return {beijingMidnight(y, m, d), open, high, low, close, vol, amount};
}

} // namespace

TEST(FenxijiaReader, DatesPricesAndIndexSearch)
{
    DataFolder d;
    FxjStock other{"600000", {day(2003, 1, 2, 1, 1, 1, 1)}};
    FxjStock stock{"600001", {{1041379200, 10.125f, 10.134f, 9.995f, 10.0f, 1234.5f, 5678.0f},
                              {1041350400, 10.0f, 10.5f, 9.5f, 10.2f, 1, 2000}}};
    d.write(QStringLiteral("DATA/SH/day.dat"), fxjFile({other, stock}));
    BarArray bars;
    const Out o = readBars(ReadFenxijia, d.path(), QStringLiteral("600001"), 1, bars);
    ASSERT_EQ(o.count, 2);
    // Prices to whole cents, halves to even (1012.5 cents -> 10.12; 9.995 as
    // a single is below the half); the amount in thousands.
    EXPECT_EQ(bars[1], (StockBar{20030101, 10.12f, 10.0f, 10.13f, 9.99f, 1234.5f, 5.678f}));
    EXPECT_EQ(bars[2].Date, 20030101); // 0.667 days earlier rounds to the same day
    // The extreme dates are the raw time stamps.
    EXPECT_EQ(std::make_tuple(o.maxHigh, o.maxHighDate, o.minLow, o.minLowDate), std::make_tuple(10.5f, 1041350400, 9.5f, 1041350400));

    // A code matches an entry by its first characters; "80" is Shanghai here
    // (below), "81" and other lengths find no file.
    EXPECT_EQ(readBars(ReadFenxijia, d.path(), QStringLiteral("6000"), 1, bars).count, -7) << "4 characters: Shenzhen file";
    d.write(QStringLiteral("DATA/SZ/day.dat"), fxjFile({FxjStock{"000001xx", {day(2003, 1, 3, 1, 1, 1, 1)}}}));
    EXPECT_EQ(readBars(ReadFenxijia, d.path(), QStringLiteral("0000"), 1, bars).count, 1);
    EXPECT_EQ(bars[1].Date, 20030103);
    EXPECT_EQ(readBars(ReadFenxijia, d.path(), QStringLiteral("810000"), 1, bars).count, -7);

    // No entry matches: count 0 and the start extremes; a weekly read still
    // merges one (empty) bar.
    BarArray empty;
    EXPECT_EQ(readBars(ReadFenxijia, d.path(), QStringLiteral("600009"), 1, empty).count, 0);
    EXPECT_EQ(readBars(ReadFenxijia, d.path(), QStringLiteral("600009"), 2, empty).count, 1);
    EXPECT_EQ(empty[1], StockBar{});

    d.write(QStringLiteral("DATA/SH/day.dat"), fxjFile({FxjStock{"800000", {day(2003, 1, 3, 1, 1, 1, 1)}}}));
    EXPECT_EQ(readBars(ReadFenxijia, d.path(), QStringLiteral("800000"), 1, bars).count, 1);
}

TEST(FenxijiaReader, CountIsTheIndexCountWhateverTheRange)
{
    DataFolder d;
    std::vector<FxjRecord> recs;
    for (int i = 0; i < 300; ++i) // two blocks
        recs.push_back(day(2003, 1, 1, 1, 2, 1, float(i)));
    recs[260].time = beijingMidnight(2003, 2, 1);
    d.write(QStringLiteral("DATA/SZ/day.dat"), fxjFile({FxjStock{"000002", recs}}));
    BarArray bars;
    EXPECT_EQ(readBars(ReadFenxijia, d.path(), QStringLiteral("000002"), 1, bars).count, 300);
    EXPECT_EQ(bars[300].Close, 299.0f); // across the block boundary

    BarArray ranged;
    EXPECT_EQ(readBars(ReadFenxijia, d.path(), QStringLiteral("000002"), 1, ranged, 20030201, 20030201).count, 300);
    EXPECT_EQ(ranged[1].Close, 260.0f);
    EXPECT_EQ(ranged[2], StockBar{});

    // R below the records stored: only R are read.
    d.write(QStringLiteral("DATA/SZ/day.dat"), fxjFile({FxjStock{"000002", recs, 5}}));
    BarArray few;
    EXPECT_EQ(readBars(ReadFenxijia, d.path(), QStringLiteral("000002"), 1, few).count, 5);
    EXPECT_EQ(few[6], StockBar{});
}

TEST(FenxijiaReader, WeeklyAndMonthlyMerge)
{
    DataFolder d;
    // 2003-01-03 Fri (week 1), 2003-01-05 Sun and 01-06 Mon (week 2: weeks
    // begin on Sunday), 2004-01-05 Mon (week 2 of 2004: the year is not
    // compared), 2003-02-03 (week 6).
    const std::vector<FxjRecord> recs = {
        day(2003, 1, 3, 10, 11, 9, 10.5, 100, 1000), day(2003, 1, 5, 10.5, 12, 10, 11, 200, 2000),
        day(2003, 1, 6, 11, 11.5, 8, 9, 300, 3000),  day(2004, 1, 5, 9, 13, 8.5, 12, 400, 4000),
        day(2003, 2, 3, 12, 12, 12, 12, 500, 5000),
    };
    d.write(QStringLiteral("DATA/SZ/day.dat"), fxjFile({FxjStock{"000001", recs}}));
    BarArray week;
    ASSERT_EQ(readBars(ReadFenxijia, d.path(), QStringLiteral("000001"), 2, week).count, 3);
    EXPECT_EQ(std::make_pair(week[1].Date, week[3].Date), std::make_pair(20030103, 20030203));
    EXPECT_EQ(week[2], (StockBar{20040105, 10.5f, 12.0f, 13.0f, 8.0f, 900, 9}));

    BarArray month;
    ASSERT_EQ(readBars(ReadFenxijia, d.path(), QStringLiteral("000001"), 3, month).count, 2); // all January days, then February
    EXPECT_EQ(std::make_tuple(month[1].Date, month[1].Open, month[1].Volume, month[2].Date),
              std::make_tuple(20040105, 10.0f, 1000.0f, 20030203));

    // A range that drops records leaves zero bars within the R merged: a
    // zero date is no calendar date.
    EXPECT_EQ(errorOf([&] { readBars(ReadFenxijia, d.path(), QStringLiteral("000001"), 2, week, 20030201, 0); }),
              base::ErrTypeMismatch);
}

TEST(FenxijiaReader, HeaderOffsetsOutOfRange)
{
    DataFolder d;
    const QByteArray file = fxjFile({FxjStock{"600000", {day(2003, 1, 2, 1, 1, 1, 1)}}});
    const auto patched = [&](int at, int32_t v) {
        QByteArray b = file;
        put32(b, at, v);
        d.write(QStringLiteral("DATA/SH/day.dat"), b);
    };
    BarArray bars;
    const auto errorFor = [&](const char *code) {
        return errorOf([&] { readBars(ReadFenxijia, d.path(), QLatin1String(code), 1, bars); });
    };
    patched(4, 0x7FFFFFFF);
    EXPECT_EQ(errorFor("600000"), base::ErrOverflow);
    patched(4, 0);
    EXPECT_EQ(errorFor("600000"), 63);

    // A huge entry count: the entries past the file read as zeros and match
    // nothing, and the offset of the last one overflows.
    patched(12, 0x7FFFFFFF);
    EXPECT_EQ(errorFor("600009"), base::ErrOverflow);
    patched(12, 1000000);
    EXPECT_EQ(readBars(ReadFenxijia, d.path(), QStringLiteral("600009"), 1, bars).count, 0);
    EXPECT_EQ(readBars(ReadFenxijia, d.path(), QStringLiteral("600000"), 1, bars).count, 1);

    // A truncated file reads zeros: the stock has no records.
    d.write(QStringLiteral("DATA/SH/day.dat"), file.left(24 + 64));
    BarArray fresh;
    EXPECT_EQ(readBars(ReadFenxijia, d.path(), QStringLiteral("600000"), 1, fresh).count, 1);
    EXPECT_EQ(fresh[1], StockBar{});

    // Empty or shorter than its header: no entry matches, so nothing is read.
    for (int length : {0, 10}) {
        d.write(QStringLiteral("DATA/SH/day.dat"), file.left(length));
        EXPECT_EQ(readBars(ReadFenxijia, d.path(), QStringLiteral("600000"), 1, fresh).count, 0) << length;
        EXPECT_EQ(readBars(ReadFenxijia, d.path(), QStringLiteral("600000"), 2, fresh).count, 1) << length;
    }
}
