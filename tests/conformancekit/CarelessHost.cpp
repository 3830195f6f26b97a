#include "CarelessHost.h"

#include "CarelessDisplayItem.h"

namespace Brennvik {

std::string CarelessHost::hostName() const
{
    return "host with careless out-parameters";
}

std::shared_ptr<DisplayItemInterface> CarelessHost::makeItem(const std::string& name)
{
    return std::make_shared<CarelessDisplayItem>(name);
}

} // namespace Brennvik
