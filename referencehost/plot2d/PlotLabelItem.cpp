#include "PlotLabelItem.h"

#include <hostcontract/PlotDescription.h>

#include <sstream>

namespace Brennvik {

PlotLabelItem::PlotLabelItem(std::string displayName, std::string label,
                             std::shared_ptr<PlotDescription> plotDescription, const Vector<float, 3>& anchorPoint)
    : LabelableItem(std::move(displayName), std::move(label), true)
    , PlotLabelDisplayItem(std::move(plotDescription), anchorPoint)
{
}

PlotLabelItem::~PlotLabelItem() = default;

std::string PlotLabelItem::typeName() const
{
    return "PlotLabelItem";
}

std::shared_ptr<DisplayItem> PlotLabelItem::copyWithoutChildren() const
{
    auto copy
        = std::make_shared<PlotLabelItem>(getDisplayName(), getLabel(), plotDescription(), getAnchorPointForDisplay());
    copy->setLabelsAllowed(areLabelsAllowed());
    copy->copyStateFrom(*this);
    return copy;
}

void PlotLabelItem::appendTypeProperties(PropertyList& displayItemProperties) const
{
    LabelableItem::appendTypeProperties(displayItemProperties);
    const Vector<float, 3>& anchor = getAnchorPointForDisplay();
    std::ostringstream text;
    text << anchor.x() << ", " << anchor.y() << ", " << anchor.z();
    displayItemProperties.emplace_back("anchor", text.str());
    const PlotDescription* description = getPlotDescription();
    displayItemProperties.emplace_back("plot", description ? description->getTitle() : std::string("none"));
}

} // namespace Brennvik
