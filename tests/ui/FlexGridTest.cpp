#include "ui/FlexGrid.h"
#include "ui/Form.h"

#include <QAbstractItemModelTester>
#include "support/Helpers.h"

using ui::FlexGrid;

namespace {
// A grid whose model is checked by Qt's model tester after every change; a
// broken notice or index ends the test run.
struct CheckedGrid : FlexGrid {
    QAbstractItemModelTester tester{model(), QAbstractItemModelTester::FailureReportingMode::Fatal};
};
} // namespace

TEST(FlexGrid, CellsAreAddressedLikeTheModelRowZeroIncluded)
{
    CheckedGrid g;
    g.setCols(3);
    g.setRows(3);
    g.setTextMatrix(0, 1, "代码");
    g.setTextMatrix(2, 2, "x");
    // The header row is shown as the frozen header of the view.
    EXPECT_EQ((QStringList{g.model()->index(0, 1).data().toString(), g.model()->index(2, 2).data().toString(),
                           g.textMatrix(2, 2), g.model()->headerData(1, Qt::Horizontal).toString()}),
              (QStringList{"代码", "x", "x", "代码"}));
    EXPECT_TRUE(g.isRowHidden(0));
    // A source's value is shown and read through the grid's value format; a text set wins.
    g.setValueFormat([](const QVariant &v) { return v.isNull() ? QStringLiteral("--") : v.toString() + u'!'; });
    g.setValueSource(1, 1, 2, [](int, int c) { return c == 1 ? QVariant(2.5) : QVariant(); });
    const QString shown = g.model()->index(1, 1).data().toString();
    g.setTextMatrix(1, 1, "t");
    g.setTextMatrix(5, 5, "y"); // out of range: ignored, read as empty
    EXPECT_EQ((QStringList{shown, g.textMatrix(1, 2), g.textMatrix(1, 1), g.textMatrix(5, 5)}), (QStringList{"2.5!", "--", "t", ""}));
}

TEST(FlexGrid, ClearKeepsTheShapeAndWidthsAreInTwips)
{
    // (AddItem rows and cell colours in place: the trade-details and profit windows.)
    CheckedGrid g;
    g.setCols(4);
    g.setRows(3);
    g.setTextMatrix(2, 1, "b");
    g.setRow(1);
    g.setCol(2);
    g.setCellForeColor(QColor(255, 0, 0));
    EXPECT_EQ(g.model()->index(1, 2).data(Qt::ForegroundRole).value<QColor>(), QColor(255, 0, 0));
    g.clear();
    EXPECT_EQ(std::make_tuple(g.rows(), g.cols(), g.textMatrix(2, 1)), std::make_tuple(3, 4, QString()));
    EXPECT_FALSE(g.cellForeColor(1, 2).isValid());

    g.setColWidth(0, 200);
    EXPECT_EQ(std::make_tuple(g.columnWidth(0), g.colWidth(0)), std::make_tuple(13, 195));
    g.setRows(1);
    EXPECT_EQ(g.rows(), 1);
    EXPECT_LE(g.row(), 0);
}

