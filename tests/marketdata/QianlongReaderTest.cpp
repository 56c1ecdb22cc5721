// 钱龙 and 胜龙 readers: file names, record layout, extremes, the unfinished
// week or month, and the defined failures.

#include "MarketTestUtil.h"

#include "base/RuntimeError.h"
#include "marketdata/MarketSettings.h"
#include "marketdata/Readers.h"

#include <gtest/gtest.h>

#include <cstdlib>

using namespace marketdata;
using mdtest::DataFolder;
using mdtest::qlRec;
using mdtest::rec40;

namespace {

struct Result {
    int16_t count = -7;
    float minLow = -7, maxHigh = -7;
    int32_t minLowDate = -7, maxHighDate = -7;
};

using ReaderFn = void (*)(const QString &, const QString &, int16_t, int32_t, int32_t, BarArray &, int16_t &,
                          float &, float &, int32_t &, int32_t &);

Result readWith(ReaderFn fn, const QString &dir, const QString &code, int16_t period, BarArray &bars,
                int32_t from = 0, int32_t to = 0)
{
    Result r;
    fn(dir, code, period, from, to, bars, r.count, r.minLow, r.maxHigh, r.minLowDate, r.maxHighDate);
    return r;
}

bool untouched(const Result &r)
{
    return r.count == -7 && r.minLow == -7 && r.maxHigh == -7 && r.minLowDate == -7 && r.maxHighDate == -7;
}

} // namespace

TEST(QianlongReader, FileNameFollowsCodeAndPeriod)
{
    DataFolder d;
    const struct {
        const char *file;
        const char *code;
        int16_t period;
    } cases[] = {
        {"data/shase/day/000001.day", "1A0001", 1},  {"data/shase/day/000011.day", "1B0008", 1},
        {"data/shase/day/600000.day", "600000", 1},  {"data/sznse/day/000002.day", "000002", 1},
        {"data/sznse/day/0001.day", "0001", 1},      {"data/shase/week/600001.wek", "600001", 2},
        {"data/sznse/month/000003.mnt", "000003", 3}, {"data/shase/min/600002.nmn", "600002", 4},
        {"data/shase/day/800001.day", "800001", 1},  {"data/sznse/day/180001.day", "180001", 1},
    };
    // Each file holds one bar whose date tells the files apart.
    int32_t date = 20240101;
    for (const auto &c : cases)
        d.write(QLatin1String(c.file), qlRec(date++, 1, 2, 0.5, 1.5));
    date = 20240101;
    for (const auto &c : cases) {
        BarArray bars;
        // Weekly and monthly reads look for the daily file too; none here.
        const Result r = readWith(ReadQianlong, d.path(), QLatin1String(c.code), c.period, bars);
        EXPECT_EQ(r.count, 1) << c.code;
        EXPECT_EQ(bars[1].Date, date++) << c.code;
    }
    for (const char *none : {"700000", "1a0001", "60000", "6000000"}) {
        BarArray bars;
        EXPECT_TRUE(untouched(readWith(ReadQianlong, d.path(), QLatin1String(none), 1, bars))) << none;
    }
    BarArray bars;
    EXPECT_TRUE(untouched(readWith(ReadQianlong, d.path(), QStringLiteral("600000"), 5, bars)));
}

