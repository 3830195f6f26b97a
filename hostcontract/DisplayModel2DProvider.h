#pragma once

#include "HostExport.h"

namespace Brennvik {

class DisplayModel2D;

/// Something that draws a 2D plot from a display model.
class BRENNVIK_HOST_EXPORT DisplayModel2DProvider
{
public:
    virtual ~DisplayModel2DProvider() = default;

    /// The display model of the plot; may be null.
    virtual DisplayModel2D* getDisplayModel2D() = 0;
};

} // namespace Brennvik
