// 通达信 reader: file names and price classes (with those of the 钱龙
// reader), records, weeks and months, the real sample file, and bad files.

#include "MarketTestUtil.h"

using namespace mdtest;

TEST(BinaryReaders, FileNameAndPriceUnitFollowTheCodeAndPeriod)
{
    // One bar per file; its date tells the files apart. 钱龙 stores 1.5 as
    // 1500; 通达信 stores 12345 in hundredths or thousandths by price class.
    DataFolder d;
    const struct {
        ReaderFn reader;
        const char *file, *code;
        int16_t period;
        float close;
    } cases[] = {
        {ReadQianlong, "data/shase/day/000001.day", "1A0001", 1, 1.5f},  {ReadQianlong, "data/shase/day/000011.day", "1B0008", 1, 1.5f},
        {ReadQianlong, "data/sznse/day/000002.day", "000002", 1, 1.5f},  {ReadQianlong, "data/sznse/day/0001.day", "0001", 1, 1.5f},
        {ReadQianlong, "data/shase/week/600001.wek", "600001", 2, 1.5f}, {ReadQianlong, "data/sznse/month/000003.mnt", "000003", 3, 1.5f},
        {ReadQianlong, "data/shase/min/600002.nmn", "600002", 4, 1.5f},  {ReadQianlong, "data/shase/day/800001.day", "800001", 1, 1.5f},
        {ReadQianlong, "data/sznse/day/180001.day", "180001", 1, 1.5f},
        {ReadTdx, "vipdoc/sh/lday/sh600000.day", "600000", 1, 123.45f}, {ReadTdx, "vipdoc/sh/lday/sh688001.day", "688001", 1, 123.45f},
        {ReadTdx, "vipdoc/sh/lday/sh000001.day", "1A0001", 1, 123.45f}, {ReadTdx, "vipdoc/sh/lday/sh000002.day", "1A0002", 1, 123.45f},
        {ReadTdx, "vipdoc/sh/lday/sh510300.day", "510300", 1, 12.345f}, {ReadTdx, "vipdoc/sh/lday/sh113050.day", "113050", 1, 12.345f},
        {ReadTdx, "vipdoc/sh/lday/sh900901.day", "900901", 1, 12.345f}, {ReadTdx, "vipdoc/sz/lday/sz300425.day", "300425", 1, 123.45f},
        {ReadTdx, "vipdoc/sz/lday/sz000001.day", "000001", 1, 123.45f}, {ReadTdx, "vipdoc/sz/lday/sz399001.day", "399001", 1, 123.45f},
        {ReadTdx, "vipdoc/sz/lday/sz159915.day", "159915", 1, 12.345f}, {ReadTdx, "vipdoc/sz/lday/sz123001.day", "123001", 1, 12.345f},
        {ReadTdx, "vipdoc/bj/lday/bj430047.day", "430047", 1, 123.45f},
    };
    for (int i = 0; i < int(std::size(cases)); ++i) {
        const bool tdx = cases[i].reader == static_cast<ReaderFn>(ReadTdx);
        d.write(QLatin1String(cases[i].file),
                tdx ? tdxRec(20240101 + i, 12345, 12345, 12345, 12345) : qlRec(20240101 + i, 1, 2, 0.5, 1.5));
    }
    for (int i = 0; i < int(std::size(cases)); ++i) {
        const auto &c = cases[i];
        BarArray bars;
        EXPECT_EQ(readBars(c.reader, d.path(), QLatin1String(c.code), c.period, bars).count, 1) << c.code;
        EXPECT_EQ(std::make_pair(bars[1].Date, bars[1].Close), std::make_pair(20240101 + i, c.close)) << c.code;
    }
    // Codes and periods that name no file.
    const std::tuple<ReaderFn, const char *, int16_t> none[] = {
        {ReadQianlong, "700000", 1}, {ReadQianlong, "1a0001", 1}, {ReadQianlong, "6000000", 1}, {ReadQianlong, "000002", 5},
        {ReadTdx, "700000", 1},      {ReadTdx, "1a0001", 1},      {ReadTdx, "0001", 1},         {ReadTdx, "6000000", 1},
        {ReadTdx, "1C0001", 1},      {ReadTdx, "600000", 4}};
    BarArray bars;
    for (const auto &[reader, code, period] : none)
        EXPECT_TRUE(readBars(reader, d.path(), QLatin1String(code), period, bars).untouched()) << code << ' ' << period;
    // Names in another letter case are found; a 通达信 folder copied from
    // Windows also with a Windows-style directory text.
    d.write(QStringLiteral("ML30/DATA/SHASE/DAY/600000.DAY"), qlRec(20240102, 1, 2, 0.5, 1.5));
    EXPECT_EQ(readBars(ReadQianlong, d.path() + QStringLiteral("/ml30"), QStringLiteral("600000"), 1, bars).count, 1);
    d.write(QStringLiteral("TDX/VipDoc/SH/LDAY/SH600001.DAY"), tdxRec(20240102, 1, 2, 1, 2));
    EXPECT_EQ(readBars(ReadTdx, d.path() + QStringLiteral("\\tdx"), QStringLiteral("600001"), 1, bars).count, 1);
}

