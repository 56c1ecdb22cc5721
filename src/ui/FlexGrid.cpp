#include "FlexGrid.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPalette>

#include <algorithm>

namespace ui {

namespace {
constexpr int kTwipsPerPixel = 15;
const QColor kFixedBackground(0xE8, 0xE8, 0xE8);
} // namespace

// ---- model ---------------------------------------------------------------

void FlexGridModel::CellText::reset() noexcept
{
    if (m_len == kHeap)
        m_heap.~QString();
    m_len = kNull;
}

void FlexGridModel::CellText::assign(const CellText &other)
{
    if (other.m_len == kHeap)
        new (&m_heap) QString(other.m_heap);
    else if (other.m_len != kNull)
        std::copy_n(other.m_small, other.m_len, m_small);
    m_len = other.m_len;
}

void FlexGridModel::CellText::set(const QString &text)
{
    reset();
    if (text.isNull())
        return;
    if (text.size() <= kInline) {
        std::copy_n(text.utf16(), text.size(), m_small);
        m_len = static_cast<quint8>(text.size());
    } else {
        new (&m_heap) QString(text);
        m_len = kHeap;
    }
}

QString FlexGridModel::CellText::get() const
{
    if (m_len == kHeap)
        return m_heap;
    if (m_len == kNull)
        return QString();
    return m_len == 0 ? QStringLiteral("") : QString(reinterpret_cast<const QChar *>(m_small), m_len);
}

int FlexGridModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_cells.size());
}

int FlexGridModel::columnCount(const QModelIndex &parent) const { return parent.isValid() ? 0 : m_cols; }

QVariant FlexGridModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || index.row() >= rowCount() || index.column() >= m_cols)
        return {};
    const auto &row = m_cells[static_cast<size_t>(index.row())];
    const size_t c = static_cast<size_t>(index.column());
    switch (role) {
    case Qt::DisplayRole:
        return textOf(index.row(), index.column());
    case Qt::ForegroundRole:
        if (c < row.size() && row[c].hasFore)
            return QColor::fromRgb(row[c].fore);
        return {};
    case Qt::BackgroundRole:
        if (index.row() == 0 || index.column() == 0)
            return kFixedBackground;
        return {};
    default:
        return {};
    }
}

QVariant FlexGridModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    // The view shows row 0 as its horizontal header, so it stays in place.
    if (orientation == Qt::Horizontal && role == Qt::DisplayRole)
        return text(0, section);
    if (orientation == Qt::Horizontal && role == Qt::ForegroundRole) {
        const QColor c = foreColor(0, section);
        return c.isValid() ? QVariant(c) : QVariant();
    }
    return {};
}

void FlexGridModel::setRows(int rows)
{
    rows = std::max(rows, 0);
    const int old = rowCount();
    if (rows > old) {
        beginInsertRows({}, old, rows - 1);
        m_cells.resize(static_cast<size_t>(rows));
        endInsertRows();
    } else if (rows < old) {
        beginRemoveRows({}, rows, old - 1);
        m_cells.resize(static_cast<size_t>(rows));
        endRemoveRows();
    }
}

void FlexGridModel::setCols(int cols)
{
    cols = std::max(cols, 0);
    if (cols == m_cols)
        return;
    if (cols > m_cols) {
        beginInsertColumns({}, m_cols, cols - 1);
        m_cols = cols;
        endInsertColumns();
    } else {
        beginRemoveColumns({}, cols, m_cols - 1);
        m_cols = cols;
        for (auto &row : m_cells)
            if (row.size() > static_cast<size_t>(cols))
                row.resize(static_cast<size_t>(cols));
        endRemoveColumns();
    }
}

QString FlexGridModel::text(int r, int c) const
{
    if (r < 0 || c < 0 || r >= rowCount() || c >= m_cols)
        return {};
    return textOf(r, c);
}

