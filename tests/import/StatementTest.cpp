// Reading the four statement layouts and classifying their lines; the
// expected rows are read off the files by hand.
#include "ImportFixture.h"

#include "reports/TradeMath.h"

using namespace importer;
using namespace importtest;

namespace {

struct ExpectedRow {
    int line;
    RowKind kind;
    const char *date;
    const char *code;
    double price;
    double quantity;
    double amount;
    qint64 feeFen;
    const char *note; // contained in the row's note; "" = no note
};

struct Layout {
    const char *file;
    const char *encoding;
    QChar separator;
    int headingLine;
    std::vector<ExpectedRow> rows;
};

const Layout kLayouts[] = {
    {"jiaogedan-2023.xls", "GBK", u'\t', 2,
     {{3, RowKind::Deposit, "2023-01-03", "", 0, 0, 100000, 0, ""},
      {4, RowKind::Buy, "2023-01-04", "600036", 35.2, 1000, 0, 950, ""},
      {5, RowKind::Buy, "2023-01-05", "000001", 13.05, 2000, 0, 653, ""},
      {6, RowKind::Sell, "2023-03-01", "600036", 38, 500, 0, 2438, ""},
      {7, RowKind::Dividend, "2023-07-10", "600036", 0, 0, 869, 0, ""},
      {8, RowKind::DividendTax, "2023-07-10", "600036", 0, 0, 86.9, 0, ""},
      {9, RowKind::BonusShares, "2023-08-15", "000001", 0, 400, 0, 0, ""},
      {10, RowKind::Skipped, "2023-10-20", "", 0, 0, 0, 0, "不导入的业务“利息归本”"},
      {11, RowKind::Withdrawal, "2023-12-01", "", 0, 0, 10000, 0, ""}}},
    {"statement-bom.csv", "UTF-8 BOM", u',', 1,
     {{2, RowKind::Deposit, "2024-01-02", "", 0, 0, 200000, 0, ""},
      {3, RowKind::Buy, "2024-01-03", "601318", 42.1, 3000, 0, 3284, ""},
      {4, RowKind::Buy, "2024-01-03", "601318", 42.1, 3000, 0, 3284, ""},
      {5, RowKind::Sell, "2024-02-05", "601318", 45, 6000, 0, 20520, ""},
      {6, RowKind::Withdrawal, "2024-02-06", "", 0, 0, 50000, 0, ""}}},
    {"other-headers.txt", "UTF-8", u'\t', 1,
     {{2, RowKind::Buy, "2024-01-05", "000002", 8, 500, 0, 100, "交易明细按最低收费计 5 元，交割单为 1 元"},
      {3, RowKind::Sell, "2024-01-08", "000002", 8.5, 800, 0, 1194, "卖出 800 股，多于持有的 500 股"},
      {4, RowKind::Buy, "2024-01-09", "600519", 1680, 100, 0, 4704, ""},
      {5, RowKind::Skipped, "", "", 0, 0, 0, 0, "日期“2024/13/40”无法识别"},
      {6, RowKind::Skipped, "2024-01-10", "", 0, 0, 0, 0, "证券代码“60000”不是六位数字"},
      {7, RowKind::Skipped, "2024-01-11", "", 0, 0, 0, 0, "成交数量“abc”不是数字"},
      {8, RowKind::Skipped, "", "", 0, 0, 0, 0, "日期“合计”无法识别"}}},
    {"zijin-liushui.csv", "GBK", u',', 1,
     {{2, RowKind::Deposit, "2024-03-01", "", 0, 0, 50000, 0, ""},
      {3, RowKind::Withdrawal, "2024-03-15", "", 0, 0, 8000, 0, ""},
      {4, RowKind::Skipped, "2024-03-21", "", 0, 0, 0, 0, "利息归本"},
      {5, RowKind::Deposit, "2024-04-01", "", 0, 0, 1000, 0, ""}}},
};

} // namespace