TEST(QianlongReader, RecordFieldsAndExtremes)
{
    DataFolder d;
    QByteArray file = qlRec(20240102, 10.5, 11.2, 10.1, 10.8, 123456, 7890)
        + qlRec(20240103, 10.8, 11.5, 10.1, 11.0, 1, 2)  // same low: the earlier date stays
        + qlRec(20240104, 11.0, 11.5, 10.9, 11.1, 3, 4); // same high: the earlier date stays
    d.write(QStringLiteral("data/shase/day/600000.day"), file);
    BarArray bars;
    const Result r = readWith(ReadQianlong, d.path(), QStringLiteral("600000"), 1, bars);
    ASSERT_EQ(r.count, 3);
    EXPECT_EQ(bars[1].Date, 20240102);
    EXPECT_FLOAT_EQ(bars[1].Open, 10.5f);
    EXPECT_FLOAT_EQ(bars[1].High, 11.2f);
    EXPECT_FLOAT_EQ(bars[1].Low, 10.1f);
    EXPECT_FLOAT_EQ(bars[1].Close, 10.8f);
    EXPECT_EQ(bars[1].Amount, 123456.0f);
    EXPECT_EQ(bars[1].Volume, 7890.0f);
    EXPECT_FLOAT_EQ(r.minLow, 10.1f);
    EXPECT_EQ(r.minLowDate, 20240102);
    EXPECT_FLOAT_EQ(r.maxHigh, 11.5f);
    EXPECT_EQ(r.maxHighDate, 20240103);
    EXPECT_EQ(bars[4], StockBar{});

    // Inclusive date range; 0 means no limit on that side.
    BarArray ranged;
    Result s = readWith(ReadQianlong, d.path(), QStringLiteral("600000"), 1, ranged, 20240103, 20240103);
    EXPECT_EQ(s.count, 1);
    EXPECT_EQ(ranged[1].Date, 20240103);
    s = readWith(ReadQianlong, d.path(), QStringLiteral("600000"), 1, ranged, 20240103, 0);
    EXPECT_EQ(s.count, 2);
    s = readWith(ReadQianlong, d.path(), QStringLiteral("600000"), 1, ranged, 20250101, 0);
    EXPECT_EQ(s.count, 0);
    EXPECT_EQ(s.minLow, 100000.0f);
    EXPECT_EQ(s.maxHigh, 0.0f);
    EXPECT_EQ(s.minLowDate, 0);
    EXPECT_EQ(s.maxHighDate, 0);
}

TEST(QianlongReader, RecordCountRoundsHalfToEven)
{
    DataFolder d;
    const QByteArray one = qlRec(20240102, 1, 2, 0.5, 1.5, 7, 8);
    const QByteArray part = qlRec(20240103, 3, 4, 2, 3.5, 9, 9).left(20);
    // 60 bytes: 1.5 records round to 2; the second is read as if padded with zeros.
    d.write(QStringLiteral("data/shase/day/600000.day"), one + part);
    BarArray bars;
    EXPECT_EQ(readWith(ReadQianlong, d.path(), QStringLiteral("600000"), 1, bars).count, 2);
    EXPECT_EQ(bars[2], (StockBar{20240103, 3, 3.5, 4, 2, 0, 0}));
    // 20 bytes: 0.5 rounds to 0 records; nothing is written.
    d.write(QStringLiteral("data/shase/day/600001.day"), part);
    EXPECT_TRUE(untouched(readWith(ReadQianlong, d.path(), QStringLiteral("600001"), 1, bars)));
    // 100 bytes: 2.5 rounds to 2, the half record is not read.
    d.write(QStringLiteral("data/shase/day/600002.day"), one + one + part);
    BarArray two;
    EXPECT_EQ(readWith(ReadQianlong, d.path(), QStringLiteral("600002"), 1, two).count, 2);
    EXPECT_EQ(two[2], two[1]);
    EXPECT_EQ(two[3], StockBar{});
    // 140 bytes: 3.5 rounds to 4.
    d.write(QStringLiteral("data/shase/day/600003.day"), one + one + one + part);
    EXPECT_EQ(readWith(ReadQianlong, d.path(), QStringLiteral("600003"), 1, two).count, 4);
}

TEST(QianlongReader, RealRecordsOfShenzhenComposite)
{
    DataFolder d;
    const QByteArray real = mdtest::realFile("qianlong-000001-two-records.day");
    ASSERT_EQ(real.size(), 80);
    d.write(QStringLiteral("data/sznse/day/000001.day"), real);
    BarArray bars;
    const Result r = readWith(ReadQianlong, d.path(), QStringLiteral("000001"), 1, bars);
    ASSERT_EQ(r.count, 2);
    EXPECT_EQ(bars[1].Date, 19910102);
    EXPECT_FLOAT_EQ(bars[1].Open, 67.41f);
    EXPECT_FLOAT_EQ(bars[1].Close, 67.41f);
    EXPECT_EQ(bars[1].Amount, 3974.0f);
    EXPECT_EQ(bars[1].Volume, 589.0f);
    EXPECT_EQ(bars[2].Date, 19910103);
    EXPECT_FLOAT_EQ(bars[2].Close, 66.4f);
    EXPECT_EQ(r.maxHighDate, 19910102);
    EXPECT_EQ(r.minLowDate, 19910103);
}