QString FlexGridModel::textOf(int r, int c) const
{
    const auto &row = m_cells[static_cast<size_t>(r)];
    const bool set = static_cast<size_t>(c) < row.size() && !row[static_cast<size_t>(c)].text.isNull();
    if (!set && m_source && r >= 1 && r <= m_sourceRows && c >= m_sourceFirst && c <= m_sourceLast) {
        const QVariant v = m_source(r, c);
        return m_format ? m_format(v) : v.toString();
    }
    return set ? row[static_cast<size_t>(c)].text.get() : QString();
}

FlexGridModel::Cell &FlexGridModel::cellAt(int r, int c)
{
    auto &row = m_cells[static_cast<size_t>(r)];
    if (row.size() <= static_cast<size_t>(c))
        row.resize(static_cast<size_t>(m_cols));
    return row[static_cast<size_t>(c)];
}

void FlexGridModel::setText(int r, int c, const QString &text)
{
    if (r < 0 || c < 0 || r >= rowCount() || c >= m_cols)
        return;
    cellAt(r, c).text.set(text);
    cellChanged(r, c, Qt::DisplayRole);
}

void FlexGridModel::setValueFormat(ValueFormat format) { m_format = std::move(format); }

void FlexGridModel::setValueSource(int rows, int first, int last, ValueSource source)
{
    m_source = std::move(source);
    m_sourceRows = rows;
    m_sourceFirst = first;
    m_sourceLast = last;
    const int bottom = std::min(rows, rowCount() - 1);
    const int right = std::min(last, m_cols - 1);
    if (bottom < 1 || first > right)
        return;
    if (m_bulk > 0) { // the corners widen the bulk's rectangle
        cellChanged(1, first, Qt::DisplayRole);
        cellChanged(bottom, right, Qt::DisplayRole);
    } else {
        emit dataChanged(index(1, first), index(bottom, right), {Qt::DisplayRole});
    }
}

void FlexGridModel::cellChanged(int r, int c, int role)
{
    if (m_bulk == 0) {
        const QModelIndex i = index(r, c);
        emit dataChanged(i, i, {role});
        if (r == 0 && role == Qt::DisplayRole)
            emit headerDataChanged(Qt::Horizontal, c, c);
        return;
    }
    if (m_bottom < m_top) {
        m_top = m_bottom = r;
        m_left = m_right = c;
    } else {
        m_top = std::min(m_top, r);
        m_bottom = std::max(m_bottom, r);
        m_left = std::min(m_left, c);
        m_right = std::max(m_right, c);
    }
    (role == Qt::DisplayRole ? m_textChanged : m_colorChanged) = true;
    if (r == 0 && role == Qt::DisplayRole) {
        if (m_headerRight < m_headerLeft) {
            m_headerLeft = m_headerRight = c;
        } else {
            m_headerLeft = std::min(m_headerLeft, c);
            m_headerRight = std::max(m_headerRight, c);
        }
    }
}

void FlexGridModel::beginBulk() { ++m_bulk; }

void FlexGridModel::endBulk()
{
    if (m_bulk == 0 || --m_bulk > 0)
        return;
    // Rows or columns may have gone since the cells changed.
    const int bottom = std::min(m_bottom, rowCount() - 1);
    const int right = std::min(m_right, m_cols - 1);
    if (m_top <= bottom && m_left <= right) {
        QList<int> roles;
        if (m_textChanged)
            roles << Qt::DisplayRole;
        if (m_colorChanged)
            roles << Qt::ForegroundRole;
        emit dataChanged(index(m_top, m_left), index(bottom, right), roles);
    }
    const int headerRight = std::min(m_headerRight, m_cols - 1);
    if (m_headerLeft <= headerRight && rowCount() > 0)
        emit headerDataChanged(Qt::Horizontal, m_headerLeft, headerRight);
    m_top = m_left = m_headerLeft = 0;
    m_bottom = m_right = m_headerRight = -1;
    m_textChanged = m_colorChanged = false;
}

