#pragma once

#include "HostExport.h"

namespace Brennvik {

/// Refreshes the views that show edit primitives.
class BRENNVIK_HOST_EXPORT EditorDisplayUpdateViewsInterface
{
public:
    virtual ~EditorDisplayUpdateViewsInterface() = default;
    virtual void updateViews() = 0;
};

} // namespace Brennvik