TEST(QianlongReader, RealBarsReencodedInBothLayoutsComeBackUnchanged)
{
    // 32-byte records of another package: date, open/high/low/close x100,
    // float amount, volume, reserved.
    const QByteArray src = mdtest::realFile("sz300425.tdx.day");
    ASSERT_EQ(src.size(), 175 * 32);
    std::vector<StockBar> expected;
    QByteArray ql, sl;
    for (int i = 0; i < 175; ++i) {
        const char *p = src.constData() + 32 * i;
        auto i32 = [&](int at) { return qFromLittleEndian<int32_t>(p + at); };
        const int32_t amount = static_cast<int32_t>(qFromLittleEndian<float>(p + 20));
        // x100 -> x1000
        ql += rec40(i32(0), i32(4) * 10, i32(8) * 10, i32(12) * 10, i32(16) * 10, amount, i32(24));
        sl += rec40(i32(0), i32(4) * 10, i32(16) * 10, i32(8) * 10, i32(12) * 10, amount, i32(24));
        StockBar b;
        b.Date = i32(0);
        b.Open = static_cast<float>(i32(4) * 10 / 1000.0);
        b.High = static_cast<float>(i32(8) * 10 / 1000.0);
        b.Low = static_cast<float>(i32(12) * 10 / 1000.0);
        b.Close = static_cast<float>(i32(16) * 10 / 1000.0);
        b.Amount = static_cast<float>(amount);
        b.Volume = static_cast<float>(i32(24));
        expected.push_back(b);
    }
    ASSERT_EQ(expected.front().Date / 10000, 2015); // a sanity check of the source layout
    DataFolder d;
    // Codes beginning with 30 are no market of these packages; use a
    // Shenzhen code the readers accept.
    d.write(QStringLiteral("data/sznse/day/002425.day"), ql);
    d.write(QStringLiteral("data/sz/day/002425.day"), sl);
    for (ReaderFn fn : {ReaderFn(ReadQianlong), ReaderFn(ReadShenglong)}) {
        BarArray bars;
        const Result r = readWith(fn, d.path(), QStringLiteral("002425"), 1, bars);
        ASSERT_EQ(r.count, 175);
        for (int i = 0; i < 175; ++i)
            ASSERT_EQ(bars[i + 1], expected[size_t(i)]) << "bar " << i + 1;
        EXPECT_EQ(bars[176], StockBar{});
    }
}

TEST(QianlongReader, FindsFilesInOtherLetterCaseAndUnderWinePrefix)
{
    DataFolder d;
    d.write(QStringLiteral("ML30/DATA/SHASE/DAY/600000.DAY"), qlRec(20240102, 1, 2, 0.5, 1.5));
    BarArray bars;
    EXPECT_EQ(readWith(ReadQianlong, d.path() + QStringLiteral("/ml30"), QStringLiteral("600000"), 1, bars).count, 1);

    DataFolder prefix;
    QDir().mkpath(prefix.path() + QStringLiteral("/drive_c"));
    QDir().mkpath(prefix.path() + QStringLiteral("/dosdevices"));
    ASSERT_TRUE(QFile::link(prefix.path() + QStringLiteral("/drive_c"), prefix.path() + QStringLiteral("/dosdevices/c:")));
    prefix.write(QStringLiteral("drive_c/ml30/Data/ShAse/Day/600000.day"), qlRec(20240103, 1, 2, 0.5, 1.5));
    const QByteArray old = qgetenv("WINEPREFIX");
    qputenv("WINEPREFIX", prefix.path().toLocal8Bit());
    BarArray wine;
    const Result r = readWith(ReadQianlong, QStringLiteral("c:\\ml30"), QStringLiteral("600000"), 1, wine);
    if (old.isEmpty())
        qunsetenv("WINEPREFIX");
    else
        qputenv("WINEPREFIX", old);
    EXPECT_EQ(r.count, 1);
    EXPECT_EQ(wine[1].Date, 20240103);
}

