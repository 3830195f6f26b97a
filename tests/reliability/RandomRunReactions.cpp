#include "RandomRun.h"

#include <debugmenucontent/treewidgets/DisplayItemTreeWidgetItem.h>

#include <hostcontract/DisplayItem2D.h>

#include <referencehost/model/DisplayItem.h>
#include <referencehost/model/SceneDisplayModel.h>
#include <referencehost/model/SceneViewModel.h>

namespace Brennvik::Test {

std::shared_ptr<DisplayItem> RandomRun::rowItem(QTreeWidgetItem* row) const
{
    auto* itemRow = dynamic_cast<DisplayItemTreeWidgetItem*>(row);
    return itemRow ? std::dynamic_pointer_cast<DisplayItem>(itemRow->getDisplayItem()) : nullptr;
}

void RandomRun::armReaction(const std::shared_ptr<DisplayItem>& item, bool onUpdates)
{
    if (!item)
        return;
    m_reactor = std::make_unique<RecordingObserver>();
    m_reactor->setReaction([this](const RecordedEvent&) { react(); });
    m_reactor->registerToDisplayItem(item);
    m_reactorItem = item;
    m_reactorFired = false;
    m_reactorArmedAt = m_step;
    if (onUpdates && m_viewModel) {
        m_viewModel->displayModel().setUpdateCallback([this]() { react(); });
        m_reactorUpdates = m_viewModel;
    }
    if (g_trace)
        qInfo("  reaction armed on %s%s", item->getDisplayName().c_str(), onUpdates ? " and the updates" : "");
}

// Arms a reaction, now and then, on one of the items a user action is about to reach.
void RandomRun::offerReaction(const std::vector<std::shared_ptr<DisplayItem>>& near)
{
    if (!m_reactionsOn || m_reactor || near.empty() || !chance(30))
        return;
    armReaction(pickFrom(near), chance(20));
}

void RandomRun::disarmReaction()
{
    m_reactor.reset();
    m_reactorItem.reset();
    if (const auto viewModel = m_reactorUpdates.lock())
        viewModel->displayModel().setUpdateCallback({});
    m_reactorUpdates.reset();
    m_reactorFired = false;
}

void RandomRun::react()
{
    if (!m_inDialogCall || m_reactorFired)
        return;
    m_reactorFired = true;
    m_reacted = true;
    const auto item = m_reactorItem.lock();
    if (!item)
        return;
    const int roll = pick(100);
    if (roll < 25) {
        noteReaction(QStringLiteral("react: remove the item"));
        reactRemove(item);
    } else if (roll < 40) {
        noteReaction(QStringLiteral("react: remove the parent"));
        if (DisplayItem* parent = item->parentItem())
            reactRemove(parent->shared_from_this());
    } else if (roll < 50) {
        noteReaction(QStringLiteral("react: remove the top ancestor"));
        std::shared_ptr<DisplayItem> top = item;
        while (top->parentItem() && top->parentItem()->parentItem())
            top = top->parentItem()->shared_from_this();
        reactRemove(top);
    } else if (roll < 58) {
        noteReaction(QStringLiteral("react: remove the children"));
        reactRemoveChildren(item);
    } else if (roll < 75) {
        noteReaction(QStringLiteral("react: add children"));
        reactAddChildren(chance(70) ? item : root());
    } else if (roll < 83) {
        noteReaction(QStringLiteral("react: replace the root"));
        reactReplaceRoot();
    } else if (roll < 91) {
        noteReaction(QStringLiteral("react: replace the view model"));
        m_replacedInCall = true;
        replaceViewModel(chance(80) ? makeRandomViewModel() : nullptr);
    } else {
        noteReaction(QStringLiteral("react: remove a cloned item"));
        reactRemoveClonedItem();
    }
}

// Removes \a item from its parent, if it has one.
void RandomRun::reactRemove(const std::shared_ptr<DisplayItem>& item)
{
    DisplayItem* parent = item ? item->parentItem() : nullptr;
    if (!parent)
        return;
    const auto parentRef = parent->shared_from_this();
    m_keptAlive.push_back(item);
    parent->removeChild(item, chance(50));
    expectRemoved(parent, {item});
}

// All of them in one event.
void RandomRun::reactRemoveChildren(const std::shared_ptr<DisplayItem>& item)
{
    const auto& children = item->children();
    if (children.empty())
        return;
    m_keptAlive.insert(m_keptAlive.end(), children.begin(), children.end());
    const DisplayItemSet removed(children.begin(), children.end());
    item->removeChildren(removed, chance(50));
    expectRemoved(item.get(), removed);
}

void RandomRun::reactAddChildren(const std::shared_ptr<DisplayItem>& item)
{
    if (!item)
        return;
    std::vector<std::shared_ptr<DisplayItem>> children;
    for (int i = 0, n = 1 + pick(3); i < n; ++i)
        children.push_back(makeRandomItem(pick(2)));
    if (chance(50)) {
        item->appendChildren(children);
        expectAdded(item.get(), DisplayItemList(children.begin(), children.end()));
        return;
    }
    // One event per child; rows are appended whatever the position.
    for (const auto& child : children) {
        item->insertChild(std::size_t(pick(int(item->childCount()) + 1)), child);
        expectAdded(item.get(), {child});
    }
}

// The host swaps the display model's tree without an event: the rows stay
// with the old tree's items, which go once nothing holds them.
void RandomRun::reactReplaceRoot()
{
    if (!m_viewModel)
        return;
    SceneDisplayModel& model = m_viewModel->displayModel();
    m_keptAlive.push_back(model.rootDisplayItem());
    auto newRoot = std::make_shared<DisplayItem>("Root");
    for (int i = 0, n = 1 + pick(3); i < n; ++i)
        newRoot->appendChild(makeRandomItem(2));
    model.setRootDisplayItem(chance(85) ? newRoot : nullptr);
    dropDetached();
}

void RandomRun::reactRemoveClonedItem()
{
    const auto clone = std::dynamic_pointer_cast<SceneViewModel>(clonedViewModel());
    if (!clone)
        return;
    const auto items = hostPreOrder(clone->displayModel().rootDisplayItem());
    if (items.size() < 2)
        return;
    reactRemove(items[std::size_t(1 + pick(int(items.size()) - 1))]);
}

void RandomRun::offer2DReaction(const std::shared_ptr<DisplayItem2D>& item)
{
    if (!m_reactionsOn || m_reactor2D || !item || !chance(30))
        return;
    m_reactor2D = std::make_unique<Reacting2DObserver>([this]() { react2D(); });
    m_reactor2D->observe(item);
    m_reactor2DItem = item;
    m_reactor2DFired = false;
}

void RandomRun::react2D()
{
    if (!m_inDialogCall || m_reactor2DFired)
        return;
    m_reactor2DFired = true;
    m_reacted = true;
    const auto item = m_reactor2DItem.lock();
    if (!item)
        return;
    const auto removeFromParent = [this](const std::shared_ptr<DisplayItem2D>& child) {
        DisplayItem2D* parent = child ? child->getParent() : nullptr;
        if (!parent)
            return;
        const auto keep = parent->shared_from_this();
        m_keptAlive.push_back(child);
        parent->removeChild(child);
        expect2DRemoved(parent, child);
    };
    const int roll = pick(4);
    if (roll == 0) {
        noteReaction(QStringLiteral("react2D: remove the item"));
        removeFromParent(item);
    } else if (roll == 1) {
        noteReaction(QStringLiteral("react2D: remove the parent"));
        removeFromParent(item->getParent() ? item->getParent()->shared_from_this() : nullptr);
    } else {
        noteReaction(QStringLiteral("react2D: add a child"));
        auto child = std::make_shared<DisplayItem2D>("reaction " + freshName());
        if (chance(40))
            child->appendChild(std::make_shared<DisplayItem2D>("sub " + freshName()));
        item->appendChild(child);
        expect2DAdded(item.get(), child);
    }
}

void RandomRun::disarm2DReaction()
{
    m_reactor2D.reset();
    m_reactor2DItem.reset();
    m_reactor2DFired = false;
}

} // namespace Brennvik::Test
