#include <hostcontract/DisplayItem2D.h>
#include <hostcontract/DisplayItem2DObserver.h>

#include <algorithm>
#include <stdexcept>
#include <utility>
#include <vector>

namespace Brennvik {

DisplayItem2D::DisplayItem2D(std::string displayName)
    : m_displayName(std::move(displayName))
{
}

DisplayItem2D::~DisplayItem2D()
{
    // Observers hold us weakly; their references have expired by now.
    // Children that die with this item give their own children up first, so
    // that freeing a deep chain takes no deeper stack than freeing one item.
    std::vector<std::shared_ptr<DisplayItem2D>> pending;
    takeChildren(pending);
    while (!pending.empty()) {
        std::shared_ptr<DisplayItem2D> child = std::move(pending.back());
        pending.pop_back();
        if (child.use_count() == 1)
            child->takeChildren(pending);
    }
}

void DisplayItem2D::takeChildren(std::vector<std::shared_ptr<DisplayItem2D>>& pending)
{
    for (auto& child : m_children) {
        child->m_parent = nullptr;
        pending.push_back(std::move(child));
    }
    m_children.clear();
}

std::string DisplayItem2D::getDisplayName() const
{
    return m_displayName;
}

void DisplayItem2D::getProperties(PropertyList& businessObjectProperties, PropertyList& displayItemProperties) const
{
    businessObjectProperties.insert(businessObjectProperties.end(), m_businessProperties.begin(),
                                    m_businessProperties.end());
    appendTypeProperties(displayItemProperties);
    displayItemProperties.insert(displayItemProperties.end(), m_displayProperties.begin(), m_displayProperties.end());
}

std::string DisplayItem2D::typeName() const
{
    return "DisplayItem2D";
}

const std::vector<std::shared_ptr<DisplayItem2D>>& DisplayItem2D::getChildren() const
{
    return m_children;
}

DisplayItem2D::Visibility DisplayItem2D::getVisibility() const
{
    return m_visibility;
}

void DisplayItem2D::setVisibility(Visibility visibility)
{
    if (visibility == m_visibility)
        return;
    m_visibility = visibility;
    dispatch([](DisplayItem2DObserver& observer) { observer.onDisplayItemModified(); });
}

bool DisplayItem2D::isDrawn() const
{
    for (const DisplayItem2D* item = this; item; item = item->m_parent) {
        if (item->m_visibility != Visible)
            return false;
    }
    return true;
}

bool DisplayItem2D::isInDataRange() const
{
    for (const DisplayItem2D* item = this; item; item = item->m_parent) {
        if (item->m_visibility == Excluded)
            return false;
    }
    return true;
}

void DisplayItem2D::appendChild(std::shared_ptr<DisplayItem2D> child)
{
    checkCanAdopt(child);
    if (child->m_parent)
        child->m_parent->removeChild(child);
    insertChild(m_children.size(), std::move(child));
}

void DisplayItem2D::insertChild(std::size_t index, std::shared_ptr<DisplayItem2D> child)
{
    checkCanAdopt(child);
    if (child->m_parent)
        child->m_parent->removeChild(child);
    if (index > m_children.size())
        throw std::out_of_range("DisplayItem2D::insertChild: index beyond the last child");
    child->m_parent = this;
    m_children.insert(m_children.begin() + std::ptrdiff_t(index), child);
    dispatch([this, &child](DisplayItem2DObserver& observer) { observer.onChildAdded(this, child); });
}

bool DisplayItem2D::removeChild(const std::shared_ptr<DisplayItem2D>& child)
{
    const auto it = std::find(m_children.begin(), m_children.end(), child);
    if (!child || it == m_children.end())
        return false;
    // Held here so that the event can still hand it out.
    const std::shared_ptr<DisplayItem2D> removed = *it;
    m_children.erase(it);
    removed->m_parent = nullptr;
    dispatch([this, &removed](DisplayItem2DObserver& observer) { observer.onChildRemoved(this, removed); });
    return true;
}

DisplayItem2D* DisplayItem2D::getParent() const
{
    return m_parent;
}

void DisplayItem2D::setDisplayName(std::string displayName)
{
    m_displayName = std::move(displayName);
    notifyModified();
}

void DisplayItem2D::setBusinessProperty(const std::string& name, std::string value)
{
    setProperty(m_businessProperties, name, std::move(value));
    notifyModified();
}

void DisplayItem2D::setDisplayProperty(const std::string& name, std::string value)
{
    setProperty(m_displayProperties, name, std::move(value));
    notifyModified();
}

void DisplayItem2D::notifyModified()
{
    dispatch([](DisplayItem2DObserver& observer) { observer.onDisplayItemModified(); });
}

std::size_t DisplayItem2D::observerCount() const
{
    return m_observers.size();
}

bool DisplayItem2D::isObservedBy(const DisplayItem2DObserver* observer) const
{
    return std::any_of(m_observers.begin(), m_observers.end(),
                       [observer](const Registration& registration) { return registration.observer == observer; });
}

void DisplayItem2D::appendTypeProperties(PropertyList&) const
{
}

void DisplayItem2D::addObserver(DisplayItem2DObserver* observer)
{
    if (!observer || isObservedBy(observer))
        return;
    m_observers.push_back({observer, m_nextSerial++});
}

void DisplayItem2D::removeObserver(DisplayItem2DObserver* observer)
{
    m_observers.erase(
        std::remove_if(m_observers.begin(), m_observers.end(),
                       [observer](const Registration& registration) { return registration.observer == observer; }),
        m_observers.end());
}

template<typename Event>
void DisplayItem2D::dispatch(const Event& event)
{
    // An observer may drop the last reference to this item during its event.
    const std::shared_ptr<DisplayItem2D> keepAlive = weak_from_this().lock();
    // Those registered when the event starts, as long as they stay registered:
    // the serial tells a destroyed observer from a new one at the same address.
    const std::vector<Registration> snapshot = m_observers;
    for (const Registration& registration : snapshot) {
        const bool stillRegistered
            = std::any_of(m_observers.begin(), m_observers.end(), [&registration](const Registration& current) {
                  return current.observer == registration.observer && current.serial == registration.serial;
              });
        if (stillRegistered)
            event(*registration.observer);
    }
}

void DisplayItem2D::checkCanAdopt(const std::shared_ptr<DisplayItem2D>& child) const
{
    if (!child)
        throw std::invalid_argument("DisplayItem2D: empty child");
    if (isSelfOrAncestorOf(*child, *this))
        throw std::invalid_argument("DisplayItem2D: an item cannot hold itself or an ancestor");
}

bool DisplayItem2D::isSelfOrAncestorOf(const DisplayItem2D& candidate, const DisplayItem2D& item)
{
    // One step up from the item and one step down through the candidate's
    // subtree in turn: either walk alone answers, and the shorter one ends
    // it, so adding a leaf below a deep item costs constant time.
    std::vector<std::pair<const DisplayItem2D*, std::size_t>> below{{&candidate, 0}};
    for (const DisplayItem2D* above = &item; above && !below.empty(); above = above->m_parent) {
        if (above == &candidate || below.back().first == &item)
            return true;
        const DisplayItem2D* parent = below.back().first;
        const std::size_t next = below.back().second++;
        if (next < parent->m_children.size())
            below.emplace_back(parent->m_children[next].get(), 0);
        else
            below.pop_back();
    }
    return false;
}

void DisplayItem2D::setProperty(PropertyList& list, const std::string& name, std::string value)
{
    const auto it
        = std::find_if(list.begin(), list.end(), [&name](const Property& property) { return property.first == name; });
    if (it != list.end())
        it->second = std::move(value);
    else
        list.emplace_back(name, std::move(value));
}

} // namespace Brennvik
