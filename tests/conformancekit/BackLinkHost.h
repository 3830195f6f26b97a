#pragma once

#include "ReferenceConformanceHost.h"

namespace Brennvik {

/// A broken host for the conformance kit: the reference host with items
/// whose getChildren() ends with a link back to their parent, the root's to
/// itself, as in a doubly linked list. Their clones do the same.
class BackLinkHost : public ReferenceConformanceHost
{
public:
    std::string hostName() const override;
    std::shared_ptr<DisplayItemInterface> makeItem(const std::string& name) override;
};

} // namespace Brennvik