TEST(QianlongReader, WeeklyReadAppendsUnfinishedWeekFromDailyFile)
{
    DataFolder d;
    setDataPath(d.path());
    d.write(QStringLiteral("data/shase/week/600000.wek"),
            qlRec(20240105, 10, 12, 9, 11, 100, 10) + qlRec(20240112, 11, 13, 10.5, 12, 200, 20));
    // Daily file: days up to the last weekly bar, then three newer days.
    d.write(QStringLiteral("data/shase/day/600000.day"),
            qlRec(20240111, 11, 12, 11, 11.5, 1, 1) + qlRec(20240112, 11.5, 13, 11, 12, 2, 2)
                + qlRec(20240115, 12.1, 12.5, 8.5, 12.2, 30, 3) + qlRec(20240116, 12.2, 14.0, 12.0, 13.5, 40, 4)
                + qlRec(20240117, 13.5, 13.8, 13.0, 13.1, 50, 5));
    BarArray week;
    const Result w = readWith(ReadQianlong, d.path(), QStringLiteral("600000"), 2, week);
    ASSERT_EQ(w.count, 3);
    const StockBar &cur = week[3];
    EXPECT_EQ(cur.Date, 20240117);
    EXPECT_FLOAT_EQ(cur.Open, 12.1f);
    EXPECT_FLOAT_EQ(cur.Close, 13.1f);
    EXPECT_FLOAT_EQ(cur.High, 14.0f);
    EXPECT_FLOAT_EQ(cur.Low, 8.5f);
    EXPECT_EQ(cur.Volume, 12.0f);
    EXPECT_EQ(cur.Amount, 120.0f);
    EXPECT_FLOAT_EQ(w.minLow, 8.5f);
    EXPECT_EQ(w.minLowDate, 20240117);
    EXPECT_FLOAT_EQ(w.maxHigh, 14.0f);
    EXPECT_EQ(w.maxHighDate, 20240117);

    // No newer day: the fields of bar count + 1 are still written, the count stays.
    d.write(QStringLiteral("data/shase/day/600000.day"), qlRec(20240111, 11, 12, 11, 11.5, 1, 1) + qlRec(20240112, 11.5, 13, 11, 12, 2, 2));
    BarArray same;
    const Result s = readWith(ReadQianlong, d.path(), QStringLiteral("600000"), 2, same);
    EXPECT_EQ(s.count, 2);
    EXPECT_EQ(same[3].Date, 20240112);
    EXPECT_EQ(same[3].High, -100000.0f);
    EXPECT_EQ(same[3].Low, 100000.0f);
    setDataPath(QString());
}

TEST(QianlongReader, BuildCurrentBarReadsQianlongDailyFilesForBothSources)
{
    DataFolder d;
    setDataPath(d.path());
    d.write(QStringLiteral("data/shase/day/000001.day"), qlRec(20240115, 2900, 2950, 2890, 2940, 5, 6));
    d.write(QStringLiteral("data/shase/day/1A0001.day"), qlRec(20240115, 1, 1, 1, 7, 5, 6));
    d.write(QStringLiteral("data/shase/day/800001.day"), qlRec(20240115, 1, 1, 1, 7, 5, 6));
    auto build = [](const char *code, const char *source, bool &found) {
        int32_t date = -1;
        float o = -1, c = -1, h = -1, l = -1, v = -1, a = -1;
        found = false;
        BuildCurrentBar(20240112, 2, QLatin1String(code), QString::fromUtf8(source), date, o, c, h, l, v, a, found);
        return std::make_pair(date, c);
    };
    bool found;
    EXPECT_EQ(build("1A0001", "钱龙", found), std::make_pair(20240115, 2940.0f));
    EXPECT_TRUE(found);
    EXPECT_EQ(build("1A0001", "胜龙", found), std::make_pair(20240115, 7.0f));
    EXPECT_TRUE(found);
    EXPECT_EQ(build("800001", "钱龙", found).first, -1); // no "80" codes here
    EXPECT_FALSE(found);
    EXPECT_EQ(build("1A0001", "分析家", found).first, -1);
    setDataPath(QString());
}

