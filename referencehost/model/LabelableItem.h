#pragma once

#include "DisplayItem.h"

#include <hostcontract/LabelableDisplayItemInterface.h>

namespace Brennvik {

/// A display item that can carry a text label in the 3D view (a measurement
/// point, a plot label).
class BRENNVIK_HOST_EXPORT LabelableItem : public DisplayItem, public LabelableDisplayItemInterface
{
public:
    LabelableItem(std::string displayName, std::string label, bool labelsAllowed);
    ~LabelableItem() override;

    std::string getLabel() const override;
    bool areLabelsAllowed() const override;

    /// Raises properties changed.
    void setLabel(std::string label);
    /// Raises properties changed.
    void setLabelsAllowed(bool allowed);

    std::string typeName() const override;
    std::shared_ptr<DisplayItem> copyWithoutChildren() const override;

private:
    std::string m_label;
    bool m_labelsAllowed;
};

} // namespace Brennvik
