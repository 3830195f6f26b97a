#include "ReferenceConformanceHost.h"

#include <referencehost/model/DisplayItem.h>
#include <referencehost/model/SceneDisplayModel.h>
#include <referencehost/model/SceneViewModel.h>

#include <stdexcept>

namespace Brennvik {

namespace {

std::shared_ptr<DisplayItem> referenceItem(const std::shared_ptr<DisplayItemInterface>& item)
{
    auto displayItem = std::dynamic_pointer_cast<DisplayItem>(item);
    if (!displayItem)
        throw std::invalid_argument("not an item of the reference host");
    return displayItem;
}

} // namespace

std::string ReferenceConformanceHost::hostName() const
{
    return "reference host";
}

std::shared_ptr<DisplayItemInterface> ReferenceConformanceHost::makeItem(const std::string& name)
{
    return std::make_shared<DisplayItem>(name);
}

void ReferenceConformanceHost::appendChild(const std::shared_ptr<DisplayItemInterface>& parent,
                                           const std::shared_ptr<DisplayItemInterface>& child)
{
    referenceItem(parent)->appendChild(referenceItem(child));
}

void ReferenceConformanceHost::setProperty(const std::shared_ptr<DisplayItemInterface>& item, const std::string& name,
                                           const std::string& value)
{
    referenceItem(item)->setBusinessProperty(name, value);
}

bool ReferenceConformanceHost::isIdentityProperty(const std::string& name) const
{
    return name.rfind("pointer", 0) == 0;
}

std::shared_ptr<ViewModelInterface>
ReferenceConformanceHost::makeViewModel(const std::shared_ptr<DisplayItemInterface>& root)
{
    auto viewModel = std::make_shared<SceneViewModel>();
    viewModel->displayModel().setRootDisplayItem(referenceItem(root));
    return viewModel;
}

} // namespace Brennvik
