#include "DisplayItem.h"

#include <algorithm>
#include <cstdint>
#include <functional>
#include <sstream>
#include <stdexcept>
#include <unordered_set>

namespace Brennvik {

DisplayItem::DisplayItem(std::string displayName)
    : m_displayName(std::move(displayName))
    , m_visible(true)
    , m_selected(false)
    , m_selectionAllowed(true)
    , m_selectable(true)
    , m_resourcesReleased(false)
{
}

DisplayItem::~DisplayItem()
{
    // Forget the observers before the children go: an observer destroyed along
    // with a child can no longer reach this item to unregister.
    m_observers.clear(weak_from_this());
    releaseChildren();
}

// --- DisplayItemInterface -------------------------------------------------

RemoveChildResult DisplayItem::removeChild(std::shared_ptr<DisplayItemInterface> child, bool keepResources)
{
    if (!child)
        return RemoveChildResult::NotAChild;
    const auto self = selfReference();
    if (!detachWithoutEvent(child.get(), keepResources))
        return RemoveChildResult::NotAChild;
    m_observers.notifyItemsRemoved(DisplayItemSet{child});
    return RemoveChildResult::Removed;
}

DisplayItemInterface* DisplayItem::getParent() const
{
    return m_parent;
}

void DisplayItem::setVisible(bool visible)
{
    m_visible = visible;
}

bool DisplayItem::isVisible() const
{
    return m_visible;
}

DisplayItemList DisplayItem::getChildren() const
{
    const ChildSlots::Items& children = m_children.items();
    return DisplayItemList(children.begin(), children.end());
}

void DisplayItem::collectSubtreeToShow(DisplayItemList& items) const
{
    collectPreOrder(items);
}

void DisplayItem::collectSubtree(DisplayItemList& items) const
{
    collectPreOrder(items);
}

std::string DisplayItem::getDisplayName() const
{
    return m_displayName;
}

void DisplayItem::getProperties(PropertyList& businessObjectProperties, PropertyList& displayItemProperties) const
{
    businessObjectProperties.emplace_back("pointer", addressText(this));
    m_properties.appendTo(PackedProperties::Kind::Business, businessObjectProperties);

    displayItemProperties.emplace_back("pointer (DisplayItemInterface)",
                                       addressText(static_cast<const DisplayItemInterface*>(this)));
    displayItemProperties.emplace_back("display item type", typeName());
    appendTypeProperties(displayItemProperties);
    m_properties.appendTo(PackedProperties::Kind::Display, displayItemProperties);
}

DisplayModel* DisplayItem::getDisplayModel() const
{
    return m_displayModel;
}

std::uint64_t DisplayItem::getNumberOfDisplayItems() const
{
    std::uint64_t count = 0;
    forEachInPreOrder([&count](const DisplayItem&) {
        ++count;
        return true;
    });
    return count;
}

std::string DisplayItem::getDescription() const
{
    std::string description = typeName() + " \"" + m_displayName + "\"";
    const std::string detail = descriptionDetail();
    if (!detail.empty())
        description += " [" + detail + "]";
    description += " at " + path();
    return description;
}

bool DisplayItem::isSelectionAllowed() const
{
    return m_selectionAllowed;
}

void DisplayItem::setSelected(bool selected)
{
    m_selected = selected;
}

bool DisplayItem::isSelected() const
{
    return m_selected;
}

bool DisplayItem::isSelectable() const
{
    return m_selectable;
}

void DisplayItem::notifyVisualPropertiesChanged()
{
    const auto self = selfReference();
    ++m_visualNotificationCount;
    m_observers.notifyVisualPropertiesChanged(self);
}

void DisplayItem::addEventObserver(DisplayItemEventObserver* observer)
{
    // weak_from_this is empty while no shared_ptr owns the item; an observer
    // registering through a shared reference always finds it set.
    m_observers.add(observer, weak_from_this());
}

void DisplayItem::removeEventObserver(DisplayItemEventObserver* observer)
{
    m_observers.remove(observer, weak_from_this());
}

// --- Host API -------------------------------------------------------------

std::string DisplayItem::typeName() const
{
    return "DisplayItem";
}

std::shared_ptr<DisplayItem> DisplayItem::copyWithoutChildren() const
{
    auto copy = std::make_shared<DisplayItem>(m_displayName);
    copy->copyStateFrom(*this);
    return copy;
}

void DisplayItem::remapReferences(const DisplayItemCloneMap& /*map*/)
{
}

void DisplayItem::setDisplayName(std::string displayName)
{
    m_displayName = std::move(displayName);
    raisePropertiesChanged();
}

void DisplayItem::appendChild(std::shared_ptr<DisplayItem> child)
{
    checkCanAdopt(child);
    insertChild(childCount(), std::move(child));
}

void DisplayItem::insertChild(std::size_t index, std::shared_ptr<DisplayItem> child)
{
    checkCanAdopt(child);
    if (index > childCount())
        throw std::out_of_range("DisplayItem::insertChild: index beyond the last child");
    const auto self = selfReference();
    if (child->m_parent)
        child->m_parent->removeChild(child, true);
    // Moving a child within this item shortens the list by one; the
    // attachment puts it last then.
    attachWithoutEvent(index, child);
    m_observers.notifyItemsAdded(DisplayItemList{child});
}

void DisplayItem::appendChildren(const std::vector<std::shared_ptr<DisplayItem>>& children)
{
    // A set, not a search of the list so far: hosts append hundreds of
    // thousands of children in one call.
    std::unordered_set<const DisplayItem*> seen;
    seen.reserve(children.size());
    for (const auto& child : children) {
        checkCanAdopt(child);
        if (!seen.insert(child.get()).second)
            throw std::invalid_argument("DisplayItem::appendChildren: the same child twice");
    }
    if (children.empty())
        return;
    const auto self = selfReference();
    for (const auto& child : children) {
        if (child->m_parent)
            child->m_parent->removeChild(child, true);
    }
    m_children.reserveMore(children.size());
    for (const auto& child : children)
        attachWithoutEvent(childCount(), child);
    m_observers.notifyItemsAdded(DisplayItemList(children.begin(), children.end()));
}

std::size_t DisplayItem::removeChildren(const DisplayItemSet& children, bool keepResources)
{
    const auto self = selfReference();
    DisplayItemSet removed;
    for (const auto& child : children) {
        if (child && detachWithoutEvent(child.get(), keepResources))
            removed.insert(child);
    }
    if (!removed.empty())
        m_observers.notifyItemsRemoved(removed);
    return removed.size();
}

std::size_t DisplayItem::childCount() const
{
    return m_children.count();
}

std::shared_ptr<DisplayItem> DisplayItem::childAt(std::size_t index) const
{
    const ChildSlots::Items& children = m_children.items();
    return index < children.size() ? children[index] : nullptr;
}

const std::vector<std::shared_ptr<DisplayItem>>& DisplayItem::children() const
{
    return m_children.items();
}

int DisplayItem::indexOfChild(const DisplayItemInterface* child) const
{
    return m_children.indexOf(child);
}

DisplayItem* DisplayItem::parentItem() const
{
    return m_parent;
}

std::shared_ptr<DisplayItem> DisplayItem::findByDisplayName(const std::string& name)
{
    const DisplayItem* found = nullptr;
    forEachInPreOrder([&found, &name](const DisplayItem& item) {
        if (item.m_displayName != name)
            return true;
        found = &item;
        return false;
    });
    return found ? std::const_pointer_cast<DisplayItem>(found->shared_from_this()) : nullptr;
}

std::string DisplayItem::path() const
{
    std::vector<const DisplayItem*> chain;
    for (const DisplayItem* item = this; item; item = item->m_parent)
        chain.push_back(item);
    std::string text;
    for (auto it = chain.rbegin(); it != chain.rend(); ++it) {
        if (!text.empty())
            text += '/';
        text += (*it)->m_displayName;
    }
    return text;
}

void DisplayItem::setBusinessProperty(const std::string& name, std::string value)
{
    m_properties.set(PackedProperties::Kind::Business, name, value);
    raisePropertiesChanged();
}

void DisplayItem::setDisplayProperty(const std::string& name, std::string value)
{
    m_properties.set(PackedProperties::Kind::Display, name, value);
    raisePropertiesChanged();
}

void DisplayItem::setBusinessProperties(PropertyList properties)
{
    if (properties.empty())
        return;
    m_properties.setAll(PackedProperties::Kind::Business, properties);
    raisePropertiesChanged();
}

void DisplayItem::setDisplayProperties(PropertyList properties)
{
    if (properties.empty())
        return;
    m_properties.setAll(PackedProperties::Kind::Display, properties);
    raisePropertiesChanged();
}

std::optional<std::string> DisplayItem::businessProperty(const std::string& name) const
{
    return m_properties.find(PackedProperties::Kind::Business, name);
}

std::optional<std::string> DisplayItem::displayProperty(const std::string& name) const
{
    return m_properties.find(PackedProperties::Kind::Display, name);
}

PropertyList DisplayItem::businessProperties() const
{
    return m_properties.list(PackedProperties::Kind::Business);
}

PropertyList DisplayItem::displayProperties() const
{
    return m_properties.list(PackedProperties::Kind::Display);
}

void DisplayItem::setSelectionAllowed(bool allowed)
{
    m_selectionAllowed = allowed;
}

void DisplayItem::setSelectable(bool selectable)
{
    m_selectable = selectable;
}

bool DisplayItem::resourcesReleased() const
{
    return m_resourcesReleased;
}

void DisplayItem::notifyPropertiesChanged()
{
    raisePropertiesChanged();
}

int DisplayItem::visualNotificationCount() const
{
    return m_visualNotificationCount;
}

std::size_t DisplayItem::observerCount() const
{
    return m_observers.size();
}

bool DisplayItem::isObservedBy(const DisplayItemEventObserver* observer) const
{
    return m_observers.contains(observer);
}

std::string DisplayItem::addressText(const void* object)
{
    std::ostringstream text;
    text << "0x" << std::hex << reinterpret_cast<std::uintptr_t>(object);
    return text.str();
}

// --- Protected ------------------------------------------------------------

void DisplayItem::appendTypeProperties(PropertyList& /*displayItemProperties*/) const
{
}

std::string DisplayItem::descriptionDetail() const
{
    return {};
}

void DisplayItem::copyStateFrom(const DisplayItem& other)
{
    m_visible = other.m_visible;
    m_selected = other.m_selected;
    m_selectionAllowed = other.m_selectionAllowed;
    m_selectable = other.m_selectable;
    m_properties = other.m_properties;
}

void DisplayItem::raisePropertiesChanged()
{
    const auto self = selfReference();
    m_observers.notifyPropertiesChanged(self);
}

// --- Private --------------------------------------------------------------

void DisplayItem::checkCanAdopt(const std::shared_ptr<DisplayItem>& child) const
{
    if (!child)
        throw std::invalid_argument("DisplayItem: empty child");
    if (isSelfOrAncestorOf(*child, *this))
        throw std::invalid_argument("DisplayItem: an item cannot hold itself or one of its ancestors");
}

bool DisplayItem::isSelfOrAncestorOf(const DisplayItem& candidate, const DisplayItem& item)
{
    // Either walk alone answers: up from the item to its root, or down through
    // the candidate's subtree. Taking one step of each in turn costs twice the
    // shorter one, so adding a leaf below a deep item, or a deep tree below a
    // new root, costs constant time, and building any tree piece by piece
    // costs at most n log n steps in all. Only owned children count, as only
    // parents count on the way up.
    std::vector<std::pair<const DisplayItem*, std::size_t>> below{{&candidate, 0}};
    for (const DisplayItem* above = &item; above && !below.empty(); above = above->m_parent) {
        if (above == &candidate || below.back().first == &item)
            return true;
        const DisplayItem* child = below.back().first->nextOwnedChild(below.back().second);
        if (child)
            below.emplace_back(child, 0);
        else
            below.pop_back();
    }
    return false;
}

const DisplayItem* DisplayItem::nextOwnedChild(std::size_t& slot) const
{
    const ChildSlots::Items& slotList = m_children.slotList();
    while (slot < slotList.size()) {
        const DisplayItem* child = slotList[slot++].get();
        if (child && child->m_parent == this)
            return child;
    }
    return nullptr;
}

void DisplayItem::attachWithoutEvent(std::size_t index, const std::shared_ptr<DisplayItem>& child)
{
    m_children.insert(index, child);
    child->m_parent = this;
    child->setDisplayModelRecursively(m_displayModel);
    child->setResourcesReleasedRecursively(false);
}

std::shared_ptr<DisplayItem> DisplayItem::detachWithoutEvent(const DisplayItemInterface* child, bool keepResources)
{
    const int slot = m_children.slotOf(child);
    if (slot < 0)
        return nullptr;
    std::shared_ptr<DisplayItem> removed = m_children.take(static_cast<std::size_t>(slot));
    // A child shared with another tree keeps its real parent.
    if (removed->m_parent == this) {
        removed->m_parent = nullptr;
        removed->setDisplayModelRecursively(nullptr);
        if (!keepResources)
            removed->setResourcesReleasedRecursively(true);
    }
    return removed;
}

void DisplayItem::setDisplayModelRecursively(DisplayModel* model)
{
    // A child always has its parent's model, so a subtree whose root has the
    // model already has it throughout: attaching or freeing a deep subtree
    // that keeps its model costs nothing.
    forEachOwnedItem([model](DisplayItem& item) {
        if (item.m_displayModel == model)
            return false;
        item.m_displayModel = model;
        return true;
    });
}

void DisplayItem::setResourcesReleasedRecursively(bool released)
{
    // Only a removal releases, and it releases the whole subtree: below an
    // item that holds its resources, all do.
    forEachOwnedItem([released](DisplayItem& item) {
        if (!released && !item.m_resourcesReleased)
            return false;
        item.m_resourcesReleased = released;
        return true;
    });
}

void DisplayItem::forEachOwnedItem(const std::function<bool(DisplayItem&)>& visit)
{
    std::vector<DisplayItem*> pending{this};
    while (!pending.empty()) {
        DisplayItem* item = pending.back();
        pending.pop_back();
        if (!visit(*item))
            continue;
        for (const auto& child : item->m_children.slotList()) {
            if (child && child->m_parent == item)
                pending.push_back(child.get());
        }
    }
}

void DisplayItem::forEachInPreOrder(const std::function<bool(const DisplayItem&)>& visit) const
{
    std::vector<const DisplayItem*> pending{this};
    while (!pending.empty()) {
        const DisplayItem* item = pending.back();
        pending.pop_back();
        if (!visit(*item))
            return;
        const ChildSlots::Items& children = item->m_children.items();
        for (auto it = children.rbegin(); it != children.rend(); ++it)
            pending.push_back(it->get());
    }
}

void DisplayItem::collectPreOrder(DisplayItemList& items) const
{
    // const_pointer_cast: the list hands out the same shared items getChildren does.
    forEachInPreOrder([&items](const DisplayItem& item) {
        items.push_back(std::const_pointer_cast<DisplayItem>(item.shared_from_this()));
        return true;
    });
}

void DisplayItem::releaseChildren()
{
    // Children that die with this item give their own children up before
    // they go, so no destructor below this one has any left to free: freeing
    // a deep chain takes no deeper stack than freeing one item.
    std::vector<std::shared_ptr<DisplayItem>> pending;
    takeChildren(pending);
    while (!pending.empty()) {
        std::shared_ptr<DisplayItem> child = std::move(pending.back());
        pending.pop_back();
        if (child.use_count() == 1)
            child->takeChildren(pending);
    }
}

void DisplayItem::takeChildren(std::vector<std::shared_ptr<DisplayItem>>& pending)
{
    ChildSlots::Items taken = m_children.takeAll();
    for (auto it = taken.rbegin(); it != taken.rend(); ++it) {
        if (!*it)
            continue;
        // Children held elsewhere outlive this item, detached.
        if ((*it)->m_parent == this) {
            (*it)->m_parent = nullptr;
            (*it)->setDisplayModelRecursively(nullptr);
        }
        pending.push_back(std::move(*it));
    }
}

std::shared_ptr<DisplayItemInterface> DisplayItem::selfReference()
{
    // Empty when no shared_ptr owns the item (it cannot then be registered to,
    // so nobody receives the event anyway).
    return weak_from_this().lock();
}

} // namespace Brennvik
