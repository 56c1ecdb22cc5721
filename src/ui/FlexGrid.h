#pragma once
// The grid of every window: a fixed row 0 (the header) and a fixed column 0,
// cells addressed by (row, column) as in the item model, row 0 included.
// A model, not an item per cell, so that 50,000 rows stay smooth. A cell holds
// a text; cells never set may show values asked of a source when the cell is
// shown or read, so that filling a grid from a query formats none of the rows
// off screen.

#include <QAbstractTableModel>
#include <QColor>
#include <QTableView>
#include <QVariant>

#include <functional>
#include <vector>

namespace ui {

class FlexGridModel : public QAbstractTableModel {
    Q_OBJECT
public:
    using QAbstractTableModel::QAbstractTableModel;

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

    void setRows(int rows);
    void setCols(int cols);
    QString text(int r, int c) const;
    void setText(int r, int c, const QString &text);
    // The text of a source's values (their own text without one). The format
    // is set before the values it formats: changing it sends no change notice.
    using ValueFormat = std::function<QString(const QVariant &)>;
    void setValueFormat(ValueFormat format);
    // Cells of rows 1 .. rows and columns first .. last that were never set
    // show the value format's text of source(r, c), asked each time the cell
    // is shown or read: a grid of many rows holds none of their values. The
    // source is dropped when the grid is cleared.
    using ValueSource = std::function<QVariant(int r, int c)>;
    void setValueSource(int rows, int first, int last, ValueSource source);
    QColor foreColor(int r, int c) const;
    void setForeColor(int r, int c, const QColor &color);
    void addRow(const QStringList &cells);
    void clearContents();

    // Between these two calls (they nest) cell changes send no notice each;
    // the last end sends one for the rectangle of every cell changed.
    void beginBulk();
    void endBulk();

private:
    void cellChanged(int r, int c, int role);

    // A cell's text. Most texts of a grid are short (codes, dates, prices):
    // up to kInline characters are kept in the cell itself, so that filling
    // and clearing tens of thousands of rows allocates and frees nothing per
    // cell; a longer text is held as a QString.
    class CellText {
    public:
        CellText() noexcept {}
        ~CellText() { reset(); }
        CellText(const CellText &other) { assign(other); }
        CellText(CellText &&other) noexcept
        {
            assign(other); // a QString is only shared, not copied
            other.reset();
        }
        CellText &operator=(const CellText &other)
        {
            if (this != &other) {
                reset();
                assign(other);
            }
            return *this;
        }
        void set(const QString &text);
        QString get() const;
        bool isNull() const { return m_len == kNull; }

    private:
        static constexpr int kInline = 12;
        static constexpr quint8 kNull = 0xfe, kHeap = 0xff;
        void reset() noexcept;
        void assign(const CellText &other);
        union {
            char16_t m_small[kInline];
            QString m_heap;
        };
        quint8 m_len = kNull; // 0..kInline inline characters, kNull or kHeap
    };
    struct Cell {
        CellText text;
        QRgb fore = 0;
        bool hasFore = false;
    };
    Cell &cellAt(int r, int c); // grows the row to the full width
    QString textOf(int r, int c) const;

    std::vector<std::vector<Cell>> m_cells; // [row][col]
    ValueFormat m_format;
    ValueSource m_source;
    int m_sourceRows = 0, m_sourceFirst = 0, m_sourceLast = -1;
    int m_cols = 2;
    int m_bulk = 0;
    // Changed cells during a bulk update: the bounding rectangle and whether
    // the display texts, the colours or the header row changed.
    int m_top = 0, m_bottom = -1, m_left = 0, m_right = -1;
    bool m_textChanged = false, m_colorChanged = false;
    int m_headerLeft = 0, m_headerRight = -1;
};

class FlexGrid : public QTableView {
    Q_OBJECT
public:
    explicit FlexGrid(QWidget *parent = nullptr);

    int rows() const;
    void setRows(int rows);
    int cols() const;
    void setCols(int cols);

    QString textMatrix(int r, int c) const;
    void setTextMatrix(int r, int c, const QString &text);
    // See FlexGridModel.
    void setValueFormat(FlexGridModel::ValueFormat format);
    void setValueSource(int rows, int first, int last, FlexGridModel::ValueSource source);

    // Column width in twips (15 twips = 1 pixel at 96 dpi).
    int colWidth(int c) const;
    void setColWidth(int c, int twips);

    // The current cell: the row last chosen with the left button or the
    // keyboard (arrows, Page Up/Down, Home/End); a right click leaves it.
    int row() const { return m_row; }
    void setRow(int r);
    int col() const { return m_col; }
    void setCol(int c);

    // Text colour of the current cell.
    void setCellForeColor(const QColor &color);
    QColor cellForeColor(int r, int c) const;

    // Appends a row; tabs in `text` separate the cells from column 0 on.
    void addItem(const QString &text);
    // Empties every cell and its colour; the dimensions stay.
    void clear();

    FlexGridModel *gridModel() const { return m_model; }

    // Filling many cells: while one of these lives, the model sends one
    // change notice at the end instead of one per cell, and the current row
    // is only recorded; its row is selected when the last one ends.
    class BulkUpdate {
    public:
        explicit BulkUpdate(FlexGrid &grid);
        ~BulkUpdate();
        BulkUpdate(const BulkUpdate &) = delete;
        BulkUpdate &operator=(const BulkUpdate &) = delete;

    private:
        FlexGrid &m_grid;
    };

signals:
    void gridClicked();
    void gridDoubleClicked();
    // Mouse button pressed: button 1 left, 2 right, 4 middle; position in pixels.
    void gridMouseDown(int button, int x, int y);

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;

private:
    void syncHeaderRow();
    void highlightRow(int r);

    FlexGridModel *m_model;
    int m_bulk = 0;
    bool m_selectPending = false;
    int m_row = 1;
    int m_col = 1;
    bool m_pressedLeft = false;
};

} // namespace ui