TEST(TdxReader, RecordsRangeAndDamagedContent)
{
    DataFolder d;
    const QString file = QStringLiteral("vipdoc/sh/lday/sh600000.day");
    const QByteArray three = tdxRec(20240103, 1050, 1120, 1010, 1080, 123456.5f, 7890)
        + tdxRec(20240102, 1080, 1150, 1010, 1100, 1, 2)  // out of order: kept where it stands
        + tdxRec(20240104, 1100, 1150, 1090, 1110, 3, 4); // ties keep the earlier bar's date
    const QByteArray junk = tdxRec(0, 1, 1, 1, 1) + tdxRec(99999999, 1, 1, 1, 1) + tdxRec(4000000000u, 1, 1, 1, 1);
    d.write(file, three + junk + three.left(31)); // dates out of range and a partial record are left out
    BarArray bars;
    const Out r = readBars(ReadTdx, d.path(), QStringLiteral("600000"), 1, bars);
    ASSERT_EQ(r.count, 3);
    EXPECT_EQ(bars[1], (StockBar{20240103, 10.5f, 10.8f, 11.2f, 10.1f, 7890, 123456.5f}));
    EXPECT_EQ(std::make_pair(bars[2].Date, bars[3].Date), std::make_pair(20240102, 20240104));
    EXPECT_EQ(bars[4], StockBar{});
    EXPECT_EQ(std::make_tuple(r.minLow, r.minLowDate, r.maxHigh, r.maxHighDate),
              std::make_tuple(10.1f, 20240103, 11.5f, 20240102));

    EXPECT_EQ(readBars(ReadTdx, d.path(), QStringLiteral("600000"), 1, bars, 20240103, 20240104).count, 2);
    EXPECT_EQ(bars[2].Date, 20240104);

    // Zero prices are read as they stand; an empty file has no bar.
    d.write(file, tdxRec(20240105, 0, 0, 0, 0));
    const Out zero = readBars(ReadTdx, d.path(), QStringLiteral("600000"), 1, bars);
    EXPECT_EQ(std::make_tuple(zero.count, zero.minLow, bars[1].Close), std::make_tuple(int16_t(1), 0.0f, 0.0f));
    for (const QByteArray &bytes : {QByteArray(), QByteArray(31, '\x7f')}) {
        d.write(file, bytes);
        const Out none = readBars(ReadTdx, d.path(), QStringLiteral("600000"), 1, bars);
        EXPECT_EQ(std::make_tuple(none.count, none.minLow, none.maxHigh, none.minLowDate + none.maxHighDate),
                  std::make_tuple(int16_t(0), 100000.0f, 0.0f, 0));
    }
}

TEST(TdxReader, WeeksAndMonthsEndWithTheRunningOne)
{
    DataFolder d;
    // Thu 4 and Fri 5 January, Mon 8 and Tue 9 (the week still running).
    d.write(QStringLiteral("vipdoc/sz/lday/sz000001.day"),
            tdxRec(20240104, 1000, 1100, 950, 1050, 10, 1) + tdxRec(20240105, 1050, 1200, 1000, 1150, 20, 2)
                + tdxRec(20240108, 1150, 1160, 900, 1000, 30, 3) + tdxRec(20240109, 1000, 1300, 990, 1250, 40, 4));
    BarArray bars;
    const Out w = readBars(ReadTdx, d.path(), QStringLiteral("000001"), 2, bars);
    ASSERT_EQ(w.count, 2);
    EXPECT_EQ(bars[1], (StockBar{20240105, 10.0f, 11.5f, 12.0f, 9.5f, 3, 30}));
    EXPECT_EQ(bars[2], (StockBar{20240109, 11.5f, 12.5f, 13.0f, 9.0f, 7, 70}));
    EXPECT_EQ(std::make_pair(w.minLowDate, w.maxHighDate), std::make_pair(20240108, 20240109));
    EXPECT_EQ(readBars(ReadTdx, d.path(), QStringLiteral("000001"), 3, bars).count, 1);
    EXPECT_EQ(bars[1], (StockBar{20240109, 10.0f, 12.5f, 13.0f, 9.0f, 10, 100}));
}

