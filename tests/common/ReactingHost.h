#pragma once

#include <hostcontract/DisplayItemEventObserver.h>

#include <referencehost/model/DisplayItem.h>

#include <QList>
#include <QPair>
#include <QString>

#include <functional>
#include <memory>

class QTreeWidget;

namespace Brennvik {
class SceneDisplayModel;
}

namespace Brennvik::Test {

/// What a host does, inside one of its own calls, around the item it watches.
enum class HostReaction {
    RemoveItem,     ///< the item's parent removes it
    RemoveParent,   ///< the item's grandparent removes the item's parent
    RemoveBranch,   ///< the root removes its child that holds the item (the whole subtree)
    RemoveChildren, ///< the item removes all its children
    AddChildren,    ///< two new children ("added 1", "added 2") are appended to the item
    ReplaceRoot,    ///< the display model gets a new tree; the old one is released
};

/// Every reaction with a row name, for data-driven tests.
QList<QPair<const char*, HostReaction>> allHostReactions();

/// Carries out \a reaction on \a item of \a model at once. A reaction whose
/// target does not exist (the parent of the root, ...) does nothing.
void applyHostReaction(HostReaction reaction, const std::shared_ptr<DisplayItem>& item, SceneDisplayModel& model);

/// A host observer that reacts, once, inside the first event of the chosen
/// kind that its item raises. It holds the item weakly, so that the reaction
/// can release it.
class ReactingObserver : public DisplayItemEventObserver
{
public:
    enum class Trigger { VisualPropertiesChanged, PropertiesChanged, ItemsAdded, ItemsRemoved };

    /// Registers on \a item. \a model must outlive the observer.
    ReactingObserver(const std::shared_ptr<DisplayItem>& item, SceneDisplayModel& model, Trigger trigger,
                     HostReaction reaction);

    /// Whether the reaction has run.
    bool hasReacted() const;

    void onPropertiesChangedEvent(std::shared_ptr<DisplayItemInterface> item) override;
    void onVisualPropertiesChangedEvent(std::shared_ptr<DisplayItemInterface> item) override;
    void onDisplayItemsAddedEvent(const DisplayItemList& items) override;
    void onDisplayItemsRemovedEvent(const DisplayItemSet& items) override;

private:
    void reactOn(Trigger trigger);

    std::weak_ptr<DisplayItem> m_item;
    SceneDisplayModel& m_model;
    Trigger m_trigger;
    HostReaction m_reaction;
    bool m_reacted = false;
};

/// Makes \a model react once inside its next display or visibility update.
/// The flag returned turns true when the reaction has run.
std::shared_ptr<const bool> reactInNextUpdate(SceneDisplayModel& model, const std::shared_ptr<DisplayItem>& item,
                                              HostReaction reaction);

/// A plain display item whose getters may raise events: a host that computes
/// what it shows on demand may change its model while it is asked. Armed with
/// reactInGetter, the next call of that getter runs the reaction first.
class ReactingItem : public DisplayItem
{
public:
    enum class Getter { Properties, SelectionAllowed, Subtree, Children, Visible, Selected, Selectable, DisplayName };

    explicit ReactingItem(std::string displayName);

    /// The next call of \a getter on this item runs \a reaction on \a target
    /// first, once. The flag returned turns true when the reaction has run.
    std::shared_ptr<const bool> reactInGetter(Getter getter, SceneDisplayModel& model,
                                              const std::shared_ptr<DisplayItem>& target, HostReaction reaction);
    /// The same with a reaction of the test's own (handing the dialog another model, ...).
    std::shared_ptr<const bool> reactInGetter(Getter getter, std::function<void()> reaction);

    void getProperties(PropertyList& businessObjectProperties, PropertyList& displayItemProperties) const override;
    bool isSelectionAllowed() const override;
    bool isVisible() const override;
    std::string getDisplayName() const override;
    bool isSelected() const override;
    bool isSelectable() const override;
    void collectSubtree(DisplayItemList& items) const override;
    void collectSubtreeToShow(DisplayItemList& items) const override;
    DisplayItemList getChildren() const override;
    /// A copy of the same type, so that clones stay faithful; it is not armed.
    std::shared_ptr<DisplayItem> copyWithoutChildren() const override;

private:
    void runReactionFor(Getter getter) const;

    // Mutable: the getters are const, as the host's are.
    mutable std::function<void()> m_reaction;
    std::shared_ptr<bool> m_reacted;
    Getter m_getter = Getter::Properties;
};

/// Empty when the display item rows of \a tree show the tree of \a root: the
/// top row shows \a root, and under every row that is no duplicate the rows
/// that are no duplicates show its item's children in order (edit-model rows
/// and duplicate rows are left out). Also empty when \a root replaced the
/// tree the rows were built from and every row's item has gone with it: the
/// dialogs follow no replacement of the root. Otherwise the first difference.
QString rowsDifferFromModel(QTreeWidget* tree, const std::shared_ptr<DisplayItemInterface>& root);

} // namespace Brennvik::Test
