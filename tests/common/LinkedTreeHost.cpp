#include "LinkedTreeHost.h"

#include <hostcontract/DisplayItemEventObserver.h>

#include <algorithm>
#include <sstream>
#include <unordered_map>

namespace Brennvik::Test {

LinkedItem::LinkedItem(std::string name)
    : m_name(std::move(name))
{
}

LinkedItem::~LinkedItem()
{
    // Children that nobody else holds would otherwise be freed inside this
    // destructor, one nested destructor per level of a chain.
    std::vector<std::shared_ptr<LinkedItem>> pending = std::move(m_owned);
    m_entries.clear();
    while (!pending.empty()) {
        std::shared_ptr<LinkedItem> item = std::move(pending.back());
        pending.pop_back();
        item->m_parent = nullptr;
        if (item.use_count() == 1) {
            for (auto& child : item->m_owned)
                pending.push_back(std::move(child));
            item->m_owned.clear();
            item->m_entries.clear();
        }
    }
}

void LinkedItem::attachTo(LinkedItem* parent)
{
    m_parent = parent;
    m_displayModel = parent ? parent->m_displayModel : nullptr;
}

void LinkedItem::appendChild(const std::shared_ptr<LinkedItem>& child)
{
    child->attachTo(this);
    m_entries.push_back({child, {}});
    m_owned.push_back(child);
    const DisplayItemList added{child};
    const auto self = shared_from_this();
    for (DisplayItemEventObserver* observer : std::vector<DisplayItemEventObserver*>(m_observers))
        observer->onDisplayItemsAddedEvent(added);
}

void LinkedItem::appendLink(const std::shared_ptr<LinkedItem>& target)
{
    m_entries.push_back({nullptr, target});
}

void LinkedItem::appendEmpty()
{
    m_entries.push_back({nullptr, {}});
}

RemoveChildResult LinkedItem::removeChild(std::shared_ptr<DisplayItemInterface> child, bool /*keepResources*/)
{
    const auto owned
        = std::find_if(m_owned.begin(), m_owned.end(), [&child](const auto& candidate) { return candidate == child; });
    if (!child || owned == m_owned.end())
        return RemoveChildResult::NotAChild;
    const std::shared_ptr<LinkedItem> removed = *owned;
    m_owned.erase(owned);
    m_entries.erase(std::find_if(m_entries.begin(), m_entries.end(),
                                 [&removed](const Entry& entry) { return entry.owned == removed; }));
    removed->attachTo(nullptr);
    const DisplayItemSet items{removed};
    const auto self = shared_from_this();
    for (DisplayItemEventObserver* observer : std::vector<DisplayItemEventObserver*>(m_observers))
        observer->onDisplayItemsRemovedEvent(items);
    return RemoveChildResult::Removed;
}

DisplayItemList LinkedItem::getChildren() const
{
    DisplayItemList children;
    children.reserve(m_entries.size());
    for (const Entry& entry : m_entries)
        children.push_back(entry.owned ? entry.owned : entry.link.lock());
    return children;
}

void LinkedItem::collectSubtreeToShow(DisplayItemList& items) const
{
    collectSubtree(items);
}

void LinkedItem::collectSubtree(DisplayItemList& items) const
{
    for (const auto& item : ownedPreOrder(std::const_pointer_cast<LinkedItem>(shared_from_this())))
        items.push_back(item);
}

void LinkedItem::getProperties(PropertyList& businessObjectProperties, PropertyList& displayItemProperties) const
{
    std::ostringstream address;
    address << static_cast<const void*>(this);
    businessObjectProperties.emplace_back("pointer", address.str());
    businessObjectProperties.emplace_back("name", m_name);
    displayItemProperties.emplace_back("display item type", "LinkedItem");
}

std::uint64_t LinkedItem::getNumberOfDisplayItems() const
{
    return ownedPreOrder(std::const_pointer_cast<LinkedItem>(shared_from_this())).size();
}

void LinkedItem::notifyVisualPropertiesChanged()
{
    const auto self = shared_from_this();
    for (DisplayItemEventObserver* observer : std::vector<DisplayItemEventObserver*>(m_observers))
        observer->onVisualPropertiesChangedEvent(self);
}

void LinkedItem::addEventObserver(DisplayItemEventObserver* observer)
{
    if (std::find(m_observers.begin(), m_observers.end(), observer) == m_observers.end())
        m_observers.push_back(observer);
}

void LinkedItem::removeEventObserver(DisplayItemEventObserver* observer)
{
    m_observers.erase(std::remove(m_observers.begin(), m_observers.end(), observer), m_observers.end());
}

LinkedViewModel::LinkedViewModel(std::shared_ptr<LinkedItem> root)
    : m_displayModel(std::make_unique<LinkedDisplayModel>())
{
    m_displayModel->m_root = std::move(root);
    for (const auto& item : ownedPreOrder(m_displayModel->m_root))
        item->m_displayModel = m_displayModel.get();
}

LinkedViewModel::~LinkedViewModel()
{
    releaseOwnedTree(m_displayModel->m_root);
}

std::shared_ptr<ViewModelInterface> LinkedViewModel::cloneViewModel(bool /*shareGeometry*/) const
{
    const std::vector<std::shared_ptr<LinkedItem>> originals = ownedPreOrder(root());
    std::unordered_map<const LinkedItem*, std::shared_ptr<LinkedItem>> copies;
    for (const auto& original : originals) {
        auto copy = std::make_shared<LinkedItem>(original->m_name);
        copy->m_visible = original->m_visible;
        copy->m_selected = original->m_selected;
        copies.emplace(original.get(), std::move(copy));
    }
    for (const auto& original : originals) {
        LinkedItem& copy = *copies.at(original.get());
        for (const LinkedItem::Entry& entry : original->m_entries) {
            if (entry.owned) {
                copy.appendChild(copies.at(entry.owned.get()));
            } else if (const auto target = entry.link.lock()) {
                const auto mapped = copies.find(target.get());
                copy.appendLink(mapped != copies.end() ? mapped->second : target);
            } else {
                copy.appendEmpty();
            }
        }
    }
    return std::make_shared<LinkedViewModel>(originals.empty() ? nullptr : copies.at(originals.front().get()));
}

std::shared_ptr<LinkedViewModel> makeChain(int depth)
{
    if (depth <= 0)
        return std::make_shared<LinkedViewModel>(nullptr);
    auto root = std::make_shared<LinkedItem>("item 0");
    LinkedItem* last = root.get();
    for (int i = 1; i < depth; ++i) {
        auto next = std::make_shared<LinkedItem>("item " + std::to_string(i));
        last->appendChild(next);
        last = next.get();
    }
    return std::make_shared<LinkedViewModel>(root);
}

std::vector<std::shared_ptr<LinkedItem>> ownedPreOrder(const std::shared_ptr<LinkedItem>& root)
{
    std::vector<std::shared_ptr<LinkedItem>> items;
    if (!root)
        return items;
    std::vector<std::shared_ptr<LinkedItem>> pending{root};
    while (!pending.empty()) {
        std::shared_ptr<LinkedItem> item = std::move(pending.back());
        pending.pop_back();
        const auto& children = item->ownedChildren();
        pending.insert(pending.end(), children.rbegin(), children.rend());
        items.push_back(std::move(item));
    }
    return items;
}

void releaseOwnedTree(const std::shared_ptr<LinkedItem>& root)
{
    std::vector<std::shared_ptr<LinkedItem>> items = ownedPreOrder(root);
    // Deepest first: each item is freed when it no longer has children.
    while (!items.empty()) {
        items.back()->m_entries.clear();
        items.back()->m_owned.clear();
        items.pop_back();
    }
}

} // namespace Brennvik::Test
