// LoadStockList: the GpSz and GpSh files of the program folder.

#include "base/Gbk.h"
#include "marketdata/StockList.h"
#include "support/Helpers.h"

using namespace marketdata;

namespace {

class StockListTest : public ::testing::Test {
protected:
    void SetUp() override { clearStockList(); }

    void write(const char *name, const QString &text) const
    {
        writeFile(folder.file(QLatin1String(name)), base::toGbk(text));
    }
    static QStringList entries()
    {
        QStringList out;
        for (int i = 0; i <= StockCount(); ++i)
            out << StockList(i);
        return out;
    }

    TestFolder folder{false};
};

const QChar sep(1);

} // namespace

TEST_F(StockListTest, FilesItemsAndTheTwoIndexEntries)
{
    const QString index1 = QStringLiteral("1a0001 上证指数"), index2 = QStringLiteral("1a0002 Ａ股指数");
    const struct {
        const char *what;
        QString gpsz, gpsh; // a null text: no file
        QStringList expected;
    } cases[] = {
        {"neither file", QString(), QString(), {index1, index2}},
        // 9 characters: code and name; 11 or more: a marker, the code, the name.
        {"length rule", QStringLiteral("000001平安银\001#000002万科企业股份\001002594比亚迪\001trailing\r\n"),
         QStringLiteral("#600000浦发银行\001600519贵州茅台\001"),
         {"000001 平安银", "000002 万科企业股份", "002594 比亚迪", "600000 浦发银行", "600519 贵州茅台", index1, index2}},
        {"no Shanghai file: Shenzhen twice", QStringLiteral("000001平安银行\001000002万科Ａ\001"), QString(),
         {"000001 平安银行", "000002 万科Ａ", "000001 平安银行", "000002 万科Ａ", index1, index2}},
        // A comma in a name, and a second line: everything before is lost.
        {"only the last item counts", QStringLiteral("000001平安,银行\001000003ABC\001"),
         QStringLiteral("600000浦发银行\001\r\n  600036招商银行\001\r\n"),
         {"银行 ", "000003 ABC", "600036 招商银行", index1, index2}},
    };
    for (const auto &c : cases) {
        clearStockList();
        QFile::remove(folder.file(QStringLiteral("GpSz")));
        QFile::remove(folder.file(QStringLiteral("GpSh")));
        if (!c.gpsz.isNull())
            write("GpSz", c.gpsz);
        if (!c.gpsh.isNull())
            write("GpSh", c.gpsh);
        LoadStockList();
        EXPECT_EQ(entries(), c.expected) << c.what;
        EXPECT_EQ(StockCount(), c.expected.size() - 1) << c.what;
    }
}

TEST_F(StockListTest, MoreThanTheListHolds)
{
    QString item;
    for (int i = 0; i < 20000; ++i)
        item += QStringLiteral("%1X").arg(i, 6, 10, QChar(u'0')) + sep;
    write("GpSz", item);
    write("GpSh", QStringLiteral("\r\n")); // one empty item: the Shenzhen text is replaced
    // 20000 records fill 0 .. 19999, the two index entries 20000 and 20001:
    // the second is past the end.
    EXPECT_EQ(errorOf(LoadStockList), base::ErrSubscript);
    EXPECT_EQ(StockList(19999), QStringLiteral("019999 X"));
    EXPECT_EQ(StockList(20000), QStringLiteral("1a0001 上证指数"));
}