TEST(TdxReader, RealFileOfAShenzhenStock)
{
    // Values read from the file by hand: first and last record, the highest
    // high and the lowest low, and the last month (January 2016: 17 days).
    DataFolder d;
    d.write(QStringLiteral("vipdoc/sz/lday/sz300425.day"), realFile("sz300425.tdx.day"));
    BarArray bars;
    const Out r = readBars(ReadTdx, d.path(), QStringLiteral("300425"), 1, bars);
    ASSERT_EQ(r.count, 175);
    EXPECT_EQ(bars[1], (StockBar{20150216, 20.08f, 21.90f, 21.90f, 20.08f, 29000, 634190}));
    EXPECT_EQ(bars[175], (StockBar{20160126, 31.89f, 31.85f, 34.75f, 30.88f, 5801130, 188731632}));
    EXPECT_EQ(std::make_tuple(r.maxHigh, r.maxHighDate, r.minLow, r.minLowDate),
              std::make_tuple(94.20f, 20151026, 20.08f, 20150216));

    ASSERT_EQ(readBars(ReadTdx, d.path(), QStringLiteral("300425"), 3, bars).count, 11);
    EXPECT_EQ(std::make_tuple(bars[11].Date, bars[11].Open, bars[11].High, bars[11].Low, bars[11].Close),
              std::make_tuple(20160126, 44.70f, 44.70f, 26.68f, 31.85f));
    EXPECT_FLOAT_EQ(bars[11].Volume, 34085536.0f);
}

TEST(TdxReader, BadFilesFailCleanly)
{
    DataFolder d;
    const QString dir = QStringLiteral("vipdoc/sh/lday/");
    QByteArray many;
    for (int i = 0; i < 20001; ++i)
        many += tdxRec(20000101 + i, 100, 200, 50, 150);
    d.write(dir + QStringLiteral("sh600000.day"), many.left(20000 * 32));
    d.write(dir + QStringLiteral("sh600001.day"), many);
    d.write(dir + QStringLiteral("sh600002.day"), QByteArray(32767 * 32 + 31, '\0')); // dates 0: no bar
    d.write(dir + QStringLiteral("sh600003.day"), QByteArray(32768 * 32, '\0'));
    d.write(dir + QStringLiteral("sh600004.day"), tdxRec(20240131, 1, 1, 1, 1) + tdxRec(20240231, 1, 1, 1, 1)); // no such day
    {
        QFile sparse(d.path() + u'/' + dir + QStringLiteral("sh600005.day"));
        ASSERT_TRUE(sparse.open(QIODevice::WriteOnly) && sparse.resize(qint64(2) << 30));
    }
    const struct {
        const char *code;
        int16_t period;
        int error;
        int16_t count;
    } cases[] = {
        {"600000", 1, 0, 20000},
        {"600001", 1, base::ErrSubscript, -7},
        {"600002", 1, 0, 0},
        {"600003", 1, base::ErrOverflow, -7},
        {"600004", 1, 0, 2},
        {"600004", 3, base::ErrTypeMismatch, -7},
        {"600005", 1, base::ErrOverflow, -7},
    };
    for (const auto &c : cases) {
        BarArray bars;
        Out o(std::nullopt);
        EXPECT_EQ(errorOf([&] { o = readBars(ReadTdx, d.path(), QLatin1String(c.code), c.period, bars); }), c.error) << c.code;
        EXPECT_EQ(o.count, c.count) << c.code << " period " << c.period;
    }

    // A folder where the file should be is no file.
    QDir().mkpath(d.path() + u'/' + dir + QStringLiteral("sh600006.day"));
    BarArray bars;
    EXPECT_TRUE(readBars(ReadTdx, d.path(), QStringLiteral("600006"), 1, bars).untouched());
}
