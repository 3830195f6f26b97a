#pragma once

#include "ReferenceConformanceHost.h"

namespace Brennvik {

/// A broken host for the conformance kit: the reference host with items
/// whose getChildren() ends with an empty reference, as a null-terminated
/// array would. Their clones do the same.
class EmptyChildHost : public ReferenceConformanceHost
{
public:
    std::string hostName() const override;
    std::shared_ptr<DisplayItemInterface> makeItem(const std::string& name) override;
};

} // namespace Brennvik
