#include "DisplayItemTypeFilter.h"

#include <hostcontract/PlotLabelDisplayItem.h>

namespace Brennvik {

// The filter the plot listing uses, compiled once here.
template class DisplayItemTypeFilter<PlotLabelDisplayItem>;

} // namespace Brennvik
