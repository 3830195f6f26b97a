#include "CarelessHost.h"

namespace Brennvik {

CarelessHost::CarelessHost()
    : ReferenceHostWithItems("host with careless out-parameters")
{
}

} // namespace Brennvik