TEST(QianlongReader, DefinedFailures)
{
    DataFolder d;
    // Weekly read with no bar in range: bar 0 does not exist.
    d.write(QStringLiteral("data/shase/week/600000.wek"), qlRec(20240105, 1, 2, 0.5, 1.5));
    BarArray bars;
    try {
        readWith(ReadQianlong, d.path(), QStringLiteral("600000"), 2, bars, 20300101, 0);
        FAIL() << "no error";
    } catch (const base::RuntimeError &e) {
        EXPECT_EQ(e.number(), base::ErrSubscript);
    }
    // More than 32767 records overflow the 16-bit count (32767.5 rounds up).
    d.write(QStringLiteral("data/shase/day/600001.day"), QByteArray(32767 * 40 + 20, '\0'));
    try {
        readWith(ReadQianlong, d.path(), QStringLiteral("600001"), 1, bars);
        FAIL() << "no error";
    } catch (const base::RuntimeError &e) {
        EXPECT_EQ(e.number(), base::ErrOverflow);
    }
    // More bars in range than the array holds.
    QByteArray many;
    for (int i = 0; i < 20001; ++i)
        many += qlRec(20000101 + i, 1, 2, 0.5, 1.5);
    d.write(QStringLiteral("data/shase/day/600002.day"), many);
    try {
        readWith(ReadQianlong, d.path(), QStringLiteral("600002"), 1, bars);
        FAIL() << "no error";
    } catch (const base::RuntimeError &e) {
        EXPECT_EQ(e.number(), base::ErrSubscript);
    }
    EXPECT_EQ(bars[20000].Date, 20000101 + 19999);
}

TEST(ShenglongReader, AbsoluteValuesOwnFoldersNoIndexTable)
{
    DataFolder d;
    // 胜龙 order: date, open, close, high, low, amount, volume.
    d.write(QStringLiteral("data/sh/day/600000.day"), rec40(-20240102, 10000, -12500, 13000, -9000, -55, -66));
    d.write(QStringLiteral("data/sh/day/1A0001.day"), rec40(20240103, 1, 2, 3, 4, 5, 6));
    d.write(QStringLiteral("data/sz/min/0001.min"), rec40(20240104, 1, 2, 3, 4, 5, 6));
    d.write(QStringLiteral("data/sh/day/800000.day"), rec40(20240105, 1, 2, 3, 4, 5, 6));
    BarArray bars;
    Result r = readWith(ReadShenglong, d.path(), QStringLiteral("600000"), 1, bars);
    ASSERT_EQ(r.count, 1);
    EXPECT_EQ(bars[1].Date, 20240102);
    EXPECT_FLOAT_EQ(bars[1].Open, 10.0f);
    EXPECT_FLOAT_EQ(bars[1].Close, 12.5f);
    EXPECT_FLOAT_EQ(bars[1].High, 13.0f);
    EXPECT_FLOAT_EQ(bars[1].Low, 9.0f);
    EXPECT_EQ(bars[1].Amount, 55.0f);
    EXPECT_EQ(bars[1].Volume, 66.0f);
    // The range test uses the absolute date too.
    EXPECT_EQ(readWith(ReadShenglong, d.path(), QStringLiteral("600000"), 1, bars, 20240102, 20240102).count, 1);

    EXPECT_EQ(readWith(ReadShenglong, d.path(), QStringLiteral("1A0001"), 1, bars).count, 1);
    EXPECT_EQ(bars[1].Date, 20240103);
    EXPECT_EQ(readWith(ReadShenglong, d.path(), QStringLiteral("0001"), 4, bars).count, 1);
    EXPECT_TRUE(untouched(readWith(ReadShenglong, d.path(), QStringLiteral("800000"), 1, bars)));

    d.write(QStringLiteral("data/sh/day/600001.day"), rec40(20240102, INT32_MIN, 0, 0, 0, 0, 0));
    try {
        readWith(ReadShenglong, d.path(), QStringLiteral("600001"), 1, bars);
        FAIL() << "no error";
    } catch (const base::RuntimeError &e) {
        EXPECT_EQ(e.number(), base::ErrOverflow);
    }
}
