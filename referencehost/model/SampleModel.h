#pragma once

#include <hostcontract/HostExport.h>

#include <cstddef>
#include <functional>
#include <memory>

namespace Brennvik {

class SceneViewModel;

// View models to run the diagnostics on without the application.

/// A simulated sheet-metal forming job (a door inner panel drawn, trimmed,
/// flanged and restruck), a few hundred display items: the part with its
/// blank and part geometry, the process with its operations, tools (shells),
/// draw beads, trim lines and tool-geometry modules, and the results with
/// labelled measurement points. Some items are hidden, some selected, some
/// not selectable. The editor holds pick points, a guide line and a cutting
/// plane; the label model holds the plot labels. The active context is the
/// process step "OP20 Trimming" (kind 6, index 1); the kind-7 lookup finds
/// tools by their "tool id" and the default entry is the blank.
BRENNVIK_HOST_EXPORT std::shared_ptr<SceneViewModel> buildSampleViewModel();

/// A generated model of \a itemCount display items (at least the root),
/// breadth first with a fan-out of 5 to 15 (about 10): plain items, shells,
/// labelable items and geometry modules, each module with a "Geometry" group
/// of 1 to 6 geometry items that it lists. About one item in ten is hidden.
/// The same seed gives the same model. The active context is of kind 0 with
/// the root's first child as the default entry; there is no editor.
/// \a progress, when set, is told the items made so far and \a itemCount,
/// about a hundred times along the way and once at the end.
BRENNVIK_HOST_EXPORT std::shared_ptr<SceneViewModel>
buildSyntheticViewModel(std::size_t itemCount, unsigned seed,
                        const std::function<void(std::size_t done, std::size_t total)>& progress = {});

} // namespace Brennvik
