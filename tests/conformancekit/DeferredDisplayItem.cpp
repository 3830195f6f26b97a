#include "DeferredDisplayItem.h"

#include <hostcontract/DisplayItemEventObserver.h>

#include <QCoreApplication>
#include <QMetaObject>

#include <algorithm>

namespace Brennvik {

DeferredDisplayItem::DeferredDisplayItem(std::string name)
    : m_name(std::move(name))
{
}

DeferredDisplayItem::~DeferredDisplayItem()
{
    for (const auto& child : m_children)
        child->m_parent = nullptr;
}

RemoveChildResult DeferredDisplayItem::removeChild(std::shared_ptr<DisplayItemInterface> child, bool /*keepResources*/)
{
    const auto it = std::find_if(m_children.begin(), m_children.end(),
                                 [&child](const auto& c) { return child && c.get() == child.get(); });
    if (it == m_children.end())
        return RemoveChildResult::NotAChild;
    const std::shared_ptr<DeferredDisplayItem> removed = *it;
    m_children.erase(it);
    removed->m_parent = nullptr;
    const DisplayItemSet items{removed};
    post([items](DisplayItemEventObserver& observer) { observer.onDisplayItemsRemovedEvent(items); });
    return RemoveChildResult::Removed;
}

DisplayItemInterface* DeferredDisplayItem::getParent() const
{
    return m_parent;
}

void DeferredDisplayItem::setVisible(bool visible)
{
    m_visible = visible;
}

bool DeferredDisplayItem::isVisible() const
{
    return m_visible;
}

DisplayItemList DeferredDisplayItem::getChildren() const
{
    return DisplayItemList(m_children.begin(), m_children.end());
}

void DeferredDisplayItem::collectSubtreeToShow(DisplayItemList& items) const
{
    collectSubtree(items);
}

void DeferredDisplayItem::collectSubtree(DisplayItemList& items) const
{
    items.push_back(std::const_pointer_cast<DeferredDisplayItem>(shared_from_this()));
    for (const auto& child : m_children)
        child->collectSubtree(items);
}

std::string DeferredDisplayItem::getDisplayName() const
{
    return m_name;
}

void DeferredDisplayItem::getProperties(PropertyList& businessObjectProperties,
                                        PropertyList& displayItemProperties) const
{
    businessObjectProperties.insert(businessObjectProperties.end(), m_properties.begin(), m_properties.end());
    displayItemProperties.emplace_back("display item type", "DeferredDisplayItem");
}

DisplayModel* DeferredDisplayItem::getDisplayModel() const
{
    return nullptr;
}

std::uint64_t DeferredDisplayItem::getNumberOfDisplayItems() const
{
    std::uint64_t count = 1;
    for (const auto& child : m_children)
        count += child->getNumberOfDisplayItems();
    return count;
}

std::string DeferredDisplayItem::getDescription() const
{
    return "DeferredDisplayItem \"" + m_name + "\"";
}

bool DeferredDisplayItem::isSelectionAllowed() const
{
    return true;
}

void DeferredDisplayItem::setSelected(bool selected)
{
    m_selected = selected;
}

bool DeferredDisplayItem::isSelected() const
{
    return m_selected;
}

bool DeferredDisplayItem::isSelectable() const
{
    return true;
}

void DeferredDisplayItem::notifyVisualPropertiesChanged()
{
    const std::weak_ptr<DeferredDisplayItem> self = weak_from_this();
    post([self](DisplayItemEventObserver& observer) {
        if (const auto item = self.lock())
            observer.onVisualPropertiesChangedEvent(item);
    });
}

void DeferredDisplayItem::addEventObserver(DisplayItemEventObserver* observer)
{
    if (observer && std::find(m_observers.begin(), m_observers.end(), observer) == m_observers.end())
        m_observers.push_back(observer);
}

void DeferredDisplayItem::removeEventObserver(DisplayItemEventObserver* observer)
{
    m_observers.erase(std::remove(m_observers.begin(), m_observers.end(), observer), m_observers.end());
}

void DeferredDisplayItem::appendChild(const std::shared_ptr<DeferredDisplayItem>& child)
{
    if (child->m_parent)
        child->m_parent->removeChild(child, true);
    m_children.push_back(child);
    child->m_parent = this;
    const DisplayItemList items{child};
    post([items](DisplayItemEventObserver& observer) { observer.onDisplayItemsAddedEvent(items); });
}

void DeferredDisplayItem::setProperty(const std::string& name, const std::string& value)
{
    const auto it = std::find_if(m_properties.begin(), m_properties.end(),
                                 [&name](const Property& p) { return p.first == name; });
    if (it != m_properties.end())
        it->second = value;
    else
        m_properties.emplace_back(name, value);
    const std::weak_ptr<DeferredDisplayItem> self = weak_from_this();
    post([self](DisplayItemEventObserver& observer) {
        if (const auto item = self.lock())
            observer.onPropertiesChangedEvent(item);
    });
}

std::shared_ptr<DeferredDisplayItem> DeferredDisplayItem::deepCopy() const
{
    auto copy = std::make_shared<DeferredDisplayItem>(m_name);
    copy->m_properties = m_properties;
    copy->m_visible = m_visible;
    copy->m_selected = m_selected;
    for (const auto& child : m_children) {
        auto childCopy = child->deepCopy();
        childCopy->m_parent = copy.get();
        copy->m_children.push_back(std::move(childCopy));
    }
    return copy;
}

void DeferredDisplayItem::post(std::function<void(DisplayItemEventObserver&)> event)
{
    // The defect under test: the event waits for the event loop.
    const std::weak_ptr<DeferredDisplayItem> self = weak_from_this();
    QMetaObject::invokeMethod(
        QCoreApplication::instance(),
        [self, event] {
            const auto item = self.lock();
            if (!item)
                return;
            const std::vector<DisplayItemEventObserver*> observers = item->m_observers;
            for (DisplayItemEventObserver* observer : observers) {
                if (std::find(item->m_observers.begin(), item->m_observers.end(), observer) != item->m_observers.end())
                    event(*observer);
            }
        },
        Qt::QueuedConnection);
}

} // namespace Brennvik
