#pragma once

#include <hostcontract/DisplayItemInterface.h>
#include <hostcontract/DisplayModel.h>
#include <hostcontract/ViewModelInterface.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace Brennvik::Test {

class LinkedViewModel;

/// A small display item for trees that the reference host cannot make: very
/// deep chains built in linear time, and broken trees whose getChildren lists
/// an empty reference, the item itself or one of its ancestors.
///
/// Children are either owned (appendChild: the child gets this item as parent
/// and the view model's display model) or mere links (appendLink, appendEmpty):
/// listed by getChildren and nothing else, so that a cycle keeps nothing alive.
/// Every walk of the item's own (count, subtree, destruction) is iterative and
/// follows owned children only.
class LinkedItem : public DisplayItemInterface, public std::enable_shared_from_this<LinkedItem>
{
public:
    explicit LinkedItem(std::string name);
    ~LinkedItem() override;

    /// Appends \a child as an owned child and raises the added event with it.
    void appendChild(const std::shared_ptr<LinkedItem>& child);
    /// Lists \a target as the next child without owning or adopting it.
    void appendLink(const std::shared_ptr<LinkedItem>& target);
    /// Lists an empty reference as the next child.
    void appendEmpty();
    /// The owned children, in order (links and empty entries left out).
    const std::vector<std::shared_ptr<LinkedItem>>& ownedChildren() const { return m_owned; }

    /// \name DisplayItemInterface
    ///@{
    RemoveChildResult removeChild(std::shared_ptr<DisplayItemInterface> child, bool keepResources) override;
    DisplayItemInterface* getParent() const override { return m_parent; }
    void setVisible(bool visible) override { m_visible = visible; }
    bool isVisible() const override { return m_visible; }
    DisplayItemList getChildren() const override;
    /// This item and its owned descendants in pre-order.
    void collectSubtreeToShow(DisplayItemList& items) const override;
    /// This item and its owned descendants in pre-order.
    void collectSubtree(DisplayItemList& items) const override;
    std::string getDisplayName() const override { return m_name; }
    /// ("pointer", address) and ("name", name); ("display item type", "LinkedItem").
    void getProperties(PropertyList& businessObjectProperties, PropertyList& displayItemProperties) const override;
    DisplayModel* getDisplayModel() const override { return m_displayModel; }
    /// This item and its owned descendants.
    std::uint64_t getNumberOfDisplayItems() const override;
    std::string getDescription() const override { return m_name; }
    bool isSelectionAllowed() const override { return true; }
    void setSelected(bool selected) override { m_selected = selected; }
    bool isSelected() const override { return m_selected; }
    bool isSelectable() const override { return true; }
    void notifyVisualPropertiesChanged() override;
    void addEventObserver(DisplayItemEventObserver* observer) override;
    void removeEventObserver(DisplayItemEventObserver* observer) override;
    ///@}

    std::size_t observerCount() const { return m_observers.size(); }

private:
    friend class LinkedViewModel;
    friend void releaseOwnedTree(const std::shared_ptr<LinkedItem>& root);
    struct Entry
    {
        std::shared_ptr<LinkedItem> owned;
        std::weak_ptr<LinkedItem> link;
    };

    void attachTo(LinkedItem* parent);

    std::string m_name;
    bool m_visible = true;
    bool m_selected = false;
    LinkedItem* m_parent = nullptr;
    DisplayModel* m_displayModel = nullptr;
    std::vector<Entry> m_entries;
    std::vector<std::shared_ptr<LinkedItem>> m_owned;
    std::vector<DisplayItemEventObserver*> m_observers;
};

/// The display model of a LinkedViewModel: the root and update counters.
class LinkedDisplayModel : public DisplayModel
{
public:
    DefaultEntryOwner* getDefaultEntryOwner() const override { return nullptr; }
    Kind7Source* getKind7Source() const override { return nullptr; }
    Kind6Provider* getKind6Provider() const override { return nullptr; }
    std::shared_ptr<DisplayItemInterface> getRootDisplayItem() const override { return m_root; }
    std::shared_ptr<Kind7Lookup> getKind7Lookup() const override { return nullptr; }
    void doDisplayUpdate(DisplayUpdateKind) override { ++m_displayUpdates; }
    void doVisibilityUpdate() override { ++m_visibilityUpdates; }
    std::shared_ptr<ActiveContext> getActiveContext() const override { return nullptr; }
    Kind6Index getKind6Index() const override { return 0; }

    int displayUpdates() const { return m_displayUpdates; }
    int visibilityUpdates() const { return m_visibilityUpdates; }

private:
    friend class LinkedViewModel;
    std::shared_ptr<LinkedItem> m_root;
    int m_displayUpdates = 0;
    int m_visibilityUpdates = 0;
};

/// A view model over one LinkedItem tree. Its clones copy the tree entry by
/// entry (owned children, links to the copies of their targets, empty
/// entries), so that a broken tree stays broken in the same places.
class LinkedViewModel : public ViewModelInterface
{
public:
    /// A view model whose display model holds \a root and its owned subtree.
    explicit LinkedViewModel(std::shared_ptr<LinkedItem> root);
    /// Frees the tree without recursing along deep chains.
    ~LinkedViewModel() override;

    std::shared_ptr<ViewModelInterface> cloneViewModel(bool shareGeometry) const override;
    DisplayModel* getDisplayModel() const override { return m_displayModel.get(); }
    EditorDisplayModel* getEditorDisplayModel() const override { return nullptr; }
    ViewBase* getView() const override { return nullptr; }
    DisplayModel* getLabelDisplayModel() const override { return nullptr; }

    const std::shared_ptr<LinkedItem>& root() const { return m_displayModel->m_root; }
    LinkedDisplayModel& linkedDisplayModel() const { return *m_displayModel; }

private:
    std::unique_ptr<LinkedDisplayModel> m_displayModel;
};

/// A chain of \a depth items named "item 0" (the root) to "item <depth - 1>",
/// each the only child of the one before.
std::shared_ptr<LinkedViewModel> makeChain(int depth);

/// The items of \a root's owned subtree in pre-order, without recursion.
std::vector<std::shared_ptr<LinkedItem>> ownedPreOrder(const std::shared_ptr<LinkedItem>& root);

/// Releases the owned subtree of \a root from the leaves up, so that dropping
/// a deep chain does not recurse through the items' destructors.
void releaseOwnedTree(const std::shared_ptr<LinkedItem>& root);

} // namespace Brennvik::Test
