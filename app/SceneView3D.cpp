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

#include <referencehost/model/SceneObjectItem.h>

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
// The same for the triangles of imported scenes.
constexpr std::size_t MaxPaintedTriangles = 400000;

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

struct Point3
{
    double x;
    double y;
    double z;
};

/// A mesh vertex in the view's axes: the scene's y is up, the view's z.
Point3 toView(const std::array<float, 16>& m, const float* p)
{
    const double x = m[0] * p[0] + m[1] * p[1] + m[2] * p[2] + m[3];
    const double y = m[4] * p[0] + m[5] * p[1] + m[6] * p[2] + m[7];
    const double z = m[8] * p[0] + m[9] * p[1] + m[10] * p[2] + m[11];
    return {x, z, y};
}

/// Light from above and behind the viewer; both faces of a triangle are lit.
double brightness(const Point3& a, const Point3& b, const Point3& c)
{
    const Point3 u{b.x - a.x, b.y - a.y, b.z - a.z};
    const Point3 v{c.x - a.x, c.y - a.y, c.z - a.z};
    const Point3 n{u.y * v.z - u.z * v.y, u.z * v.x - u.x * v.z, u.x * v.y - u.y * v.x};
    const double length = std::sqrt(n.x * n.x + n.y * n.y + n.z * n.z);
    if (length == 0.0)
        return 0.5;
    constexpr Point3 light{0.37, 0.56, 0.74};
    return 0.3 + 0.7 * std::abs((n.x * light.x + n.y * light.y + n.z * light.z) / length);
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
    return names + m_meshNames;
}

int SceneView3D::drawnTriangleCount() const
{
    return static_cast<int>(m_triangles.size());
}

int SceneView3D::outlinedTriangleCount() const
{
    return m_outlinedCount;
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
    m_triangles.clear();
    m_meshNames.clear();
    m_outlinedCount = 0;
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
    // Back to front.
    std::stable_sort(m_triangles.begin(), m_triangles.end(),
                     [](const Triangle& a, const Triangle& b) { return a.depth < b.depth; });
    update();
}

bool SceneView3D::collectMesh(const DisplayItemInterface& item, bool shown)
{
    const auto* mesh = dynamic_cast<const SceneObjectItem*>(&item);
    if (!mesh || !mesh->triangles())
        return false;
    if (!shown)
        return true;
    ++m_drawnCount;
    const bool selected = mesh->isSelected();
    if (selected)
        ++m_selectedCount;
    const QString name = QString::fromStdString(mesh->getDisplayName());
    m_meshNames << name;
    const QColor color = QColor::fromHsv(static_cast<int>(qHash(name) % 360), 60, 220);
    const std::vector<float>& positions = mesh->triangles()->positions;
    const std::vector<std::uint32_t>& indices = mesh->triangles()->indices;
    const std::array<float, 16>& toScene = mesh->sceneTransformation();
    for (std::size_t i = 0; i + 2 < indices.size(); i += 3) {
        if (m_triangles.size() >= MaxPaintedTriangles) {
            ++m_skippedCount;
            break;
        }
        const Point3 a = toView(toScene, &positions[std::size_t(indices[i]) * 3]);
        const Point3 b = toView(toScene, &positions[std::size_t(indices[i + 1]) * 3]);
        const Point3 c = toView(toScene, &positions[std::size_t(indices[i + 2]) * 3]);
        Triangle triangle;
        triangle.corners[0] = project(a.x, a.y, a.z);
        triangle.corners[1] = project(b.x, b.y, b.z);
        triangle.corners[2] = project(c.x, c.y, c.z);
        // The view looks along (-1, -1, -1): nearer is larger x + y + z.
        triangle.depth = (a.x + a.y + a.z + b.x + b.y + b.z + c.x + c.y + c.z) / 3;
        const double light = brightness(a, b, c);
        triangle.color = QColor::fromRgbF(color.redF() * light, color.greenF() * light, color.blueF() * light);
        triangle.selected = selected;
        m_outlinedCount += selected ? 1 : 0;
        m_triangles.push_back(triangle);
    }
    return true;
}

QRectF SceneView3D::drawingArea() const
{
    return QRectF(rect()).adjusted(16, 40, -16, -16);
}

double SceneView3D::fitToView(QPainter& painter, const QRectF& bounds) const
{
    const QRectF area = drawingArea();
    const double scale = std::min(area.width() / bounds.width(), area.height() / bounds.height());
    painter.translate(area.center());
    painter.scale(scale, scale);
    painter.translate(-bounds.center());
    return scale;
}

void SceneView3D::paintTriangles(QPainter& painter) const
{
    QRectF bounds;
    for (const Triangle& triangle : m_triangles)
        bounds |= QPolygonF({triangle.corners[0], triangle.corners[1], triangle.corners[2]}).boundingRect();
    if (bounds.isEmpty())
        return;
    painter.save();
    const double scale = fitToView(painter, bounds);
    const QPen outline(QColor(0xff, 0x8c, 0x00), 1.5 / scale);
    for (const Triangle& triangle : m_triangles) {
        // Filled edges close the hairline gaps between neighbours.
        painter.setPen(triangle.selected ? outline : QPen(triangle.color, 0.5 / scale));
        painter.setBrush(triangle.color);
        painter.drawPolygon(triangle.corners, 3);
    }
    painter.restore();
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
        if (!collectMesh(*entry.item, shown) && isDrawable(display, labelable != nullptr)) {
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

    paintTriangles(painter);

    if (!bounds.isEmpty()) {
        const QRectF area = drawingArea();
        painter.save();
        const double scale = fitToView(painter, bounds);
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