TEST_F(ImportTest, FourLayoutsReadRowByRow)
{
    for (const Layout &layout : kLayouts) {
        SCOPED_TRACE(layout.file);
        const StatementTable table = readStatementFile(dataFile(layout.file));
        ASSERT_EQ(table.error, "");
        EXPECT_EQ(std::make_tuple(table.encoding, table.separator, table.headingLine),
                  std::make_tuple(layout.encoding, layout.separator, layout.headingLine));
        const QList<PreviewRow> rows = classify(table, table.columns, {});
        ASSERT_EQ(rows.size(), qsizetype(layout.rows.size()));
        for (size_t i = 0; i < layout.rows.size(); ++i) {
            const ExpectedRow &e = layout.rows[i];
            const PreviewRow &r = rows[qsizetype(i)];
            SCOPED_TRACE(e.line);
            EXPECT_EQ(r.line, e.line);
            EXPECT_EQ(int(r.kind), int(e.kind)) << r.note.toStdString();
            if (*e.date) {
                EXPECT_EQ(r.date.toString(Qt::ISODate), QLatin1String(e.date));
            }
            if (r.kind == RowKind::Skipped) {
                EXPECT_TRUE(r.note.contains(QString::fromUtf8(e.note))) << r.note.toStdString();
                continue;
            }
            EXPECT_EQ(std::make_tuple(r.code, r.price, r.quantity, r.feeFen, r.note),
                      std::make_tuple(QString::fromLatin1(e.code), e.price, e.quantity, e.feeFen, QString::fromUtf8(e.note)));
            EXPECT_DOUBLE_EQ(r.amount, e.amount);
        }
    }
}

TEST_F(ImportTest, BadBytesGiveAReasonAndNoLines)
{
    const struct {
        QByteArray bytes;
        const char *reason;
    } cases[] = {
        {QByteArray(), "文件是空的"},
        {QByteArray("\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1", 8), "Excel 表格文件"},
        {QByteArray("abc\0def", 7), "不是文本"},
        {QByteArray(400, '\xFF'), "无法识别文件的文字编码"},
        {QByteArray("日期,名称\n2024-01-01,x\n"), "找不到标题行"},
    };
    for (const auto &c : cases) {
        const StatementTable t = readStatement(c.bytes);
        EXPECT_TRUE(t.error.contains(QString::fromUtf8(c.reason))) << t.error.toStdString();
        EXPECT_TRUE(t.lines.isEmpty());
    }
}

TEST_F(ImportTest, CellDatesAndNumbersAsBrokersWriteThem)
{
    const QDate day(2024, 1, 5);
    for (const char *text : {"20240105", "2024-01-05", "2024/1/5", "2024.1.5", "2024年1月5日", "2024-01-05 09:31:00",
                             "２０２４０１０５", "=\"20240105\""})
        EXPECT_EQ(cellDate(QString::fromUtf8(text)), day) << text;
    for (const char *text : {"2024/13/5", "2024-02-30", "240105", "合计", ""})
        EXPECT_FALSE(cellDate(QString::fromUtf8(text)).isValid()) << text;

    const struct {
        const char *text;
        std::optional<double> value;
    } numbers[] = {{"1,234.50", 1234.5}, {"１２３．５", 123.5}, {"=\"-5\"", -5.0}, {"¥1,000", 1000.0},
                   {"", 0.0},            {"--", 0.0},          {"abc", std::nullopt}, {"1e999", std::nullopt}};
    for (const auto &n : numbers)
        EXPECT_EQ(cellNumber(QString::fromUtf8(n.text)), n.value) << n.text;
}

TEST_F(ImportTest, StoredRateGivesBackTheBrokersFeeInTradeDetails)
{
    // price, quantity, fee in fen: ordinary, large and awkward products.
    const struct {
        double price, quantity;
        qint64 fen;
    } cases[] = {{35.2, 1000, 950},     {13.05, 2000, 653},   {1680, 100, 4704},   {3.33, 300, 501},
                 {0.001, 9000000, 501}, {99.99, 99900, 99901}, {1234.56, 10000, 617283}};
    for (const auto &c : cases) {
        const float rate = rateForFee(c.price, c.quantity, c.fen);
        const reports::TradeFee fee = reports::tradeFee(c.price, c.quantity, rate, QStringLiteral("600000"), 0, 0);
        EXPECT_NEAR(double(fee.fee), double(c.fen) / 100.0, 0.01) << c.price << " x " << c.quantity;
    }
}
