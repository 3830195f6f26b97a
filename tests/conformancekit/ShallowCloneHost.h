#pragma once

#include "ReferenceConformanceHost.h"

namespace Brennvik {

/// A broken host for the conformance kit: the reference host's items, but a
/// view model whose clone holds the very same items as the original.
class ShallowCloneHost : public ReferenceConformanceHost
{
public:
    std::string hostName() const override;
    std::shared_ptr<ViewModelInterface> makeViewModel(const std::shared_ptr<DisplayItemInterface>& root) override;
};

} // namespace Brennvik
