#pragma once

#include "HostExport.h"

#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace Brennvik {

class DisplayItem2D;

/// Kind of a redraw of a 2D plot.
enum class DisplayUpdate2D : int {
    /// Everything: data range, axes and all items.
    Full = 0,
    /// Only the look of items (visibility, colours); the data range is kept.
    Items = 1,
};

/// The display model of one 2D plot: the tree of items the plot draws.
class BRENNVIK_HOST_EXPORT DisplayModel2D
{
public:
    using UpdateListener = std::function<void(DisplayUpdate2D)>;

    DisplayModel2D();
    ~DisplayModel2D();
    DisplayModel2D(const DisplayModel2D&) = delete;
    DisplayModel2D& operator=(const DisplayModel2D&) = delete;

    /// May be empty.
    std::shared_ptr<DisplayItem2D> getRootDisplayItem() const;
    /// Asks the plot to redraw: counts the update and tells the listeners.
    void doDisplayUpdate(DisplayUpdate2D update);

    /// Replaces the tree; does not redraw by itself.
    void setRootDisplayItem(std::shared_ptr<DisplayItem2D> root);

    /// Called on every doDisplayUpdate; returns an id for removeUpdateListener.
    int addUpdateListener(UpdateListener listener);
    void removeUpdateListener(int id);

    /// How often doDisplayUpdate ran.
    int displayUpdateCount() const;
    /// The kind of the last update; Full before the first.
    DisplayUpdate2D lastDisplayUpdate() const;

private:
    std::shared_ptr<DisplayItem2D> m_root;
    std::vector<std::pair<int, UpdateListener>> m_listeners;
    int m_nextListenerId = 1;
    int m_displayUpdateCount = 0;
    DisplayUpdate2D m_lastDisplayUpdate = DisplayUpdate2D::Full;
};

} // namespace Brennvik
