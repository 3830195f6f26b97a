#include "ReferenceConformanceHost.h"

#include <referencehost/model/SceneDisplayModel.h>
#include <referencehost/model/SceneViewModel.h>

namespace Brennvik {

std::string ReferenceConformanceHost::hostName() const
{
    return "reference host";
}

void ReferenceConformanceHost::setProperty(const std::shared_ptr<DisplayItemInterface>& item, const std::string& name,
                                           const std::string& value)
{
    ownItem(item)->setBusinessProperty(name, value);
}

bool ReferenceConformanceHost::isIdentityProperty(const std::string& name) const
{
    return name.rfind("pointer", 0) == 0;
}

std::shared_ptr<ViewModelInterface>
ReferenceConformanceHost::makeViewModel(const std::shared_ptr<DisplayItemInterface>& root)
{
    auto viewModel = std::make_shared<SceneViewModel>();
    viewModel->displayModel().setRootDisplayItem(ownItem(root));
    return viewModel;
}

} // namespace Brennvik
