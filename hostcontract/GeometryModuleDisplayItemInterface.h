#pragma once

#include "DisplayItemInterface.h"

namespace Brennvik {

/// A geometry module: an item that groups geometry which the display model
/// also shows elsewhere in the tree (under its "Geometry" group).
class BRENNVIK_HOST_EXPORT GeometryModuleDisplayItemInterface : public virtual DisplayItemInterface
{
public:
    ~GeometryModuleDisplayItemInterface() override = default;

    /// The geometry items of this module, in order. They have their own
    /// place in the tree; this list refers to them a second time.
    virtual DisplayItemList getGeometryDisplayItems() const = 0;
};

} // namespace Brennvik
