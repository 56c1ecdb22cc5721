#include "base/Numbers.h"
#include "base/RuntimeError.h"

#include <QDate>
#include <QDateTime>
#include <QLocale>
#include <gtest/gtest.h>

#include <cmath>

using namespace base;

namespace {
int errorNumber(const std::function<void()> &f)
{
    try {
        f();
    } catch (const RuntimeError &e) {
        return e.number();
    }
    return 0;
}
} // namespace

TEST(LeadingNumber, TakesTheLongestLeadingDecimalAndIgnoresBlanks)
{
    EXPECT_DOUBLE_EQ(val(QStringLiteral("12.5abc")), 12.5);
    EXPECT_DOUBLE_EQ(val(QStringLiteral("abc")), 0.0);
    EXPECT_DOUBLE_EQ(val(QString()), 0.0);
    EXPECT_DOUBLE_EQ(val(QStringLiteral("  1 2 3 ")), 123.0);
    EXPECT_DOUBLE_EQ(val(QStringLiteral("-4.25")), -4.25);
    EXPECT_DOUBLE_EQ(val(QStringLiteral("+7")), 7.0);
    EXPECT_DOUBLE_EQ(val(QStringLiteral(".5")), 0.5);
    EXPECT_DOUBLE_EQ(val(QStringLiteral("1.2.3")), 1.2);
    EXPECT_DOUBLE_EQ(val(QStringLiteral("100元")), 100.0);
    EXPECT_DOUBLE_EQ(val(QStringLiteral("买房")), 0.0);
    EXPECT_DOUBLE_EQ(val(QStringLiteral("1e3")), 1000.0);
    EXPECT_DOUBLE_EQ(val(QStringLiteral("2D2")), 200.0);
    // An "e" without digits after it is not part of the number.
    EXPECT_DOUBLE_EQ(val(QStringLiteral("5east")), 5.0);
    EXPECT_DOUBLE_EQ(val(QStringLiteral("-")), 0.0);
    EXPECT_DOUBLE_EQ(val(QStringLiteral("-.")), 0.0);
}

TEST(LeadingNumber, TooLargeForADoubleOverflows)
{
    EXPECT_EQ(errorNumber([] { val(QStringLiteral("1e400")); }), ErrOverflow);
    EXPECT_EQ(errorNumber([] { val(QStringLiteral("1e99999999999999")); }), ErrOverflow);
}

TEST(Rounding, HalvesGoToTheEvenNeighbour)
{
    EXPECT_EQ(roundHalfEven(2.5), 2.0);
    EXPECT_EQ(roundHalfEven(3.5), 4.0);
    EXPECT_EQ(roundHalfEven(-2.5), -2.0);
    EXPECT_EQ(roundHalfEven(-1111.11), -1111.0);
    EXPECT_EQ(roundHalfEven(0.5), 0.0);
    EXPECT_EQ(roundHalfEven(1.5000001), 2.0);
}

TEST(Conversions, SixteenAndThirtyTwoBitLimitsRaiseOverflow)
{
    EXPECT_EQ(toInt16(32767.0), 32767);
    EXPECT_EQ(toInt16(-32768.0), -32768);
    EXPECT_EQ(toInt16(32767.4), 32767);
    EXPECT_EQ(toInt16(-32768.5), -32768); // half to even stays in range
    EXPECT_EQ(errorNumber([] { toInt16(32767.5); }), ErrOverflow);
    EXPECT_EQ(errorNumber([] { toInt16(40000.0); }), ErrOverflow);
    EXPECT_EQ(errorNumber([] { toInt16(std::nan("")); }), ErrOverflow);
    EXPECT_EQ(toInt32(2147483647.0), 2147483647);
    EXPECT_EQ(errorNumber([] { toInt32(2147483648.0); }), ErrOverflow);

    EXPECT_EQ(add16(32000, 767), 32767);
    EXPECT_EQ(errorNumber([] { add16(32000, 768); }), ErrOverflow);
    EXPECT_EQ(sub16(-32000, 768), -32768);
    EXPECT_EQ(errorNumber([] { sub16(-32000, 769); }), ErrOverflow);
    EXPECT_EQ(errorNumber([] { mul16(200, 200); }), ErrOverflow);
    EXPECT_EQ(mul16(-128, 256), -32768);
    EXPECT_EQ(errorNumber([] { toSingle(1e39); }), ErrOverflow);
}

TEST(NumberText, SingleKeepsSevenSignificantDigits)
{
    EXPECT_EQ(singleText(0.0f), "0");
    EXPECT_EQ(singleText(11.0475f), "11.0475");
    EXPECT_EQ(singleText(0.1f), "0.1");
    EXPECT_EQ(singleText(2209.5f), "2209.5");
    EXPECT_EQ(singleText(-510.0f), "-510");
    EXPECT_EQ(singleText(1.0f / 3.0f), "0.3333333");
    EXPECT_EQ(singleText(1234567.0f), "1234567");
    EXPECT_EQ(singleText(12345678.0f), "1.234568E+07");
    EXPECT_EQ(singleText(0.0001f), "0.0001");
    EXPECT_EQ(singleText(0.00001f), "1E-05");
    EXPECT_EQ(singleText(100.0f), "100");
}

TEST(NumberText, DoubleKeepsFifteenSignificantDigits)
{
    EXPECT_EQ(doubleText(-10035.5), "-10035.5");
    EXPECT_EQ(doubleText(0.1 + 0.2), "0.3");
    EXPECT_EQ(doubleText(1.0 / 3.0), "0.333333333333333");
    EXPECT_EQ(doubleText(1e15), "1E+15");
    EXPECT_EQ(doubleText(123456789012345.0), "123456789012345");
}

TEST(NumberText, SignedFormReservesABlankForNonNegativeValues)
{
    EXPECT_EQ(signedForm(12.5), " 12.5");
    EXPECT_EQ(signedForm(16.67), " 16.67");
    EXPECT_EQ(signedForm(-11.11), "-11.11");
    EXPECT_EQ(signedForm(0.0), " 0");
}

TEST(NumberText, OrdinaryConversionOfValues)
{
    EXPECT_EQ(variantText(QVariant()), "");
    EXPECT_EQ(variantText(QVariant(QDate(2024, 1, 5))), shortDate(QDate(2024, 1, 5)));
    EXPECT_EQ(variantText(QVariant(QDateTime(QDate(2024, 1, 5), QTime(0, 0)))), shortDate(QDate(2024, 1, 5)));
    EXPECT_TRUE(variantText(QVariant(QDateTime(QDate(2024, 1, 5), QTime(9, 30)))).endsWith("9:30:00"));
    EXPECT_EQ(variantText(QVariant(10.5)), "10.5");
    EXPECT_EQ(variantText(QVariant(0.35f)), "0.35");
    EXPECT_EQ(variantText(QVariant(qlonglong(42))), "42");
    EXPECT_EQ(variantText(QVariant(QStringLiteral("买进"))), "买进");
    // The short date form of the Chinese locale: year first, no padding.
    EXPECT_EQ(shortDate(QDate(2024, 1, 5)), "2024/1/5");
    EXPECT_EQ(shortDate(QDate(1999, 12, 31)), "1999/12/31");
    const QLocale chinese(QLocale::Chinese, QLocale::China);
    EXPECT_EQ(shortDate(QDate(812, 3, 4)), chinese.toString(QDate(812, 3, 4), QLocale::ShortFormat));
    EXPECT_EQ(shortDate(QDate()), chinese.toString(QDate(), QLocale::ShortFormat));
}
