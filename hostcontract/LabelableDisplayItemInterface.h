#pragma once

#include "DisplayItemInterface.h"

namespace Brennvik {

/// An item that can carry a text label in the 3D view.
class BRENNVIK_HOST_EXPORT LabelableDisplayItemInterface : public virtual DisplayItemInterface
{
public:
    ~LabelableDisplayItemInterface() override = default;

    virtual std::string getLabel() const = 0;
    virtual bool areLabelsAllowed() const = 0;
};

} // namespace Brennvik
