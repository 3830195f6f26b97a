#include "ReactingHost.h"

#include <debugmenucontent/treewidgets/DisplayItemTreeWidgetItem.h>

#include <referencehost/model/SceneDisplayModel.h>

#include <QTreeWidget>
#include <QTreeWidgetItemIterator>

#include <string>
#include <utility>
#include <vector>

namespace Brennvik::Test {

namespace {

std::shared_ptr<DisplayItem> selfOf(DisplayItem* item)
{
    return item ? item->shared_from_this() : nullptr;
}

} // namespace

QList<QPair<const char*, HostReaction>> allHostReactions()
{
    return {
        {"removes the item", HostReaction::RemoveItem},
        {"removes its parent", HostReaction::RemoveParent},
        {"removes the whole branch", HostReaction::RemoveBranch},
        {"removes its children", HostReaction::RemoveChildren},
        {"adds children", HostReaction::AddChildren},
        {"replaces the root", HostReaction::ReplaceRoot},
    };
}

void applyHostReaction(HostReaction reaction, const std::shared_ptr<DisplayItem>& item, SceneDisplayModel& model)
{
    if (!item)
        return;
    switch (reaction) {
    case HostReaction::RemoveItem:
        if (DisplayItem* parent = item->parentItem())
            parent->removeChild(item, false);
        break;
    case HostReaction::RemoveParent:
        if (const std::shared_ptr<DisplayItem> parent = selfOf(item->parentItem())) {
            if (DisplayItem* grandparent = parent->parentItem())
                grandparent->removeChild(parent, false);
        }
        break;
    case HostReaction::RemoveBranch: {
        std::shared_ptr<DisplayItem> branch = item;
        while (branch->parentItem() && branch->parentItem()->parentItem())
            branch = selfOf(branch->parentItem());
        if (DisplayItem* root = branch->parentItem())
            root->removeChild(branch, false);
        break;
    }
    case HostReaction::RemoveChildren: {
        const DisplayItemList children = item->getChildren();
        item->removeChildren(DisplayItemSet(children.begin(), children.end()));
        break;
    }
    case HostReaction::AddChildren:
        item->appendChild(std::make_shared<DisplayItem>("added 1"));
        item->appendChild(std::make_shared<DisplayItem>("added 2"));
        break;
    case HostReaction::ReplaceRoot: {
        auto root = std::make_shared<DisplayItem>("new root");
        root->appendChild(std::make_shared<DisplayItem>("new child"));
        model.setRootDisplayItem(root);
        break;
    }
    }
}

ReactingObserver::ReactingObserver(const std::shared_ptr<DisplayItem>& item, SceneDisplayModel& model, Trigger trigger,
                                   HostReaction reaction)
    : m_item(item)
    , m_model(model)
    , m_trigger(trigger)
    , m_reaction(reaction)
{
    registerToDisplayItem(item);
}

bool ReactingObserver::hasReacted() const
{
    return m_reacted;
}

void ReactingObserver::onPropertiesChangedEvent(std::shared_ptr<DisplayItemInterface>)
{
    reactOn(Trigger::PropertiesChanged);
}

void ReactingObserver::onVisualPropertiesChangedEvent(std::shared_ptr<DisplayItemInterface>)
{
    reactOn(Trigger::VisualPropertiesChanged);
}

void ReactingObserver::onDisplayItemsAddedEvent(const DisplayItemList&)
{
    reactOn(Trigger::ItemsAdded);
}

void ReactingObserver::onDisplayItemsRemovedEvent(const DisplayItemSet&)
{
    reactOn(Trigger::ItemsRemoved);
}

void ReactingObserver::reactOn(Trigger trigger)
{
    if (m_reacted || trigger != m_trigger)
        return;
    m_reacted = true;
    applyHostReaction(m_reaction, m_item.lock(), m_model);
}

std::shared_ptr<const bool> reactInNextUpdate(SceneDisplayModel& model, const std::shared_ptr<DisplayItem>& item,
                                              HostReaction reaction)
{
    const std::weak_ptr<DisplayItem> target = item;
    SceneDisplayModel* const updatedModel = &model;
    auto reacted = std::make_shared<bool>(false);
    // The model runs a copy of its callback, so the callback may clear itself.
    model.setUpdateCallback([updatedModel, target, reaction, reacted]() {
        updatedModel->setUpdateCallback({});
        *reacted = true;
        applyHostReaction(reaction, target.lock(), *updatedModel);
    });
    return reacted;
}

ReactingItem::ReactingItem(std::string displayName)
    : DisplayItem(std::move(displayName))
{
}

std::shared_ptr<const bool> ReactingItem::reactInGetter(Getter getter, SceneDisplayModel& model,
                                                        const std::shared_ptr<DisplayItem>& target,
                                                        HostReaction reaction)
{
    const std::weak_ptr<DisplayItem> weakTarget = target;
    SceneDisplayModel* const targetModel = &model;
    return reactInGetter(getter, [targetModel, weakTarget, reaction]() {
        applyHostReaction(reaction, weakTarget.lock(), *targetModel);
    });
}

std::shared_ptr<const bool> ReactingItem::reactInGetter(Getter getter, std::function<void()> reaction)
{
    m_getter = getter;
    m_reacted = std::make_shared<bool>(false);
    m_reaction = std::move(reaction);
    return m_reacted;
}

void ReactingItem::getProperties(PropertyList& businessObjectProperties, PropertyList& displayItemProperties) const
{
    runReactionFor(Getter::Properties);
    DisplayItem::getProperties(businessObjectProperties, displayItemProperties);
}

bool ReactingItem::isSelectionAllowed() const
{
    runReactionFor(Getter::SelectionAllowed);
    return DisplayItem::isSelectionAllowed();
}

bool ReactingItem::isVisible() const
{
    runReactionFor(Getter::Visible);
    return DisplayItem::isVisible();
}

std::string ReactingItem::getDisplayName() const
{
    runReactionFor(Getter::DisplayName);
    return DisplayItem::getDisplayName();
}

bool ReactingItem::isSelected() const
{
    runReactionFor(Getter::Selected);
    return DisplayItem::isSelected();
}

bool ReactingItem::isSelectable() const
{
    runReactionFor(Getter::Selectable);
    return DisplayItem::isSelectable();
}

void ReactingItem::collectSubtree(DisplayItemList& items) const
{
    runReactionFor(Getter::Subtree);
    DisplayItem::collectSubtree(items);
}

void ReactingItem::collectSubtreeToShow(DisplayItemList& items) const
{
    runReactionFor(Getter::Subtree);
    DisplayItem::collectSubtreeToShow(items);
}

DisplayItemList ReactingItem::getChildren() const
{
    runReactionFor(Getter::Children);
    return DisplayItem::getChildren();
}

std::shared_ptr<DisplayItem> ReactingItem::copyWithoutChildren() const
{
    // Named without asking the getter: copying must not set the reaction off.
    auto copy = std::make_shared<ReactingItem>(DisplayItem::getDisplayName());
    copy->copyStateFrom(*this);
    return copy;
}

void ReactingItem::runReactionFor(Getter getter) const
{
    if (!m_reaction || getter != m_getter)
        return;
    // Disarmed before it runs: the reaction may ask this item again.
    const std::function<void()> reaction = std::move(m_reaction);
    m_reaction = nullptr;
    // The item must outlive its own getter even when the reaction releases it.
    const std::shared_ptr<const DisplayItem> keepAlive = shared_from_this();
    *m_reacted = true;
    reaction();
}

QString rowsDifferFromModel(QTreeWidget* tree, const std::shared_ptr<DisplayItemInterface>& root)
{
    auto* top = dynamic_cast<DisplayItemTreeWidgetItem*>(tree->topLevelItem(0));
    if (!top)
        return root ? QStringLiteral("no top row") : QString();
    if (top->getDisplayItem() != root) {
        for (QTreeWidgetItemIterator it(tree); *it; ++it) {
            auto* row = dynamic_cast<DisplayItemTreeWidgetItem*>(*it);
            if (row && row->getDisplayItem())
                return QStringLiteral("the root was replaced, but row %1 shows a live item").arg(row->text(0));
        }
        return {};
    }

    std::vector<DisplayItemTreeWidgetItem*> pending{top};
    while (!pending.empty()) {
        DisplayItemTreeWidgetItem* row = pending.back();
        pending.pop_back();
        const std::shared_ptr<DisplayItemInterface> item = row->getDisplayItem();
        if (!item)
            return QStringLiteral("row %1 shows a gone item").arg(row->text(0));
        const DisplayItemList children = item->getChildren();
        std::vector<DisplayItemTreeWidgetItem*> childRows;
        for (int i = 0; i < row->childCount(); ++i) {
            auto* childRow = dynamic_cast<DisplayItemTreeWidgetItem*>(row->child(i));
            if (childRow && !childRow->isDuplicate())
                childRows.push_back(childRow);
        }
        if (childRows.size() != children.size())
            return QStringLiteral("row %1 has %2 rows for %3 children")
                .arg(row->text(0))
                .arg(childRows.size())
                .arg(children.size());
        for (std::size_t i = 0; i < children.size(); ++i) {
            if (childRows[i]->getDisplayItem() != children[i])
                return QStringLiteral("row %1 of %2 shows another item").arg(i).arg(row->text(0));
            pending.push_back(childRows[i]);
        }
    }
    return {};
}

} // namespace Brennvik::Test
