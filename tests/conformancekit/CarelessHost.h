#pragma once

#include "CarelessDisplayItem.h"
#include "ReferenceHostWithItems.h"

namespace Brennvik {

/// A broken host for the conformance kit: the reference host with
/// CarelessDisplayItems, whose out-parameters and empty-reference handling
/// are wrong.
class CarelessHost : public ReferenceHostWithItems<CarelessDisplayItem>
{
public:
    CarelessHost();
};

} // namespace Brennvik
