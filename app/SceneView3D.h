#pragma once

#include <QColor>
#include <QString>
#include <QVector>
#include <QWidget>

#include <memory>
#include <vector>

class QPainter;

namespace Brennvik {

class DisplayItemInterface;
class ViewModelInterface;
class VisitedItems;

/// The colour of a tile whose item names none: steady for a name, and the
/// same whichever Qt the application is built with.
QColor fallbackTileColor(const QString& name);

/// The 3D draw area of the reference application: an isometric sketch of the
/// display model of one view model. Every drawable item (one with a colour or
/// a surface render mode, or a label) is a tile; tiles keep their place when
/// other items are hidden, so hiding and showing read at a glance. Hidden
/// items and items below hidden ones are not drawn; selected ones are outlined.
/// Empty children are left out, and an item that a broken host lists again
/// (in a cycle or in a second place) is drawn once. The meshes of an imported
/// scene are drawn as they are: flat-shaded triangles, back to front, in the
/// same projection, fitted to the view.
class SceneView3D : public QWidget
{
    Q_OBJECT
public:
    explicit SceneView3D(QWidget* parent = nullptr);
    ~SceneView3D() override;

    /// Draws \a viewModel from now on (empty: nothing); \a caption names it
    /// in the corner of the view.
    void setViewModel(std::shared_ptr<ViewModelInterface> viewModel, const QString& caption);
    std::shared_ptr<ViewModelInterface> viewModel() const;

    /// Reads the model again and repaints; the host calls it after every
    /// display or visibility update of the model drawn.
    void refresh();

    /// How many items the last refresh found to draw (visible and drawable).
    int drawnItemCount() const;
    /// How many of them are selected.
    int selectedItemCount() const;
    /// The display names of the drawn items, in drawing order from the root.
    QStringList drawnItemNames() const;
    /// The texts of the plot labels drawn, each at its anchor's place in the view.
    QStringList drawnPlotLabels() const;
    /// How many triangles of the drawn meshes the last refresh found.
    int drawnTriangleCount() const;
    /// How many of them belong to selected meshes (drawn outlined).
    int outlinedTriangleCount() const;

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    struct Tile
    {
        QString name;
        QString label;
        QColor color;
        double x = 0.0;
        double y = 0.0;
        double z = 0.0;
        double size = 1.0;
        double height = 0.0;
        bool selected = false;
        bool point = false;
    };

    struct PlotLabel
    {
        QPointF anchor;
        QString text;
    };

    /// One triangle of a mesh, projected; the depth grows towards the viewer.
    struct Triangle
    {
        QPointF corners[3];
        double depth = 0.0;
        QColor color;
        bool selected = false;
    };

    void collect(const std::shared_ptr<DisplayItemInterface>& item, bool shown, int island, int depth,
                 VisitedItems& visited);
    void collectPlotLabels();
    /// Takes the triangles of \a item when it is a mesh of an imported scene; false when it is none.
    bool collectMesh(const DisplayItemInterface& item, bool shown);
    void paintTriangles(QPainter& painter) const;
    /// The part of the view that drawings are fitted into, below the caption.
    QRectF drawingArea() const;
    /// Maps \a bounds onto the middle of the drawing area, as large as it fits; the scale.
    double fitToView(QPainter& painter, const QRectF& bounds) const;

    std::shared_ptr<ViewModelInterface> m_viewModel;
    QString m_caption;
    QVector<Tile> m_tiles;
    QVector<int> m_islandSlots;
    QVector<PlotLabel> m_plotLabels;
    std::vector<Triangle> m_triangles;
    QStringList m_meshNames;
    int m_outlinedCount = 0;
    int m_drawnCount = 0;
    int m_selectedCount = 0;
    int m_skippedCount = 0;
};

} // namespace Brennvik