TEST(FlexGrid, LeftClickMovesTheCurrentRowRightClickOnlyReportsIt)
{
    CheckedGrid g;
    g.setCols(3);
    g.setRows(5);
    g.resize(300, 300);
    g.show();
    QSignalSpy clicked(&g, &FlexGrid::gridClicked);
    QSignalSpy down(&g, &FlexGrid::gridMouseDown);
    const QPoint row3 = g.visualRect(g.model()->index(3, 1)).center();
    const QPoint row1 = g.visualRect(g.model()->index(1, 1)).center();
    QTest::mouseClick(g.viewport(), Qt::LeftButton, {}, row3);
    EXPECT_EQ(std::make_tuple(g.row(), clicked.count()), std::make_tuple(3, 1));
    QTest::mouseClick(g.viewport(), Qt::RightButton, {}, row1);
    EXPECT_EQ(g.row(), 3);
    ASSERT_EQ(down.count(), 2);
    EXPECT_EQ(down.at(1).at(0).toInt(), 2);
    QSignalSpy dbl(&g, &FlexGrid::gridDoubleClicked);
    QTest::mouseDClick(g.viewport(), Qt::LeftButton, {}, row1);
    EXPECT_EQ(std::make_tuple(dbl.count(), g.row()), std::make_tuple(1, 1));

    // The keyboard moves the current row too, from the row last set or clicked.
    g.setRows(40);
    g.setRow(5);
    const std::pair<Qt::Key, int> keys[] = {{Qt::Key_Down, 6}, {Qt::Key_End, 39}, {Qt::Key_Home, 1},
                                            {Qt::Key_PageDown, 0}, {Qt::Key_PageUp, 1}}; // 0: below row 2
    for (const auto &[key, row] : keys) {
        QTest::keyClick(&g, key);
        EXPECT_TRUE(row ? g.row() == row : g.row() > 2) << key << ' ' << g.row();
        EXPECT_TRUE(g.selectionModel()->isRowSelected(g.row(), {})) << key;
    }
}

TEST(FlexGrid, BulkFillReportsTheChangedCellsAndSelectsTheCurrentRowAtTheEnd)
{
    CheckedGrid g;
    g.setCols(4);
    g.setRows(6);
    QSignalSpy changed(g.model(), &QAbstractItemModel::dataChanged);
    QSignalSpy header(g.model(), &QAbstractItemModel::headerDataChanged);
    const QString longText = QStringLiteral("一个超过十二个字符的很长的股票名称");
    {
        const FlexGrid::BulkUpdate outer(g);
        {
            const FlexGrid::BulkUpdate inner(g); // nested: only the outer end counts
            g.setTextMatrix(0, 2, "代码");
            g.setTextMatrix(4, 1, longText);
            g.setRow(3);
            g.setCol(3);
            g.setCellForeColor(Qt::red);
        }
        g.setTextMatrix(2, 1, "");
        EXPECT_EQ(changed.count() + header.count(), 0);
        EXPECT_FALSE(g.selectionModel()->isRowSelected(3, {}));
        EXPECT_EQ(g.textMatrix(4, 1), longText); // the cells hold their texts at once
    }
    // The end names every changed cell, so that a view repaints them.
    ASSERT_EQ(changed.count(), 1);
    EXPECT_EQ(std::make_tuple(changed.at(0).at(0).value<QModelIndex>(), changed.at(0).at(1).value<QModelIndex>()),
              std::make_tuple(g.model()->index(0, 1), g.model()->index(4, 3)));
    ASSERT_EQ(header.count(), 1);
    EXPECT_EQ(header.at(0).at(1).toInt(), 2);
    EXPECT_TRUE(g.selectionModel()->isRowSelected(3, {}));
    EXPECT_EQ(g.cellForeColor(3, 3), QColor(Qt::red));

    // Short and long texts survive the growth of their row and a clear.
    g.setTextMatrix(1, 1, "600000");
    g.setCols(9);
    g.setTextMatrix(1, 8, longText + longText);
    const auto cells = [&] { return QStringList{g.textMatrix(1, 1), g.textMatrix(4, 1), g.textMatrix(1, 8)}; };
    EXPECT_EQ(cells(), (QStringList{"600000", longText, longText + longText}));
    g.clear();
    EXPECT_EQ(cells(), QStringList(3));
}

namespace {
class CountingForm : public ui::Form {
public:
    int loads = 0, unloads = 0;

protected:
    void formLoad() override { ++loads; }
    void formUnload() override { ++unloads; }
};
} // namespace

TEST(Form, LoadOnFirstShowAndUnloadOnceHoweverItCloses)
{
    CountingForm f;
    f.show();
    f.show();
    EXPECT_EQ(f.loads, 1);
    f.close();
    EXPECT_EQ(f.unloads, 1);
    f.show(); // a second life loads again
    EXPECT_EQ(f.loads, 2);
    f.reject();
    EXPECT_EQ(f.unloads, 2);
}
