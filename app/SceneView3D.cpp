#include "SceneView3D.h"

#include "VisitedItems.h"

#include <hostcontract/DisplayItemInterface.h>
#include <hostcontract/DisplayModel.h>
#include <hostcontract/LabelableDisplayItemInterface.h>
#include <hostcontract/PlotDescription.h>
#include <hostcontract/PlotLabelDisplayItem.h>
#include <hostcontract/ViewBase.h>
#include <hostcontract/ViewTransformationProvider.h>
#include <hostcontract/ViewModelInterface.h>

#include <QPainter>
#include <QPainterPath>
#include <QPolygonF>

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

namespace Brennvik {

namespace {

// Painting stays interactive on generated models of a million items: beyond
// this many tiles the rest is counted, not drawn.
constexpr int MaxPaintedTiles = 20000;
constexpr double TileSpacing = 1.25;
constexpr double IslandGap = 2.5;

const std::string* findValue(const PropertyList& properties, const char* name)
{
    for (const auto& property : properties) {
        if (property.first == name)
            return &property.second;
    }
    return nullptr;
}

bool isDrawable(const PropertyList& displayProperties, bool labelable)
{
    if (labelable || findValue(displayProperties, "color"))
        return true;
    const std::string* mode = findValue(displayProperties, "render mode");
    return mode && (*mode == "shaded" || *mode == "mesh" || *mode == "contour");
}

QColor colorOf(const PropertyList& displayProperties, const QString& name)
{
    if (const std::string* text = findValue(displayProperties, "color")) {
        const QColor color(QString::fromStdString(*text));
        if (color.isValid())
            return color;
    }
    // Items without a colour of their own still get a steady one.
    return fallbackTileColor(name);
}

QPointF project(double x, double y, double z)
{
    // Isometric: x to the lower right, y to the lower left, z up.
    constexpr double Cos30 = 0.8660254037844386;
    return QPointF((x - y) * Cos30, (x + y) * 0.5 - z);
}

} // namespace

QColor fallbackTileColor(const QString& name)
{
    // Not qHash, which Qt 6 computes otherwise than Qt 5: this is Qt 5's
    // unseeded string hash, so the colours stay those of the pictures.
    quint32 hash = 0;
    for (const QChar c : name)
        hash = 31 * hash + c.unicode();
    return QColor::fromHsv(static_cast<int>(hash % 360), 70, 210);
}

SceneView3D::SceneView3D(QWidget* parent)
    : QWidget(parent)
{
    setObjectName(QStringLiteral("sceneView3D"));
    setAutoFillBackground(false);
    setMinimumSize(240, 200);
}

SceneView3D::~SceneView3D() = default;

void SceneView3D::setViewModel(std::shared_ptr<ViewModelInterface> viewModel, const QString& caption)
{
    m_viewModel = std::move(viewModel);
    m_caption = caption;
    refresh();
}

std::shared_ptr<ViewModelInterface> SceneView3D::viewModel() const
{
    return m_viewModel;
}

int SceneView3D::drawnItemCount() const
{
    return m_drawnCount;
}

int SceneView3D::selectedItemCount() const
{
    return m_selectedCount;
}

QStringList SceneView3D::drawnItemNames() const
{
    QStringList names;
    names.reserve(m_tiles.size());
    for (const Tile& tile : m_tiles)
        names << tile.name;
    return names;
}

QStringList SceneView3D::drawnPlotLabels() const
{
    QStringList texts;
    for (const PlotLabel& label : m_plotLabels)
        texts << label.text;
    return texts;
}

QSize SceneView3D::sizeHint() const
{
    return QSize(640, 520);
}

void SceneView3D::refresh()
{
    m_tiles.clear();
    m_islandSlots.clear();
    m_drawnCount = 0;
    m_selectedCount = 0;
    m_skippedCount = 0;
    collectPlotLabels();

    DisplayModel* displayModel = m_viewModel ? m_viewModel->getDisplayModel() : nullptr;
    const std::shared_ptr<DisplayItemInterface> root = displayModel ? displayModel->getRootDisplayItem() : nullptr;
    if (root) {
        // Each child of the root is an island of its own.
        VisitedItems visited;
        visited.firstVisit(root);
        int island = 0;
        for (const std::shared_ptr<DisplayItemInterface>& child : root->getChildren()) {
            if (!child || visited.contains(child))
                continue;
            m_islandSlots.append(0);
            collect(child, root->isVisible(), island++, 1, visited);
        }
    }

    // Islands side by side along x, each a square grid of its slots.
    QVector<double> islandOrigin(m_islandSlots.size());
    QVector<int> islandColumns(m_islandSlots.size());
    double origin = 0.0;
    for (int island = 0; island < m_islandSlots.size(); ++island) {
        islandOrigin[island] = origin;
        islandColumns[island] = std::max(1, static_cast<int>(std::ceil(std::sqrt(double(m_islandSlots[island])))));
        origin += islandColumns[island] * TileSpacing + IslandGap;
    }
    for (Tile& tile : m_tiles) {
        const int island = static_cast<int>(tile.x);
        const int slot = static_cast<int>(tile.y);
        const int columns = islandColumns[island];
        tile.x = islandOrigin[island] + (slot % columns) * TileSpacing;
        tile.y = (slot / columns) * TileSpacing;
    }
    update();
}

void SceneView3D::collectPlotLabels()
{
    m_plotLabels.clear();
    // Plot labels live in the view's label model and are placed by the view's
    // own transformation, as the host's debug tools find them.
    const ViewBase* view = m_viewModel ? m_viewModel->getView() : nullptr;
    DisplayModel* labelModel = m_viewModel ? m_viewModel->getLabelDisplayModel() : nullptr;
    const std::shared_ptr<DisplayItemInterface> root = labelModel ? labelModel->getRootDisplayItem() : nullptr;
    if (!view || !root || !root->isVisible())
        return;
    const ViewTransformationProvider& transformation = view->getMainWindowTransformationProvider();
    std::vector<std::shared_ptr<DisplayItemInterface>> stack{root};
    VisitedItems visited;
    while (!stack.empty()) {
        const std::shared_ptr<DisplayItemInterface> item = std::move(stack.back());
        stack.pop_back();
        if (!visited.firstVisit(item) || !item->isVisible())
            continue;
        if (const auto* label = dynamic_cast<const PlotLabelDisplayItem*>(item.get())) {
            const Vector<float, 3> pixel
                = transformation.transformWorldToPixelCoordinates(label->getAnchorPointForDisplay());
            const PlotDescription* plot = label->getPlotDescription();
            const QString text
                = plot ? QString::fromStdString(plot->getTitle()) : QString::fromStdString(item->getDisplayName());
            m_plotLabels.append({QPointF(pixel.x(), pixel.y()), text});
        }
        const DisplayItemList children = item->getChildren();
        for (auto it = children.rbegin(); it != children.rend(); ++it)
            stack.push_back(*it);
    }
}

void SceneView3D::collect(const std::shared_ptr<DisplayItemInterface>& top, bool parentShown, int island, int depth,
                          VisitedItems& visited)
{
    // Explicit stack: a host's model may be deeper than the call stack allows.
    // Each item is taken once, so that a broken host's cycle ends.
    struct Entry
    {
        std::shared_ptr<DisplayItemInterface> item;
        bool parentShown;
        int depth;
    };
    std::vector<Entry> stack{{top, parentShown, depth}};
    while (!stack.empty()) {
        Entry entry = std::move(stack.back());
        stack.pop_back();
        if (!visited.firstVisit(entry.item))
            continue;
        const bool shown = entry.parentShown && entry.item->isVisible();

        PropertyList business;
        PropertyList display;
        entry.item->getProperties(business, display);
        const auto* labelable = dynamic_cast<const LabelableDisplayItemInterface*>(entry.item.get());
        if (isDrawable(display, labelable != nullptr)) {
            // The slot is taken whether or not the item is shown, so that
            // hiding one item leaves the others where they were.
            const int slot = m_islandSlots[island]++;
            if (shown) {
                ++m_drawnCount;
                const bool selected = entry.item->isSelected();
                if (selected)
                    ++m_selectedCount;
                if (m_tiles.size() < MaxPaintedTiles) {
                    Tile tile;
                    tile.name = QString::fromStdString(entry.item->getDisplayName());
                    tile.color = colorOf(display, tile.name);
                    tile.x = island; // replaced by the grid position in refresh()
                    tile.y = slot;
                    tile.selected = selected;
                    tile.point = labelable != nullptr;
                    if (labelable && labelable->areLabelsAllowed())
                        tile.label = QString::fromStdString(labelable->getLabel());
                    const std::string* mode = findValue(display, "render mode");
                    const bool solid = !entry.item->getChildren().empty() || (mode && *mode == "shaded");
                    tile.height = tile.point ? 0.0 : solid ? 0.35 + 0.15 * std::min(entry.depth, 4) : 0.08;
                    tile.z = 0.0;
                    m_tiles.append(tile);
                } else {
                    ++m_skippedCount;
                }
            }
        }
        const DisplayItemList children = entry.item->getChildren();
        for (auto it = children.rbegin(); it != children.rend(); ++it)
            stack.push_back({*it, shown, entry.depth + 1});
    }
}

void SceneView3D::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QLinearGradient background(0, 0, 0, height());
    background.setColorAt(0.0, QColor(0x5d, 0x6d, 0x7e));
    background.setColorAt(1.0, QColor(0xd5, 0xdb, 0xdb));
    painter.fillRect(rect(), background);