QColor FlexGridModel::foreColor(int r, int c) const
{
    if (r < 0 || c < 0 || r >= rowCount() || c >= m_cols)
        return {};
    const auto &row = m_cells[static_cast<size_t>(r)];
    if (static_cast<size_t>(c) >= row.size() || !row[static_cast<size_t>(c)].hasFore)
        return {};
    return QColor::fromRgb(row[static_cast<size_t>(c)].fore);
}

void FlexGridModel::setForeColor(int r, int c, const QColor &color)
{
    if (r < 0 || c < 0 || r >= rowCount() || c >= m_cols)
        return;
    Cell &cell = cellAt(r, c);
    cell.fore = color.rgb();
    cell.hasFore = color.isValid();
    cellChanged(r, c, Qt::ForegroundRole);
}

void FlexGridModel::addRow(const QStringList &cells)
{
    const int r = rowCount();
    beginInsertRows({}, r, r);
    std::vector<Cell> row(static_cast<size_t>(m_cols));
    for (int c = 0; c < cells.size() && c < m_cols; ++c)
        row[static_cast<size_t>(c)].text.set(cells[c]);
    m_cells.push_back(std::move(row));
    endInsertRows();
}

void FlexGridModel::clearContents()
{
    beginResetModel();
    // The rows keep their room: a grid that is cleared is filled again.
    for (auto &row : m_cells)
        row.clear();
    m_source = nullptr;
    m_sourceRows = 0;
    endResetModel();
}

// ---- view ----------------------------------------------------------------

FlexGrid::FlexGrid(QWidget *parent) : QTableView(parent), m_model(new FlexGridModel(this))
{
    setModel(m_model);
    m_model->setRows(2);
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 6);
    horizontalHeader()->setSectionResizeMode(QHeaderView::Interactive);
    horizontalHeader()->setHighlightSections(false);
    horizontalHeader()->setMinimumSectionSize(1);
    horizontalHeader()->setDefaultSectionSize(96);
    horizontalHeader()->setStretchLastSection(true);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setWordWrap(false);
    setCornerButtonEnabled(false);
    setAlternatingRowColors(false);
    connect(m_model, &QAbstractItemModel::rowsInserted, this, [this] { syncHeaderRow(); });
    connect(m_model, &QAbstractItemModel::modelReset, this, [this] { syncHeaderRow(); });
    syncHeaderRow();
}

void FlexGrid::syncHeaderRow()
{
    if (m_model->rowCount() > 0 && !isRowHidden(0))
        setRowHidden(0, true);
}

int FlexGrid::rows() const { return m_model->rowCount(); }

void FlexGrid::setRows(int rows)
{
    m_model->setRows(rows);
    if (m_row >= rows)
        m_row = std::max(0, rows - 1);
    syncHeaderRow();
}

int FlexGrid::cols() const { return m_model->columnCount(); }

void FlexGrid::setCols(int cols)
{
    m_model->setCols(cols);
    if (m_col >= cols)
        m_col = std::max(0, cols - 1);
}

QString FlexGrid::textMatrix(int r, int c) const { return m_model->text(r, c); }

void FlexGrid::setTextMatrix(int r, int c, const QString &text) { m_model->setText(r, c, text); }

void FlexGrid::setValueFormat(FlexGridModel::ValueFormat format) { m_model->setValueFormat(std::move(format)); }

void FlexGrid::setValueSource(int rows, int first, int last, FlexGridModel::ValueSource source)
{
    m_model->setValueSource(rows, first, last, std::move(source));
}

int FlexGrid::colWidth(int c) const { return columnWidth(c) * kTwipsPerPixel; }

void FlexGrid::setColWidth(int c, int twips) { setColumnWidth(c, std::max(0, twips / kTwipsPerPixel)); }

