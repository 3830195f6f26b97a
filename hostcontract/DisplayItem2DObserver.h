#pragma once

#include "HostExport.h"

#include <cstddef>
#include <memory>
#include <vector>

namespace Brennvik {

class DisplayItem2D;

/// Base class through which a client follows 2D display items.
///
/// After observe the item's events reach this observer synchronously, on the
/// GUI thread. The destructor stops observing every item still alive, so a
/// destroyed observer is never called.
class BRENNVIK_HOST_EXPORT DisplayItem2DObserver
{
public:
    DisplayItem2DObserver();
    virtual ~DisplayItem2DObserver();
    DisplayItem2DObserver(const DisplayItem2DObserver&) = delete;
    DisplayItem2DObserver& operator=(const DisplayItem2DObserver&) = delete;

    /// The observed item changed, its visibility included.
    virtual void onDisplayItemModified();
    /// \a child was added to \a parent, the observed item.
    virtual void onChildAdded(DisplayItem2D* parent, std::shared_ptr<DisplayItem2D> child);
    /// \a child was removed from \a parent, the observed item.
    virtual void onChildRemoved(DisplayItem2D* parent, std::shared_ptr<DisplayItem2D> child);

    /// From now on the item's events reach this observer (in addition to
    /// those of items observed already). An empty reference, or an item
    /// observed already, changes nothing.
    void observe(std::shared_ptr<DisplayItem2D> item);
    /// Stops the events of \a item; an empty reference or an item not observed changes nothing.
    void stopObserving(const std::shared_ptr<DisplayItem2D>& item);
    /// Stops the events of every item.
    void stopObservingAll();
    /// Number of observed items that still exist.
    std::size_t observedItemCount() const;

private:
    std::vector<std::weak_ptr<DisplayItem2D>> m_observedItems;
};

} // namespace Brennvik
