#pragma once

#include <hostcontract/HostExport.h>

#include <memory>
#include <string>

namespace Brennvik {

class DisplayItem2D;

/// The tree of a typical process plot: a root named after \a title holding
/// "Axes" (horizontal "Stroke [mm]", vertical \a valueTitle), "Curves" (one
/// curve per tool: "Punch", "Binder", "Die") and "Legend".
BRENNVIK_HOST_EXPORT std::shared_ptr<DisplayItem2D> buildSamplePlotTree(const std::string& title,
                                                                        const std::string& valueTitle);

} // namespace Brennvik
