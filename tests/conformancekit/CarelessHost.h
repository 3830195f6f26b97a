#pragma once

#include "ReferenceConformanceHost.h"

namespace Brennvik {

/// A broken host for the conformance kit: the reference host with
/// CarelessDisplayItems, whose out-parameters and empty-reference handling
/// are wrong.
class CarelessHost : public ReferenceConformanceHost
{
public:
    std::string hostName() const override;
    std::shared_ptr<DisplayItemInterface> makeItem(const std::string& name) override;
};

} // namespace Brennvik
