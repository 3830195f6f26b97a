#include "ShallowCloneHost.h"

#include "RootOnlyViewModel.h"

namespace Brennvik {

std::string ShallowCloneHost::hostName() const
{
    return "host with a shallow clone";
}

std::shared_ptr<ViewModelInterface> ShallowCloneHost::makeViewModel(const std::shared_ptr<DisplayItemInterface>& root)
{
    // The defect under test: the "copy" is the original tree.
    return std::make_shared<RootOnlyViewModel>(root,
                                               [](const std::shared_ptr<DisplayItemInterface>& tree) { return tree; });
}

} // namespace Brennvik
