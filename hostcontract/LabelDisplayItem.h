#pragma once

#include "DisplayItemInterface.h"
#include "Vector.h"

namespace Brennvik {

/// A display item shown as a label in the 3D view, at an anchor point.
class BRENNVIK_HOST_EXPORT LabelDisplayItem : public virtual DisplayItemInterface
{
public:
    explicit LabelDisplayItem(const Vector<float, 3>& anchorPoint = Vector<float, 3>());
    ~LabelDisplayItem() override;

    /// Where the label is drawn, in world coordinates.
    const Vector<float, 3>& getAnchorPointForDisplay() const;
    void setAnchorPoint(const Vector<float, 3>& anchorPoint);

private:
    Vector<float, 3> m_anchorPoint;
};

} // namespace Brennvik
