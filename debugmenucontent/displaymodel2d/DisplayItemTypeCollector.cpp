#include "DisplayItemTypeCollector.h"

#include <hostcontract/PlotLabelDisplayItem.h>

namespace Brennvik {

// The collector the plot listing uses, compiled once here.
template class DisplayItemTypeCollector<PlotLabelDisplayItem>;

} // namespace Brennvik
