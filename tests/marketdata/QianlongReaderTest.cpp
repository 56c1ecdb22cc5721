// 钱龙 and 胜龙 readers: record layout, extremes, the unfinished week or
// month, and the defined failures (file names: with the 通达信 reader).

#include "MarketTestUtil.h"

#include "marketdata/MarketSettings.h"

#include <sys/stat.h>

using namespace mdtest;

TEST(QianlongReader, RecordFieldsExtremesRangeAndHalfRecords)
{
    DataFolder d;
    const QByteArray three = qlRec(20240102, 10.5, 11.2, 10.1, 10.8, 123456, 7890)
        + qlRec(20240103, 10.8, 11.5, 10.1, 11.0, 1, 2)  // same low: the earlier date stays
        + qlRec(20240104, 11.0, 11.5, 10.9, 11.1, 3, 4); // same high: the earlier date stays
    d.write(QStringLiteral("data/shase/day/600000.day"), three);
    BarArray bars;
    const Out r = readBars(ReadQianlong, d.path(), QStringLiteral("600000"), 1, bars);
    ASSERT_EQ(r.count, 3);
    EXPECT_EQ(bars[1], (StockBar{20240102, 10.5f, 10.8f, 11.2f, 10.1f, 7890, 123456}));
    EXPECT_EQ(bars[4], StockBar{});
    EXPECT_EQ(std::make_tuple(r.minLow, r.minLowDate, r.maxHigh, r.maxHighDate), std::make_tuple(10.1f, 20240102, 11.5f, 20240103));

    // Inclusive date range; 0 means no limit on that side.
    EXPECT_EQ(readBars(ReadQianlong, d.path(), QStringLiteral("600000"), 1, bars, 20240103, 20240103).count, 1);
    EXPECT_EQ(bars[1].Date, 20240103);
    const Out none = readBars(ReadQianlong, d.path(), QStringLiteral("600000"), 1, bars, 20250101, 0);
    EXPECT_EQ(std::make_tuple(none.count, none.minLow, none.maxHigh, none.minLowDate + none.maxHighDate),
              std::make_tuple(int16_t(0), 100000.0f, 0.0f, 0));

    // The record count is the file size / 40 rounded half to even; a
    // partial last record reads as if padded with zeros.
    const QByteArray part = qlRec(20240105, 3, 4, 2, 3.5, 9, 9).left(20);
    d.write(QStringLiteral("data/shase/day/600000.day"), part); // 0.5 -> 0: nothing written
    EXPECT_TRUE(readBars(ReadQianlong, d.path(), QStringLiteral("600000"), 1, bars).untouched());
    d.write(QStringLiteral("data/shase/day/600000.day"), three.left(40) + part); // 1.5 -> 2
    EXPECT_EQ(readBars(ReadQianlong, d.path(), QStringLiteral("600000"), 1, bars).count, 2);
    EXPECT_EQ(bars[2], (StockBar{20240105, 3, 3.5, 4, 2, 0, 0}));
    d.write(QStringLiteral("data/shase/day/600000.day"), three + part); // 3.5 -> 4
    EXPECT_EQ(readBars(ReadQianlong, d.path(), QStringLiteral("600000"), 1, bars).count, 4);
}

TEST(QianlongReader, RealRecordsOfShenzhenComposite)
{
    DataFolder d;
    const QByteArray real = realFile("qianlong-000001-two-records.day");
    ASSERT_EQ(real.size(), 80);
    d.write(QStringLiteral("data/sznse/day/000001.day"), real);
    BarArray bars;
    const Out r = readBars(ReadQianlong, d.path(), QStringLiteral("000001"), 1, bars);
    ASSERT_EQ(r.count, 2);
    EXPECT_EQ(std::make_tuple(bars[1].Date, bars[1].Amount, bars[1].Volume, r.maxHighDate, r.minLowDate),
              std::make_tuple(19910102, 3974.0f, 589.0f, 19910102, 19910103));
    EXPECT_FLOAT_EQ(bars[1].Open, 67.41f);
    EXPECT_FLOAT_EQ(bars[2].Close, 66.4f);
}

