#pragma once

#include "PlotItem2D.h"

namespace Brennvik {

/// The legend of a plot: one entry (colour and name) per drawn curve, in
/// the plot's top right corner.
class BRENNVIK_HOST_EXPORT PlotLegendItem2D : public PlotItem2D
{
public:
    explicit PlotLegendItem2D(std::string displayName);
    ~PlotLegendItem2D() override;

    std::string typeName() const override;
    void paint(QPainter& painter, const PlotCanvas& canvas) const override;
};

} // namespace Brennvik
