#pragma once

#include "HostExport.h"
#include "HostTypes.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace Brennvik {

class DisplayItem2DObserver;

/// One node of the display model of a 2D plot (an axis, a curve, a legend,
/// a group of them).
///
/// Items are shared: make them with std::make_shared. An item owns its
/// children; the parent is a raw back pointer. Events reach the item's
/// observers synchronously, inside the call that caused them:
/// - onDisplayItemModified from setVisibility (when the value changes),
///   setDisplayName, the property setters and notifyModified;
/// - onChildAdded from appendChild and insertChild, onChildRemoved from
///   removeChild, both on the parent's observers with the parent as first argument.
/// Observers may stop observing, be destroyed or start observing during an
/// event; one that starts during an event receives the next one.
class BRENNVIK_HOST_EXPORT DisplayItem2D : public std::enable_shared_from_this<DisplayItem2D>
{
public:
    /// Whether the item is drawn. Any value but Visible hides the item and its subtree.
    enum Visibility : int {
        Visible = 0,
        NotVisible = 1,
        /// Not drawn, and left out of the plot's data range as well.
        Excluded = 2,
    };

    explicit DisplayItem2D(std::string displayName);
    /// Children still held elsewhere are detached (they no longer have a parent).
    virtual ~DisplayItem2D();
    DisplayItem2D(const DisplayItem2D&) = delete;
    DisplayItem2D& operator=(const DisplayItem2D&) = delete;

    /// The item's name as rows and legends show it.
    virtual std::string getDisplayName() const;
    /// Appends first the business object's (name, value) pairs, then the
    /// display item's own: the type's properties, then those set with
    /// setDisplayProperty. A plain item with nothing set appends nothing.
    virtual void getProperties(PropertyList& businessObjectProperties, PropertyList& displayItemProperties) const;
    /// Name of the concrete class.
    virtual std::string typeName() const;

    /// The children, in order.
    const std::vector<std::shared_ptr<DisplayItem2D>>& getChildren() const;
    Visibility getVisibility() const;
    /// Raises onDisplayItemModified when the value changes.
    void setVisibility(Visibility visibility);
    /// The item and all its ancestors are visible.
    bool isDrawn() const;
    /// No item on the way up to the root is Excluded.
    bool isInDataRange() const;

    /// \name Structure
    /// A child that has a parent is first removed from it (with its event).
    /// An empty child, the item itself or one of its ancestors throws std::invalid_argument.
    ///@{
    void appendChild(std::shared_ptr<DisplayItem2D> child);
    /// Inserts before \a index (at most the child count; more throws std::out_of_range).
    void insertChild(std::size_t index, std::shared_ptr<DisplayItem2D> child);
    /// False, and no event, when \a child is not a child of this item.
    bool removeChild(const std::shared_ptr<DisplayItem2D>& child);
    ///@}
    /// Null for a root.
    DisplayItem2D* getParent() const;

    /// Raises onDisplayItemModified.
    void setDisplayName(std::string displayName);
    /// Replaces the value of an existing name in place, appends a new one;
    /// raises onDisplayItemModified.
    void setBusinessProperty(const std::string& name, std::string value);
    /// As setBusinessProperty, for the display item's own list.
    void setDisplayProperty(const std::string& name, std::string value);
    /// Raises onDisplayItemModified, for changes the item cannot see itself.
    void notifyModified();

    std::size_t observerCount() const;
    bool isObservedBy(const DisplayItem2DObserver* observer) const;

protected:
    /// Appends properties of the concrete type to the display item's list,
    /// before those set with setDisplayProperty.
    virtual void appendTypeProperties(PropertyList& displayItemProperties) const;

private:
    friend class DisplayItem2DObserver;

    struct Registration
    {
        DisplayItem2DObserver* observer;
        std::uint64_t serial;
    };

    void addObserver(DisplayItem2DObserver* observer);
    void removeObserver(DisplayItem2DObserver* observer);
    template<typename Event>
    void dispatch(const Event& event);
    void checkCanAdopt(const std::shared_ptr<DisplayItem2D>& child) const;
    /// Whether \a candidate is \a item or one of its ancestors.
    static bool isSelfOrAncestorOf(const DisplayItem2D& candidate, const DisplayItem2D& item);
    /// Moves the children into \a pending, detached from this item.
    void takeChildren(std::vector<std::shared_ptr<DisplayItem2D>>& pending);
    static void setProperty(PropertyList& list, const std::string& name, std::string value);

    std::string m_displayName;
    DisplayItem2D* m_parent = nullptr;
    std::vector<std::shared_ptr<DisplayItem2D>> m_children;
    Visibility m_visibility = Visible;
    PropertyList m_businessProperties;
    PropertyList m_displayProperties;
    std::vector<Registration> m_observers;
    std::uint64_t m_nextSerial = 1;
};

} // namespace Brennvik
