// Text reader: field splitting, the four layouts, weekly merge and the real
// export file.

#include "MarketTestUtil.h"

#include "base/Gbk.h"
#include "marketdata/TextFields.h"

using namespace mdtest;

namespace {

Out readText(const DataFolder &d, const QString &layout, int16_t period, BarArray &bars,
             const QString &code = QStringLiteral("600000"))
{
    return ReadTextBars({d.path(), code, period, 0, 0}, layout, bars);
}

} // namespace

TEST(TextFields, SplitAtBlanksAndCommas)
{
    // A lone blank after a comma makes no field; a blank before a comma makes
    // an empty one; blanks in a row make none; tabs are no separators.
    const struct {
        const char16_t *line;
        QStringList fields;
    } cases[] = {
        {u"a, b", {"a", "b"}},      {u"a ,b", {"a", "", "b"}}, {u"   a   b ", {"a", "b"}},
        {u"a,,b,", {"a", "", "b"}}, {u"", {}},                 {u"\t1\t2", {"\t1\t2"}},
    };
    for (const auto &c : cases)
        EXPECT_EQ(splitTextFields(c.line), c.fields) << QString::fromUtf16(c.line).toStdString();
    EXPECT_EQ(splitTextFields(u"1,2,3,4,5,6,7,8,9,10,11,12,13,14,15").size(), 15);
    EXPECT_EQ(errorOf([] { splitTextFields(u"1,2,3,4,5,6,7,8,9,10,11,12,13,14,15,16"); }), base::ErrSubscript);
    EXPECT_EQ(splitTextLines(u"a\r\nb\rc\nd").size(), 4);
}

TEST(TextReader, LayoutsGiveTheSameBar)
{
    const struct {
        const char *layout;
        const char *line;
    } cases[] = {
        {"CSV", "2003/04/15,10.5,11,10.2,10.8,123400,0"},   {"csv", "2003/04/15,10.5,11,10.2,10.8,123400,0"},
        {"GET", "04/15/2003,10.5,11,10.2,10.8,123400,0"},   {"TT2", "04/15/2003 10.5 11 10.2 10.8 123400 0"},
        {"metatext", "20030415,10.5,11,10.2,10.8,123400,0"},
    };
    for (const auto &c : cases) {
        DataFolder d;
        d.write(QStringLiteral("600000.txt"), QByteArray("Date,Open,High,Low,Close,Volume,OpenInt\r\n") + c.line + "\r\n");
        BarArray bars;
        const Out o = readText(d, QLatin1String(c.layout), 1, bars);
        ASSERT_EQ(o.count, 1) << c.layout;
        EXPECT_EQ(bars[1], (StockBar{20030415, 10.5f, 10.8f, 11.0f, 10.2f, 123400, 0})) << c.layout;
    }
}

TEST(TextReader, OddInputsAsTheAlgorithmReadsThem)
{
    DataFolder d;
    d.write(QStringLiteral("600000.txt"), "2003/4/5,1,2,0.5,1.5,10,0\r\n"     // cut at fixed places: "2003" "4/" "" -> 20034
                                          "\r\n"                               // empty line: skipped
                                          "2003/04/16,x,3,y,2\r\n"            // no number: 0; missing fields: 0
                                          "2003/04/17,1,3,0.25,2,5,6");       // last line without CR LF, same high
    BarArray bars;
    const Out o = readText(d, QStringLiteral("CSV"), 1, bars);
    ASSERT_EQ(o.count, 3);
    EXPECT_EQ(bars[2], (StockBar{20030416, 0, 2, 3, 0, 0, 0}));
    // The highest high: 2 first, then 3.
    EXPECT_EQ(std::make_tuple(bars[1].Date, bars[3].Date, o.maxHigh, o.maxHighDate, o.minLow, o.minLowDate),
              std::make_tuple(20034, 20030417, 3.0f, 20030416, 0.0f, 20030416));

    // Mixed-case layout names read nothing.
    BarArray none;
    EXPECT_EQ(readText(d, QStringLiteral("Csv"), 1, none).count, 0);

    // Missing file: nothing written.
    EXPECT_TRUE(readText(d, QStringLiteral("CSV"), 1, none, QStringLiteral("600001")).untouched());

    // A date too large for 32 bits overflows.
    d.write(QStringLiteral("600002.txt"), "99999999999,1,2,3,4\r\n");
    EXPECT_EQ(errorOf([&] { readText(d, QStringLiteral("METATEXT"), 1, none, QStringLiteral("600002")); }),
              base::ErrOverflow);
}

TEST(TextReader, RealExportReadAsCsv)
{
    const QByteArray raw = realFile("SZ-002778-export.txt");
    ASSERT_FALSE(raw.isEmpty());
    DataFolder d;
    d.write(QStringLiteral("002778.txt"), raw);
    BarArray bars;
    const Out o = readText(d, QStringLiteral("CSV"), 1, bars, QStringLiteral("002778"));

    // Heading "002778 <name> 日线 前复权" is cut to "0027" "8" "" = date 278
    // with no numbers; the tab-separated heading and the closing source line
    // give no date; every other line is one bar.
    const QStringList lines = base::fromGbk(raw).split(QStringLiteral("\r\n"), Qt::SkipEmptyParts);
    ASSERT_EQ(lines.size(), 44);
    std::vector<StockBar> expected{StockBar{278, 0, 0, 0, 0, 0, 0}};
    for (const QString &line : lines.mid(2, 41)) {
        const QStringList f = line.split(u',');
        ASSERT_EQ(f.size(), 7) << line.toStdString();
        const QStringList ymd = f[0].split(u'/');
        expected.push_back({ymd[0].toInt() * 10000 + ymd[1].toInt() * 100 + ymd[2].toInt(), f[1].toFloat(),
                            f[4].toFloat(), f[2].toFloat(), f[3].toFloat(), f[5].toFloat(), f[6].toFloat()});
    }
    ASSERT_EQ(o.count, int(expected.size()));
    for (size_t i = 0; i < expected.size(); ++i)
        EXPECT_EQ(bars[int(i) + 1], expected[i]) << "bar " << i + 1;
    const auto top = std::max_element(expected.begin(), expected.end(),
                                      [](const StockBar &a, const StockBar &b) { return a.High < b.High; });
    EXPECT_EQ(expected[1].Date, 20160106);
    EXPECT_EQ(std::make_tuple(o.minLow, o.minLowDate, o.maxHigh, o.maxHighDate), std::make_tuple(0.0f, 278, top->High, top->Date));
}