    // Back to front: the isometric depth is x + y.
    QVector<const Tile*> order;
    order.reserve(m_tiles.size());
    QRectF bounds;
    for (const Tile& tile : m_tiles) {
        order.append(&tile);
        const QPointF a = project(tile.x, tile.y, 0.0);
        const QPointF b = project(tile.x + tile.size, tile.y + tile.size, tile.height);
        bounds |= QRectF(a, b).normalized().adjusted(-1.2, -1.2, 1.2, 1.2);
    }
    std::stable_sort(order.begin(), order.end(),
                     [](const Tile* a, const Tile* b) { return a->x + a->y < b->x + b->y; });

    if (!bounds.isEmpty()) {
        const QRectF area = QRectF(rect()).adjusted(16, 40, -16, -16);
        const double scale = std::min(area.width() / bounds.width(), area.height() / bounds.height());
        painter.save();
        painter.translate(area.center());
        painter.scale(scale, scale);
        painter.translate(-bounds.center());
        const double pixel = 1.0 / scale;
        for (const Tile* tile : qAsConst(order)) {
            const double x0 = tile->x;
            const double y0 = tile->y;
            const double x1 = x0 + tile->size;
            const double y1 = y0 + tile->size;
            const double h = tile->height;
            if (tile->point) {
                const QPointF centre = project((x0 + x1) / 2, (y0 + y1) / 2, 0.25);
                painter.setPen(QPen(tile->selected ? QColor(0xff, 0x8c, 0x00) : Qt::black, 1.5 * pixel));
                painter.setBrush(tile->color);
                painter.drawEllipse(centre, 0.22, 0.22);
                continue;
            }
            const QPolygonF top(
                QVector<QPointF>{project(x0, y0, h), project(x1, y0, h), project(x1, y1, h), project(x0, y1, h)});
            const QPolygonF right(
                QVector<QPointF>{project(x1, y0, h), project(x1, y1, h), project(x1, y1, 0), project(x1, y0, 0)});
            const QPolygonF front(
                QVector<QPointF>{project(x0, y1, h), project(x1, y1, h), project(x1, y1, 0), project(x0, y1, 0)});
            painter.setPen(QPen(tile->color.darker(160), 0.8 * pixel));
            painter.setBrush(tile->color.darker(130));
            painter.drawPolygon(right);
            painter.setBrush(tile->color.darker(112));
            painter.drawPolygon(front);
            painter.setBrush(tile->color);
            if (tile->selected)
                painter.setPen(QPen(QColor(0xff, 0x8c, 0x00), 2.5 * pixel));
            painter.drawPolygon(top);
        }
        painter.restore();

        // Labels last, in screen space, so that they stay readable.
        painter.setPen(Qt::black);
        QFont font = painter.font();
        font.setPointSizeF(7.5);
        painter.setFont(font);
        // A label that would cover one already drawn is left out.
        const QFontMetrics metrics(font);
        QVector<QRect> taken;
        for (const Tile* tile : qAsConst(order)) {
            if (tile->label.isEmpty())
                continue;
            const QPointF anchor = project(tile->x + 0.5, tile->y + 0.5, 0.25);
            const QPointF on = area.center() + (anchor - bounds.center()) * scale + QPointF(6, -4);
            const QRect box = metrics.boundingRect(tile->label).translated(on.toPoint()).adjusted(-2, -1, 2, 1);
            if (std::any_of(taken.cbegin(), taken.cend(), [&box](const QRect& other) { return other.intersects(box); }))
                continue;
            taken.append(box);
            painter.drawText(on, tile->label);
        }
    }

