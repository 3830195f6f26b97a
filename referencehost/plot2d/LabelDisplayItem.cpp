#include <hostcontract/LabelDisplayItem.h>

#include <referencehost/model/HostCallLog.h>

namespace Brennvik {

LabelDisplayItem::LabelDisplayItem(const Vector<float, 3>& anchorPoint)
    : m_anchorPoint(anchorPoint)
{
}

LabelDisplayItem::~LabelDisplayItem() = default;

const Vector<float, 3>& LabelDisplayItem::getAnchorPointForDisplay() const
{
    HostCallLog::note("getAnchorPointForDisplay");
    return m_anchorPoint;
}

void LabelDisplayItem::setAnchorPoint(const Vector<float, 3>& anchorPoint)
{
    m_anchorPoint = anchorPoint;
}

} // namespace Brennvik
