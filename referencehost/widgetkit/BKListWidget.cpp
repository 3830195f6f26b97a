#include <hostcontract/BKListWidget.h>

#include <QAbstractItemModel>
#include <QScrollBar>

namespace Brennvik {

namespace {

// Bounds of the size the list asks for: a few rows at least, and beyond a
// screenful of rows it scrolls.
constexpr int MinimumRows = 3;
constexpr int MaximumRows = 15;
constexpr int MinimumWidth = 80;
constexpr int MaximumWidth = 480;
// Rows measured for the width; the rest of a long list is assumed alike.
constexpr int MeasuredRows = 256;

} // namespace

BKListWidget::BKListWidget(QWidget* parent)
    : QListWidget(parent)
{
    // The size hint follows the rows.
    QAbstractItemModel* rows = model();
    connect(rows, &QAbstractItemModel::rowsInserted, this, [this]() { updateGeometry(); });
    connect(rows, &QAbstractItemModel::rowsRemoved, this, [this]() { updateGeometry(); });
    connect(rows, &QAbstractItemModel::modelReset, this, [this]() { updateGeometry(); });
    connect(rows, &QAbstractItemModel::dataChanged, this, [this]() { updateGeometry(); });
}

BKListWidget::~BKListWidget() = default;

QWidget* BKListWidget::getStatusWidget() const
{
    return const_cast<BKListWidget*>(this);
}

QSize BKListWidget::sizeHint() const
{
    const int rows = count();
    const int frame = 2 * frameWidth();
    const int spacingPerRow = 2 * spacing();

    int rowsHeight = 0;
    int lastRowHeight = fontMetrics().height();
    const int shownRows = qMin(rows, MaximumRows);
    for (int row = 0; row < shownRows; ++row) {
        lastRowHeight = qMax(1, sizeHintForRow(row)) + spacingPerRow;
        rowsHeight += lastRowHeight;
    }
    // Room for the minimum rows even while the list is (nearly) empty.
    rowsHeight += qMax(0, MinimumRows - shownRows) * lastRowHeight;

    int contentWidth = 0;
    const int measuredRows = qMin(rows, MeasuredRows);
    for (int row = 0; row < measuredRows; ++row)
        contentWidth = qMax(contentWidth, sizeHintForIndex(model()->index(row, 0)).width() + spacingPerRow);
    if (rows > MaximumRows)
        contentWidth += verticalScrollBar()->sizeHint().width();

    const int width = qBound(MinimumWidth, contentWidth + frame, MaximumWidth);
    int height = rowsHeight + frame;
    if (contentWidth + frame > MaximumWidth)
        height += horizontalScrollBar()->sizeHint().height();
    return QSize(width, height);
}

QSize BKListWidget::minimumSizeHint() const
{
    // One row, and never less than the scroll area needs for its bars.
    const int rowHeight = count() > 0 ? sizeHintForRow(0) : fontMetrics().height();
    const QSize rows(MinimumWidth, rowHeight + 2 * spacing() + 2 * frameWidth());
    return rows.expandedTo(QListWidget::minimumSizeHint());
}

} // namespace Brennvik