void FlexGrid::setRow(int r)
{
    if (r < 0 || r >= rows())
        return;
    m_row = r;
    if (m_bulk > 0)
        m_selectPending = true;
    else if (r > 0)
        highlightRow(r);
}

void FlexGrid::highlightRow(int r)
{
    // Marks the row and makes it the view's current index, so that the
    // arrow keys go on from it; setting the current row of the grid does not
    // scroll it, only a click or a key does.
    if (!selectionModel() || r <= 0 || r >= rows() || cols() <= 0)
        return;
    const bool scrolls = hasAutoScroll();
    setAutoScroll(false);
    selectionModel()->setCurrentIndex(m_model->index(r, std::clamp(m_col, 0, cols() - 1)),
                                      QItemSelectionModel::NoUpdate);
    setAutoScroll(scrolls);
    selectionModel()->select(QItemSelection(m_model->index(r, 0), m_model->index(r, cols() - 1)),
                             QItemSelectionModel::ClearAndSelect);
}

FlexGrid::BulkUpdate::BulkUpdate(FlexGrid &grid) : m_grid(grid)
{
    ++m_grid.m_bulk;
    m_grid.m_model->beginBulk();
}

FlexGrid::BulkUpdate::~BulkUpdate()
{
    m_grid.m_model->endBulk();
    if (--m_grid.m_bulk > 0 || !m_grid.m_selectPending)
        return;
    m_grid.m_selectPending = false;
    if (m_grid.m_row > 0 && m_grid.m_row < m_grid.rows())
        m_grid.highlightRow(m_grid.m_row);
}

void FlexGrid::setCol(int c)
{
    if (c >= 0 && c < cols())
        m_col = c;
}

void FlexGrid::setCellForeColor(const QColor &color) { m_model->setForeColor(m_row, m_col, color); }

QColor FlexGrid::cellForeColor(int r, int c) const { return m_model->foreColor(r, c); }

void FlexGrid::addItem(const QString &text) { m_model->addRow(text.split(u'\t')); }

void FlexGrid::clear() { m_model->clearContents(); }

void FlexGrid::mousePressEvent(QMouseEvent *event)
{
    const QPoint p = event->position().toPoint();
    if (event->button() == Qt::RightButton) {
        // The right button leaves the current row alone: the edit menus act
        // on the row last chosen with the left button.
        emit gridMouseDown(2, p.x(), p.y());
        event->accept();
        return;
    }
    QTableView::mousePressEvent(event);
    if (event->button() == Qt::LeftButton) {
        const QModelIndex i = indexAt(p);
        if (i.isValid()) {
            m_row = i.row();
            m_col = i.column();
        }
        m_pressedLeft = true;
        emit gridMouseDown(1, p.x(), p.y());
    } else if (event->button() == Qt::MiddleButton) {
        emit gridMouseDown(4, p.x(), p.y());
    }
}

void FlexGrid::mouseReleaseEvent(QMouseEvent *event)
{
    QTableView::mouseReleaseEvent(event);
    if (event->button() == Qt::LeftButton && m_pressedLeft) {
        m_pressedLeft = false;
        emit gridClicked();
    }
}

void FlexGrid::keyPressEvent(QKeyEvent *event)
{
    QTableView::keyPressEvent(event);
    const QModelIndex i = currentIndex();
    if (i.isValid() && i.row() > 0) {
        m_row = i.row();
        m_col = i.column();
    }
}

QModelIndex FlexGrid::moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers)
{
    // Rows are what the grid selects: Home and End go to the first and the
    // last row, as Ctrl+Home and Ctrl+End do in a table.
    if (action == MoveHome || action == MoveEnd)
        modifiers |= Qt::ControlModifier;
    return QTableView::moveCursor(action, modifiers);
}

void FlexGrid::mouseDoubleClickEvent(QMouseEvent *event)
{
    QTableView::mouseDoubleClickEvent(event);
    if (event->button() == Qt::LeftButton)
        emit gridDoubleClicked();
}

} // namespace ui
