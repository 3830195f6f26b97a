#pragma once

#include "PlotItem2D.h"

#include <Qt>

#include <string>

namespace Brennvik {

/// The horizontal or vertical axis of a plot, with ticks, numbers and a title.
class BRENNVIK_HOST_EXPORT PlotAxisItem2D : public PlotItem2D
{
public:
    PlotAxisItem2D(std::string displayName, Qt::Orientation orientation, std::string title);
    ~PlotAxisItem2D() override;

    std::string typeName() const override;
    void paint(QPainter& painter, const PlotCanvas& canvas) const override;

    Qt::Orientation orientation() const;
    const std::string& title() const;

protected:
    /// ("orientation", "horizontal" or "vertical"), ("title", ...).
    void appendTypeProperties(PropertyList& displayItemProperties) const override;

private:
    Qt::Orientation m_orientation;
    std::string m_title;
};

} // namespace Brennvik
