// How assigned values are stored in each kind of column and how stored values
// come back, on plain values: no engine, no file.

#include "support/Helpers.h"

#include "store/Database.h"
#include "store/Values.h"

#include <gtest/gtest.h>

#include <bit>

using namespace store;

TEST(Values, AssignmentsAreStoredAsTheColumnsKindTakesThem)
{
    const QDateTime morning(QDate(2024, 2, 29), QTime(9, 30, 15));
    const struct {
        QVariant assigned;
        Kind kind;
        QVariant stored;
    } cases[] = {
        {12.5, Kind::Text, QStringLiteral("12.5")},  // a number becomes its shortest text
        {QStringLiteral(" 1500.5 "), Kind::Double, 1500.5},
        {true, Kind::Double, -1.0},
        {0.1, Kind::Single, double(0.1f)},           // singles keep single precision
        {2.5, Kind::Integer, qint64(2)},              // half to even
        {3.5, Kind::Integer, qint64(4)},
        {QDate(2024, 1, 5), Kind::Date, QStringLiteral("2024-01-05")},
        {morning, Kind::Date, QStringLiteral("2024-02-29 09:30:15")},
        {QStringLiteral("2024/3/2"), Kind::Date, QStringLiteral("2024-03-02")},
        {45000.5, Kind::Date, QStringLiteral("2023-03-15 12:00:00")}, // a day number
        {QVariant(), Kind::Double, QVariant()},
    };
    for (const auto &c : cases)
        EXPECT_EQ(storageValue(c.assigned, c.kind), c.stored) << qPrintable(c.assigned.toString());

    const struct {
        QVariant assigned;
        Kind kind;
        int error;
    } refused[] = {
        {QStringLiteral("12abc"), Kind::Double, ErrConversion},
        {QStringLiteral("not a date"), Kind::Date, ErrConversion},
        {1e300, Kind::Single, ErrNumericOverflow},
        {1e19, Kind::Integer, ErrNumericOverflow},
        {1e7, Kind::Date, ErrConversion}, // beyond the engine's calendar
    };
    for (const auto &c : refused)
        EXPECT_EQ(errorOf([&] { storageValue(c.assigned, c.kind); }), c.error) << qPrintable(c.assigned.toString());
}

TEST(Values, StoredValuesComeBackInTheirColumnsForm)
{
    std::string arena = "2024-01-05garbage";
    const auto text = [&](quint32 offset, quint32 size) {
        return RawValue{RawValue::Text, size, offset};
    };
    const auto real = [](double d) { return RawValue{RawValue::Real, 0, std::bit_cast<qint64>(d)}; };
    EXPECT_EQ(valueOf(text(0, 10), arena, Kind::Date), QVariant(QDate(2024, 1, 5)));
    EXPECT_EQ(valueOf(text(10, 7), arena, Kind::Date), QVariant(QStringLiteral("garbage"))); // kept as written
    EXPECT_EQ(valueOf(real(45000.5), arena, Kind::Date),
              QVariant(QDateTime(QDate(2023, 3, 15), QTime(12, 0))));
    EXPECT_EQ(valueOf(real(0.1), arena, Kind::Single).typeId(), QMetaType::Float);
    EXPECT_EQ(valueOf(RawValue{RawValue::Integer, 0, 1LL << 40}, arena, Kind::Other), QVariant(qint64(1) << 40));
    EXPECT_EQ(valueOf(RawValue{RawValue::Integer, 0, 7}, arena, Kind::Other).typeId(), QMetaType::Int);
    EXPECT_TRUE(valueOf(RawValue{}, arena, Kind::Text).isNull());

    // The journal's own column types: RecordsetTest.ValuesComeInTheirColumnsTypesAndAssignmentConverts.
    EXPECT_EQ(kindOf("VARCHAR(20)"), Kind::Text);
    EXPECT_EQ(kindOf("COUNTER"), Kind::Integer);
    EXPECT_EQ(kindOf(nullptr), Kind::Other);
}
