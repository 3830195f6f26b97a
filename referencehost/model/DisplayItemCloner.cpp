#include "DisplayItemCloner.h"

#include "DisplayItem.h"
#include "GeometryModuleItem.h"
#include "LabelableItem.h"

#include <algorithm>
#include <typeinfo>

namespace Brennvik {

namespace {

// Pre-order, with a stack of our own: trees can be a million levels deep.
const DisplayItem* findFirstByName(const DisplayItem& root, const std::string& name)
{
    std::vector<const DisplayItem*> pending{&root};
    while (!pending.empty()) {
        const DisplayItem* item = pending.back();
        pending.pop_back();
        if (item->getDisplayName() == name)
            return item;
        const auto& children = item->children();
        for (auto it = children.rbegin(); it != children.rend(); ++it)
            pending.push_back(it->get());
    }
    return nullptr;
}

} // namespace

DisplayItemCloner::DisplayItemCloner(std::vector<CloneDefect> defects)
{
    m_defects.reserve(defects.size());
    for (auto& defect : defects)
        m_defects.push_back({std::move(defect), nullptr, false});
}

std::shared_ptr<DisplayItem> DisplayItemCloner::cloneTree(const std::shared_ptr<DisplayItem>& root, bool applyDefects)
{
    if (!root)
        return nullptr;
    m_defectsActive = applyDefects;
    for (auto& pending : m_defects)
        pending.target = applyDefects && !pending.applied ? findFirstByName(*root, pending.defect.target) : nullptr;

    // The root itself can be neither dropped nor shared: there is no parent to hold it.
    auto copy = copyNode(*root);
    copyChildren(*root, *copy);
    appendAddedChildren(*root, *copy);

    for (auto& pending : m_defects)
        pending.target = nullptr;
    m_defectsActive = false;
    return copy;
}

void DisplayItemCloner::remapReferences()
{
    for (const auto& copy : m_copies)
        copy->remapReferences(m_map);
    for (const auto& copy : m_geometryEntryDrops) {
        auto* module = dynamic_cast<GeometryModuleItem*>(copy.get());
        const DisplayItemList entries = module->getGeometryDisplayItems();
        if (!entries.empty())
            module->removeGeometryDisplayItem(entries.back().get());
    }
    m_geometryEntryDrops.clear();
}

const DisplayItemCloneMap& DisplayItemCloner::cloneMap() const
{
    return m_map;
}

std::vector<CloneDefect> DisplayItemCloner::unappliedDefects() const
{
    std::vector<CloneDefect> unapplied;
    for (const auto& pending : m_defects) {
        if (!pending.applied)
            unapplied.push_back(pending.defect);
    }
    return unapplied;
}

std::shared_ptr<DisplayItem> DisplayItemCloner::copyNode(const DisplayItem& original)
{
    std::shared_ptr<DisplayItem> copy;
    if (PendingDefect* changeType = defectFor(original, CloneDefect::Kind::ChangeChildType)) {
        copy = copyAsOtherType(original);
        changeType->applied = true;
    } else {
        copy = original.copyWithoutChildren();
    }
    if (PendingDefect* flip = defectFor(original, CloneDefect::Kind::FlipVisibility)) {
        copy->m_visible = !copy->m_visible;
        flip->applied = true;
    }
    if (PendingDefect* change = defectFor(original, CloneDefect::Kind::ChangePropertyValue))
        change->applied = changeProperty(*copy, change->defect);
    if (PendingDefect* dropEntry = defectFor(original, CloneDefect::Kind::DropGeometryEntry)) {
        // The entry can only go after remapping, when the list points into the copy.
        const auto* module = dynamic_cast<const GeometryModuleItem*>(copy.get());
        if (module && !module->getGeometryDisplayItems().empty()) {
            m_geometryEntryDrops.push_back(copy);
            dropEntry->applied = true;
        }
    }

    m_map.add(&original, copy);
    m_copies.push_back(copy);
    return copy;
}

void DisplayItemCloner::copyChildren(const DisplayItem& original, DisplayItem& copy)
{
    // Depth first with a stack of our own (trees can be a million levels
    // deep), in the order of a recursive copy: a child's subtree is complete
    // before its added child and its repeat follow, and before its next sibling.
    struct Level
    {
        const DisplayItem* original;
        DisplayItem* copy;
        std::size_t next = 0;
    };
    std::vector<Level> levels{{&original, &copy}};
    copy.m_children.reserveMore(original.children().size());
    while (!levels.empty()) {
        Level& level = levels.back();
        const auto& children = level.original->children();
        if (level.next == children.size()) {
            const Level done = level;
            levels.pop_back();
            if (!levels.empty())
                finishChild(*done.original, *done.copy, *levels.back().copy);
            continue;
        }
        const auto& child = children[level.next++];
        DisplayItem* parentCopy = level.copy;
        if (auto childCopy = copyChild(child, *parentCopy)) {
            childCopy->m_children.reserveMore(child->children().size());
            levels.push_back({child.get(), childCopy});
        }
    }
}

DisplayItem* DisplayItemCloner::copyChild(const std::shared_ptr<DisplayItem>& child, DisplayItem& parentCopy)
{
    if (PendingDefect* drop = defectFor(*child, CloneDefect::Kind::DropChild)) {
        drop->applied = true;
        recordSubtree(*child, false);
        return nullptr;
    }
    if (PendingDefect* share = defectFor(*child, CloneDefect::Kind::ShareChild)) {
        // The original object goes into the copy's list as it is: its parent and
        // display model stay those of the original tree.
        share->applied = true;
        parentCopy.m_children.append(child);
        recordSubtree(*child, true);
        return nullptr;
    }
    auto childCopy = copyNode(*child);
    childCopy->m_parent = &parentCopy;
    parentCopy.m_children.append(childCopy);
    return childCopy.get();
}

void DisplayItemCloner::finishChild(const DisplayItem& child, DisplayItem& childCopy, DisplayItem& parentCopy)
{
    appendAddedChildren(child, childCopy);
    if (PendingDefect* repeat = defectFor(child, CloneDefect::Kind::RepeatChild)) {
        repeat->applied = true;
        auto again = copyRepeated(child);
        again->m_parent = &parentCopy;
        parentCopy.m_children.append(again);
    }
}

std::shared_ptr<DisplayItem> DisplayItemCloner::copyRepeated(const DisplayItem& original)
{
    // Not recorded in the map: references to the original keep following its first copy.
    // Copies are made in pre-order, as a recursive copy makes them.
    auto copy = original.copyWithoutChildren();
    m_copies.push_back(copy);
    std::vector<std::pair<const DisplayItem*, DisplayItem*>> pending;
    const auto pushChildren = [&pending](const DisplayItem& from, DisplayItem& to) {
        const auto& children = from.children();
        to.m_children.reserveMore(children.size());
        for (auto it = children.rbegin(); it != children.rend(); ++it)
            pending.emplace_back(it->get(), &to);
    };
    pushChildren(original, *copy);
    while (!pending.empty()) {
        const auto [child, parentCopy] = pending.back();
        pending.pop_back();
        auto childCopy = child->copyWithoutChildren();
        m_copies.push_back(childCopy);
        childCopy->m_parent = parentCopy;
        parentCopy->m_children.append(childCopy);
        pushChildren(*child, *childCopy);
    }
    return copy;
}

void DisplayItemCloner::appendAddedChildren(const DisplayItem& original, DisplayItem& copy)
{
    if (PendingDefect* add = defectFor(original, CloneDefect::Kind::AddChild)) {
        auto extra = std::make_shared<DisplayItem>(add->defect.value.empty() ? std::string("Unexpected child")
                                                                             : add->defect.value);
        extra->m_parent = &copy;
        copy.m_children.append(extra);
        add->applied = true;
    }
}

void DisplayItemCloner::recordSubtree(const DisplayItem& original, bool shared)
{
    // A shared subtree is its own counterpart; a dropped one has none. Pre-order.
    std::vector<const DisplayItem*> pending{&original};
    while (!pending.empty()) {
        const DisplayItem* item = pending.back();
        pending.pop_back();
        std::shared_ptr<DisplayItemInterface> counterpart;
        if (shared)
            counterpart = std::const_pointer_cast<DisplayItem>(item->shared_from_this());
        m_map.add(item, counterpart);
        const auto& children = item->children();
        for (auto it = children.rbegin(); it != children.rend(); ++it)
            pending.push_back(it->get());
    }
}

DisplayItemCloner::PendingDefect* DisplayItemCloner::defectFor(const DisplayItem& item, CloneDefect::Kind kind)
{
    if (!m_defectsActive)
        return nullptr;
    const auto it = std::find_if(m_defects.begin(), m_defects.end(), [&item, kind](const PendingDefect& p) {
        return p.target == &item && p.defect.kind == kind && !p.applied;
    });
    return it != m_defects.end() ? &*it : nullptr;
}

std::shared_ptr<DisplayItem> DisplayItemCloner::copyAsOtherType(const DisplayItem& original)
{
    std::shared_ptr<DisplayItem> copy;
    if (typeid(original) == typeid(DisplayItem))
        copy = std::make_shared<LabelableItem>(original.getDisplayName(), std::string(), false);
    else
        copy = std::make_shared<DisplayItem>(original.getDisplayName());
    copy->copyStateFrom(original);
    return copy;
}

bool DisplayItemCloner::changeProperty(DisplayItem& copy, const CloneDefect& defect)
{
    const PropertyList properties = copy.displayProperties();
    auto it = properties.begin();
    if (!defect.property.empty())
        it = std::find_if(properties.begin(), properties.end(),
                          [&defect](const Property& p) { return p.first == defect.property; });
    if (it == properties.end())
        return false;
    const std::string changed = defect.value.empty() ? it->second + " (cloned)" : defect.value;
    if (changed == it->second)
        return false; // the same value would be no defect at all
    // The first property of that name is the one found. Nobody observes a
    // copy that is still being made: no event.
    copy.m_properties.set(PackedProperties::Kind::Display, it->first, changed);
    return true;
}

} // namespace Brennvik
