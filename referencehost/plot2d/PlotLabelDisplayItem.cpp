#include <hostcontract/PlotDescription.h>
#include <hostcontract/PlotLabelDisplayItem.h>

namespace Brennvik {

PlotLabelDisplayItem::PlotLabelDisplayItem(std::shared_ptr<PlotDescription> plotDescription,
                                           const Vector<float, 3>& anchorPoint)
    : LabelDisplayItem(anchorPoint)
    , m_plotDescription(std::move(plotDescription))
{
}

PlotLabelDisplayItem::~PlotLabelDisplayItem() = default;

PlotDescription* PlotLabelDisplayItem::getPlotDescription() const
{
    return m_plotDescription.get();
}

std::shared_ptr<PlotDescription> PlotLabelDisplayItem::plotDescription() const
{
    return m_plotDescription;
}

void PlotLabelDisplayItem::setPlotDescription(std::shared_ptr<PlotDescription> plotDescription)
{
    m_plotDescription = std::move(plotDescription);
}

} // namespace Brennvik
