#pragma once

#include "LabelDisplayItem.h"

#include <memory>

namespace Brennvik {

class PlotDescription;

/// A label in the 3D view that shows a 2D plot.
class BRENNVIK_HOST_EXPORT PlotLabelDisplayItem : public LabelDisplayItem
{
public:
    PlotLabelDisplayItem(std::shared_ptr<PlotDescription> plotDescription, const Vector<float, 3>& anchorPoint);
    ~PlotLabelDisplayItem() override;

    /// May be null.
    PlotDescription* getPlotDescription() const;
    /// Shared with the label; may be empty.
    std::shared_ptr<PlotDescription> plotDescription() const;
    void setPlotDescription(std::shared_ptr<PlotDescription> plotDescription);

private:
    std::shared_ptr<PlotDescription> m_plotDescription;
};

} // namespace Brennvik