    // Plot labels: a marker at the anchor and a tag naming the plot.
    for (const PlotLabel& label : qAsConst(m_plotLabels)) {
        QFont tagFont = painter.font();
        tagFont.setPointSizeF(8);
        tagFont.setBold(false);
        painter.setFont(tagFont);
        const QFontMetrics metrics(tagFont);
        const QRectF tag = QRectF(metrics.boundingRect(label.text))
                               .adjusted(-5, -3, 5, 3)
                               .translated(label.anchor + QPointF(14, -10));
        painter.setPen(QPen(QColor(0x1a, 0x52, 0x76), 1.2));
        painter.drawLine(label.anchor, tag.bottomLeft());
        painter.setBrush(QColor(0xfd, 0xfe, 0xfe, 230));
        painter.drawRoundedRect(tag, 3, 3);
        painter.setBrush(QColor(0x1a, 0x52, 0x76));
        painter.drawEllipse(label.anchor, 3, 3);
        painter.drawText(tag, Qt::AlignCenter, label.text);
    }

    painter.setPen(Qt::white);
    QFont font = painter.font();
    font.setPointSizeF(9);
    font.setBold(true);
    painter.setFont(font);
    QString status
        = tr("%1 - %n item(s) drawn", nullptr, m_drawnCount).arg(m_caption.isEmpty() ? tr("3D view") : m_caption);
    if (m_selectedCount > 0)
        status += tr(", %n selected", nullptr, m_selectedCount);
    if (m_skippedCount > 0)
        status += tr(" (%n not painted)", nullptr, m_skippedCount);
    painter.drawText(QRectF(rect()).adjusted(10, 8, -10, -8), Qt::AlignLeft | Qt::AlignTop, status);
}

} // namespace Brennvik
