#include "LabelableItem.h"

namespace Brennvik {

LabelableItem::LabelableItem(std::string displayName, std::string label, bool labelsAllowed)
    : DisplayItem(std::move(displayName))
    , m_label(std::move(label))
    , m_labelsAllowed(labelsAllowed)
{
}

LabelableItem::~LabelableItem() = default;

std::string LabelableItem::getLabel() const
{
    return m_label;
}

bool LabelableItem::areLabelsAllowed() const
{
    return m_labelsAllowed;
}

void LabelableItem::setLabel(std::string label)
{
    m_label = std::move(label);
    raisePropertiesChanged();
}

void LabelableItem::setLabelsAllowed(bool allowed)
{
    m_labelsAllowed = allowed;
    raisePropertiesChanged();
}

std::string LabelableItem::typeName() const
{
    return "LabelableItem";
}

std::shared_ptr<DisplayItem> LabelableItem::copyWithoutChildren() const
{
    auto copy = std::make_shared<LabelableItem>(getDisplayName(), m_label, m_labelsAllowed);
    copy->copyStateFrom(*this);
    return copy;
}

} // namespace Brennvik
