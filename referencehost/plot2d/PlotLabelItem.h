#pragma once

#include <referencehost/model/LabelableItem.h>

#include <hostcontract/PlotLabelDisplayItem.h>

namespace Brennvik {

/// A label in the 3D view that shows a 2D plot, at an anchor point.
class BRENNVIK_HOST_EXPORT PlotLabelItem : public LabelableItem, public PlotLabelDisplayItem
{
public:
    PlotLabelItem(std::string displayName, std::string label, std::shared_ptr<PlotDescription> plotDescription,
                  const Vector<float, 3>& anchorPoint);
    ~PlotLabelItem() override;

    std::string typeName() const override;
    /// Shares the plot description with this label.
    std::shared_ptr<DisplayItem> copyWithoutChildren() const override;

protected:
    /// ("anchor", "x, y, z"), ("plot", title of the plot or "none").
    void appendTypeProperties(PropertyList& displayItemProperties) const override;
};

} // namespace Brennvik