TEST(QianlongReader, WeeklyReadAppendsUnfinishedWeekFromDailyFile)
{
    DataFolder d;
    setDataPath(d.path());
    d.write(QStringLiteral("data/shase/week/600000.wek"),
            qlRec(20240105, 10, 12, 9, 11, 100, 10) + qlRec(20240112, 11, 13, 10.5, 12, 200, 20));
    // Daily file: days up to the last weekly bar, then three newer days.
    const QByteArray known = qlRec(20240111, 11, 12, 11, 11.5, 1, 1) + qlRec(20240112, 11.5, 13, 11, 12, 2, 2);
    d.write(QStringLiteral("data/shase/day/600000.day"),
            known + qlRec(20240115, 12.1, 12.5, 8.5, 12.2, 30, 3) + qlRec(20240116, 12.2, 14.0, 12.0, 13.5, 40, 4)
                + qlRec(20240117, 13.5, 13.8, 13.0, 13.1, 50, 5));
    BarArray week;
    const Out w = readBars(ReadQianlong, d.path(), QStringLiteral("600000"), 2, week);
    ASSERT_EQ(w.count, 3);
    EXPECT_EQ(week[3], (StockBar{20240117, 12.1f, 13.1f, 14.0f, 8.5f, 12, 120}));
    EXPECT_EQ(std::make_tuple(w.minLow, w.minLowDate, w.maxHigh, w.maxHighDate),
              std::make_tuple(8.5f, 20240117, 14.0f, 20240117));

    // No newer day: the fields of bar count + 1 are still written, the count stays.
    d.write(QStringLiteral("data/shase/day/600000.day"), known);
    EXPECT_EQ(readBars(ReadQianlong, d.path(), QStringLiteral("600000"), 2, week).count, 2);
    EXPECT_EQ(std::make_tuple(week[3].Date, week[3].High, week[3].Low), std::make_tuple(20240112, -100000.0f, 100000.0f));

    // The running bar comes from the 钱龙 daily file for 钱龙 and 胜龙 only;
    // "80" codes are no index codes here.
    d.write(QStringLiteral("data/shase/day/000001.day"), qlRec(20240115, 2900, 2950, 2890, 2940, 5, 6));
    d.write(QStringLiteral("data/shase/day/1A0001.day"), qlRec(20240115, 1, 1, 1, 7, 5, 6));
    d.write(QStringLiteral("data/shase/day/800001.day"), qlRec(20240115, 1, 1, 1, 7, 5, 6));
    const struct {
        const char *code, *source;
        float close; // -1: nothing found
    } cases[] = {{"1A0001", "钱龙", 2940}, {"1A0001", "胜龙", 7}, {"800001", "钱龙", -1}, {"1A0001", "分析家", -1}};
    for (const auto &c : cases) {
        const std::optional<StockBar> bar = BuildCurrentBar(20240112, QLatin1String(c.code), QString::fromUtf8(c.source));
        EXPECT_EQ(std::make_tuple(bar ? bar->Date : -1, bar ? bar->Close : -1.0f), std::make_tuple(c.close != -1 ? 20240115 : -1, c.close))
            << c.code << c.source;
    }
    setDataPath(QString());
}

TEST(QianlongReader, DefinedFailures)
{
    DataFolder d;
    // Weekly read with no bar in range: bar 0 does not exist.
    d.write(QStringLiteral("data/shase/week/600000.wek"), qlRec(20240105, 1, 2, 0.5, 1.5));
    BarArray bars;
    EXPECT_EQ(errorOf([&] { readBars(ReadQianlong, d.path(), QStringLiteral("600000"), 2, bars, 20300101, 0); }),
              base::ErrSubscript);
    // More than 32767 records overflow the 16-bit count (32767.5 rounds up).
    d.write(QStringLiteral("data/shase/day/600001.day"), QByteArray(32767 * 40 + 20, '\0'));
    EXPECT_EQ(errorOf([&] { readBars(ReadQianlong, d.path(), QStringLiteral("600001"), 1, bars); }),
              base::ErrOverflow);

    // A named pipe where a price file should be is no file; opening it does
    // not wait for a writer.
    d.write(QStringLiteral("data/shase/day/600003.day"), {});
    const QString pipe = d.path() + QStringLiteral("/data/shase/day/600004.day");
    ASSERT_EQ(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    EXPECT_TRUE(readBars(ReadQianlong, d.path(), QStringLiteral("600004"), 1, bars).untouched());
}

TEST(ShenglongReader, AbsoluteValuesOwnFoldersNoIndexTable)
{
    DataFolder d;
    // 胜龙 order: date, open, close, high, low, amount, volume.
    d.write(QStringLiteral("data/sh/day/600000.day"), rec40(-20240102, 10000, -12500, 13000, -9000, -55, -66));
    d.write(QStringLiteral("data/sh/day/1A0001.day"), rec40(20240103, 1, 2, 3, 4, 5, 6));
    d.write(QStringLiteral("data/sh/day/800000.day"), rec40(20240105, 1, 2, 3, 4, 5, 6));
    d.write(QStringLiteral("data/sh/day/600001.day"), rec40(20240102, INT32_MIN, 0, 0, 0, 0, 0));
    d.write(QStringLiteral("data/sh/day/600002.day"), rec40(20240102, 0, 0, 0, 0, INT32_MIN, 0));
    BarArray bars;
    ASSERT_EQ(readBars(ReadShenglong, d.path(), QStringLiteral("600000"), 1, bars).count, 1);
    EXPECT_EQ(bars[1], (StockBar{20240102, 10.0f, 12.5f, 13.0f, 9.0f, 66, 55}));
    // The range test uses the absolute date too.
    EXPECT_EQ(readBars(ReadShenglong, d.path(), QStringLiteral("600000"), 1, bars, 20240102, 20240102).count, 1);
    EXPECT_EQ(readBars(ReadShenglong, d.path(), QStringLiteral("1A0001"), 1, bars).count, 1);
    EXPECT_EQ(bars[1].Date, 20240103);
    EXPECT_TRUE(readBars(ReadShenglong, d.path(), QStringLiteral("800000"), 1, bars).untouched());
    // A price is divided before its absolute value is taken; the most
    // negative amount has no absolute value.
    ASSERT_EQ(readBars(ReadShenglong, d.path(), QStringLiteral("600001"), 1, bars).count, 1);
    EXPECT_EQ(bars[1].Open, 2147483.648f);
    EXPECT_EQ(errorOf([&] { readBars(ReadShenglong, d.path(), QStringLiteral("600002"), 1, bars); }),
              base::ErrOverflow);
}
