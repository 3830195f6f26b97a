#pragma once

#include <hostcontract/DisplayItem2D.h>
#include <hostcontract/HostTypes.h>

#include <memory>
#include <string>

class QAbstractItemView;
class QWidget;

namespace Brennvik {

class DisplayItemInterface;
class ViewModelInterface;

namespace Conformance {

/// What the conformance checks need of a host beyond the contract itself:
/// the few operations that only the host's own implementation can do
/// (making items, adding children, changing a property). A host derives
/// from this class once, in its test program, and hands it to runAll.
///
/// Every hook is called on the GUI thread. The hooks with a default
/// implementation do what the dialogs do through the contract; override
/// them only when the host changes that state some other way as well.
class ConformanceHost
{
public:
    ConformanceHost();
    virtual ~ConformanceHost();
    ConformanceHost(const ConformanceHost&) = delete;
    ConformanceHost& operator=(const ConformanceHost&) = delete;

    /// Name of the host, used in reports.
    virtual std::string hostName() const;

    /// \name 3D display items
    ///@{
    /// A new detached display item named \a name (getDisplayName returns it),
    /// visible, unselected, whose selection may be changed, with no children.
    /// The caller holds the only reference the checks rely on.
    virtual std::shared_ptr<DisplayItemInterface> makeItem(const std::string& name) = 0;
    /// Appends \a child (made by makeItem, detached) to \a parent the host's
    /// way. The host raises the added event on the parent's observers.
    virtual void appendChild(const std::shared_ptr<DisplayItemInterface>& parent,
                             const std::shared_ptr<DisplayItemInterface>& child)
        = 0;
    /// Sets the property \a name of \a item to \a value the host's way, so that
    /// getProperties lists (name, value) afterwards. The host raises the
    /// properties-changed event.
    virtual void setProperty(const std::shared_ptr<DisplayItemInterface>& item, const std::string& name,
                             const std::string& value)
        = 0;
    /// Shows or hides \a item. By default as the dialogs do it: setVisible,
    /// then notifyVisualPropertiesChanged.
    virtual void setVisibility(const std::shared_ptr<DisplayItemInterface>& item, bool visible);
    /// Selects or deselects \a item. By default as the dialogs do it:
    /// setSelected, then notifyVisualPropertiesChanged.
    virtual void setSelection(const std::shared_ptr<DisplayItemInterface>& item, bool selected);
    /// Whether the property \a name names the item's identity (an address, a
    /// serial number), so that a faithful copy has a different value. Such
    /// properties are left out when a clone is compared with its original.
    /// None by default.
    virtual bool isIdentityProperty(const std::string& name) const;
    ///@}

    /// A view model whose display model has \a root (made by makeItem, with
    /// its subtree) as its root display item.
    virtual std::shared_ptr<ViewModelInterface> makeViewModel(const std::shared_ptr<DisplayItemInterface>& root) = 0;

    /// The tree view of the host's widget kit, empty, owned by \a parent (or by
    /// the caller when \a parent is null). The checks give it a model. A plain
    /// QTreeView by default.
    virtual QAbstractItemView* makeTreeView(QWidget* parent);

    /// \name 2D display items
    ///@{
    /// A new detached 2D item named \a name, visible. A plain DisplayItem2D by default.
    virtual std::shared_ptr<DisplayItem2D> makeItem2D(const std::string& name);
    /// Changes the visibility of \a item the host's way; setVisibility by default.
    virtual void setVisibility2D(const std::shared_ptr<DisplayItem2D>& item, DisplayItem2D::Visibility visibility);
    ///@}
};

} // namespace Conformance
} // namespace Brennvik
