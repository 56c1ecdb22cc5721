#include "FlexGrid.h"

#include <QHeaderView>
#include <QMouseEvent>
#include <QPalette>

namespace ui {

namespace {
constexpr int kTwipsPerPixel = 15;
const QColor kFixedBackground(0xE8, 0xE8, 0xE8);
} // namespace

// ---- model ---------------------------------------------------------------

int FlexGridModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_cells.size());
}

int FlexGridModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_cols;
}

QVariant FlexGridModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || index.row() >= rowCount() || index.column() >= m_cols)
        return {};
    const auto &row = m_cells[static_cast<size_t>(index.row())];
    const size_t c = static_cast<size_t>(index.column());
    switch (role) {
    case Qt::DisplayRole:
        return c < row.size() ? QVariant(row[c].text) : QVariant(QString());
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
    const auto &row = m_cells[static_cast<size_t>(r)];
    return static_cast<size_t>(c) < row.size() ? row[static_cast<size_t>(c)].text : QString();
}

void FlexGridModel::setText(int r, int c, const QString &text)
{
    if (r < 0 || c < 0 || r >= rowCount() || c >= m_cols)
        return;
    auto &row = m_cells[static_cast<size_t>(r)];
    if (row.size() <= static_cast<size_t>(c))
        row.resize(static_cast<size_t>(m_cols));
    row[static_cast<size_t>(c)].text = text;
    const QModelIndex i = index(r, c);
    emit dataChanged(i, i, {Qt::DisplayRole});
    if (r == 0)
        emit headerDataChanged(Qt::Horizontal, c, c);
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
    auto &row = m_cells[static_cast<size_t>(r)];
    if (row.size() <= static_cast<size_t>(c))
        row.resize(static_cast<size_t>(m_cols));
    row[static_cast<size_t>(c)].fore = color.rgb();
    row[static_cast<size_t>(c)].hasFore = color.isValid();
    const QModelIndex i = index(r, c);
    emit dataChanged(i, i, {Qt::ForegroundRole});
}

void FlexGridModel::addRow(const QStringList &cells)
{
    const int r = rowCount();
    beginInsertRows({}, r, r);
    std::vector<Cell> row(static_cast<size_t>(m_cols));
    for (int c = 0; c < cells.size() && c < m_cols; ++c)
        row[static_cast<size_t>(c)].text = cells[c];
    m_cells.push_back(std::move(row));
    endInsertRows();
}

void FlexGridModel::clearContents()
{
    beginResetModel();
    for (auto &row : m_cells) {
        row.clear();
        row.shrink_to_fit();
    }
    endResetModel();
}

// ---- view ----------------------------------------------------------------

FlexGrid::FlexGrid(QWidget *parent)
    : QTableView(parent), m_model(new FlexGridModel(this))
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

int FlexGrid::colWidth(int c) const { return columnWidth(c) * kTwipsPerPixel; }

void FlexGrid::setColWidth(int c, int twips) { setColumnWidth(c, std::max(0, twips / kTwipsPerPixel)); }

void FlexGrid::setRow(int r)
{
    if (r < 0 || r >= rows())
        return;
    m_row = r;
    if (r > 0)
        selectRow(r);
}

void FlexGrid::setCol(int c)
{
    if (c >= 0 && c < cols())
        m_col = c;
}

void FlexGrid::setCellForeColor(const QColor &color) { m_model->setForeColor(m_row, m_col, color); }

QColor FlexGrid::cellForeColor(int r, int c) const { return m_model->foreColor(r, c); }

void FlexGrid::addItem(const QString &text)
{
    m_model->addRow(text.split(u'\t'));
}

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

void FlexGrid::mouseDoubleClickEvent(QMouseEvent *event)
{
    QTableView::mouseDoubleClickEvent(event);
    if (event->button() == Qt::LeftButton)
        emit gridDoubleClicked();
}

} // namespace ui
