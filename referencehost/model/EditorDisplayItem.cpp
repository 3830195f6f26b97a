#include <hostcontract/EditorDisplayItem.h>

#include <stdexcept>

namespace Brennvik {

EditorDisplayItem::EditorDisplayItem(std::string displayName, EditorDisplayUpdateViewsInterface* viewUpdater)
    : m_displayName(std::move(displayName))
    , m_viewUpdater(viewUpdater)
{
    if (!m_viewUpdater)
        throw std::invalid_argument("EditorDisplayItem needs a view updater");
}

EditorDisplayItem::~EditorDisplayItem() = default;

bool EditorDisplayItem::isSelectable() const
{
    return m_selectable;
}

void EditorDisplayItem::setSelectable(bool selectable)
{
    m_selectable = selectable;
}

bool EditorDisplayItem::isSelected() const
{
    return m_selected;
}

void EditorDisplayItem::setIsSelected(bool selected)
{
    // No view refresh here: whoever changes a primitive refreshes its views once
    // through getViewUpdater, after all its changes.
    m_selected = selected;
}

bool EditorDisplayItem::isVisible() const
{
    return m_visible;
}

void EditorDisplayItem::setIsVisible(bool visible)
{
    m_visible = visible;
}

EditorDisplayUpdateViewsInterface* EditorDisplayItem::getViewUpdater() const
{
    return m_viewUpdater;
}

std::string EditorDisplayItem::getDisplayName() const
{
    return m_displayName;
}

void EditorDisplayItem::getProperties(PropertyList& properties) const
{
    properties.insert(properties.end(), m_properties.begin(), m_properties.end());
}

void EditorDisplayItem::setProperties(PropertyList properties)
{
    m_properties = std::move(properties);
}

} // namespace Brennvik
