#include "base/Numbers.h"
#include "base/RuntimeError.h"
#include "support/Helpers.h"

#include <QLocale>

#include <cmath>

using namespace base;

TEST(LeadingNumber, TakesTheLongestLeadingDecimalAndIgnoresBlanks)
{
    // An "e" without digits after it is not part of the number.
    const std::pair<const char *, double> cases[] = {
        {"12.5abc", 12.5}, {"abc", 0},   {"", 0},         {"  1 2 3 ", 123}, {"-4.25", -4.25}, {"+7", 7},
        {".5", 0.5},       {"1.2.3", 1.2}, {"100元", 100}, {"买房", 0},        {"1e3", 1000},    {"2D2", 200},
        {"5east", 5},      {"-", 0},     {"-.", 0}};
    for (const auto &[text, value] : cases)
        EXPECT_DOUBLE_EQ(val(QString::fromUtf8(text)), value) << text;
    EXPECT_DOUBLE_EQ(val(QString()), 0.0);
    EXPECT_EQ(errorOf([] { val(QStringLiteral("1e400")); }), ErrOverflow);
    EXPECT_EQ(errorOf([] { val(QStringLiteral("1e99999999999999")); }), ErrOverflow);
}

TEST(Rounding, HalvesGoToTheEvenNeighbour)
{
    const std::pair<double, double> cases[] = {{2.5, 2}, {3.5, 4}, {-2.5, -2}, {-1111.11, -1111}, {0.5, 0}, {1.5000001, 2}};
    for (const auto &[x, rounded] : cases)
        EXPECT_EQ(roundHalfEven(x), rounded) << x;
}

TEST(Conversions, SixteenAndThirtyTwoBitLimitsRaiseOverflow)
{
    // -32768.5 rounds half to even and stays in range.
    EXPECT_EQ((std::vector<int64_t>{toInt16(32767.0), toInt16(-32768.0), toInt16(32767.4), toInt16(-32768.5), toInt32(2147483647.0),
                                    add16(32000, 767), sub16(-32000, 768), mul16(-128, 256)}),
              (std::vector<int64_t>{32767, -32768, 32767, -32768, 2147483647, 32767, -32768, -32768}));
    EXPECT_EQ((std::vector<int>{errorOf([] { toInt16(32767.5); }), errorOf([] { toInt16(40000.0); }),
                                errorOf([] { toInt16(std::nan("")); }), errorOf([] { toInt32(2147483648.0); }),
                                errorOf([] { add16(32000, 768); }), errorOf([] { sub16(-32000, 769); }),
                                errorOf([] { mul16(200, 200); }), errorOf([] { toSingle(1e39); })}),
              std::vector<int>(8, ErrOverflow));
}

TEST(NumberText, SevenSignificantDigitsForSinglesFifteenForDoublesAndTheSignedForm)
{
    const std::pair<float, const char *> singles[] = {
        {0.0f, "0"},           {11.0475f, "11.0475"},         {0.1f, "0.1"},       {2209.5f, "2209.5"},
        {-510.0f, "-510"},     {1.0f / 3.0f, "0.3333333"},    {1234567.0f, "1234567"}, {12345678.0f, "1.234568E+07"},
        {0.0001f, "0.0001"},   {0.00001f, "1E-05"},           {100.0f, "100"}};
    for (const auto &[x, text] : singles)
        EXPECT_EQ(singleText(x), text) << x;
    const std::pair<double, const char *> doubles[] = {{-10035.5, "-10035.5"}, {0.1 + 0.2, "0.3"},
        {1.0 / 3.0, "0.333333333333333"}, {1e15, "1E+15"}, {123456789012345.0, "123456789012345"}};
    for (const auto &[x, text] : doubles)
        EXPECT_EQ(doubleText(x), text) << x;
    const std::pair<double, const char *> signedForms[] = {{12.5, " 12.5"}, {16.67, " 16.67"}, {-11.11, "-11.11"}, {0.0, " 0"}};
    for (const auto &[x, text] : signedForms)
        EXPECT_EQ(signedForm(x), text) << x;
}

TEST(NumberText, OrdinaryConversionOfValues)
{
    // (Dates, doubles and texts as the report grids show them: the report window tests.)
    EXPECT_EQ(variantText(QVariant()), "");
    EXPECT_EQ(variantText(QVariant(QDateTime(QDate(2024, 1, 5), QTime(0, 0)))), shortDate(QDate(2024, 1, 5)));
    EXPECT_TRUE(variantText(QVariant(QDateTime(QDate(2024, 1, 5), QTime(9, 30)))).endsWith("9:30:00"));
    EXPECT_EQ(variantText(QVariant(0.35f)), "0.35");
    EXPECT_EQ(variantText(QVariant(qlonglong(42))), "42");
    // The short date form of the Chinese locale: year first, no padding.
    EXPECT_EQ(shortDate(QDate(2024, 1, 5)), "2024/1/5");
    EXPECT_EQ(shortDate(QDate(1999, 12, 31)), "1999/12/31");
    const QLocale chinese(QLocale::Chinese, QLocale::China);
    EXPECT_EQ(shortDate(QDate(812, 3, 4)), chinese.toString(QDate(812, 3, 4), QLocale::ShortFormat));
    EXPECT_EQ(shortDate(QDate()), chinese.toString(QDate(), QLocale::ShortFormat));
}
