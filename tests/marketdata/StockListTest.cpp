// LoadStockList: the GpSz and GpSh files of the program folder.

#include "base/Gbk.h"
#include "base/RuntimeError.h"
#include "marketdata/StockList.h"
#include "support/TestFolder.h"

#include <QFile>
#include <gtest/gtest.h>

using namespace marketdata;

namespace {

class StockListTest : public ::testing::Test {
protected:
    void SetUp() override { clearStockList(); }

    void write(const char *name, const QString &text) const
    {
        QFile f(folder.file(QLatin1String(name)));
        f.open(QIODevice::WriteOnly | QIODevice::Truncate);
        f.write(base::toGbk(text));
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

TEST_F(StockListTest, NeitherFile)
{
    LoadStockList();
    EXPECT_EQ(StockCount(), 1);
    EXPECT_EQ(entries(), (QStringList{"1a0001 上证指数", "1a0002 Ａ股指数"}));
}

TEST_F(StockListTest, BothFilesAndTheLengthRule)
{
    // 9 characters: code and name; 11 or more: a marker, the code, the name.
    write("GpSz", QStringLiteral("000001平安银\001#000002万科企业股份\001002594比亚迪\001trailing") + "\r\n");
    write("GpSh", QStringLiteral("#600000浦发银行\001600519贵州茅台\001"));
    LoadStockList();
    EXPECT_EQ(entries(), (QStringList{"000001 平安银", "000002 万科企业股份", "002594 比亚迪", "600000 浦发银行",
                                      "600519 贵州茅台", "1a0001 上证指数", "1a0002 Ａ股指数"}));
    EXPECT_EQ(StockCount(), 6);
}

TEST_F(StockListTest, MissingShanghaiFileRepeatsShenzhen)
{
    write("GpSz", QStringLiteral("000001平安银行") + sep + QStringLiteral("000002万科Ａ") + sep);
    LoadStockList();
    EXPECT_EQ(entries(), (QStringList{"000001 平安银行", "000002 万科Ａ", "000001 平安银行", "000002 万科Ａ",
                                      "1a0001 上证指数", "1a0002 Ａ股指数"}));
}

TEST_F(StockListTest, OnlyTheLastItemCounts)
{
    // A comma in a name, and a second line: everything before is lost.
    write("GpSz", QStringLiteral("000001平安,银行") + sep + QStringLiteral("000003ABC") + sep);
    write("GpSh", QStringLiteral("600000浦发银行") + sep + QStringLiteral("\r\n  600036招商银行") + sep + "\r\n");
    LoadStockList();
    EXPECT_EQ(entries(), (QStringList{"银行 ", "000003 ABC", "600036 招商银行", "1a0001 上证指数", "1a0002 Ａ股指数"}));
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
    try {
        LoadStockList();
        FAIL() << "no error";
    } catch (const base::RuntimeError &e) {
        EXPECT_EQ(e.number(), base::ErrSubscript);
    }
    EXPECT_EQ(StockList(19999), QStringLiteral("019999 X"));
    EXPECT_EQ(StockList(20000), QStringLiteral("1a0001 上证指数"));
}
