#include "RootOnlyViewModel.h"

#include "RootOnlyDisplayModel.h"

namespace Brennvik {

RootOnlyViewModel::RootOnlyViewModel(std::shared_ptr<DisplayItemInterface> root, TreeCopier copier)
    : m_displayModel(std::make_unique<RootOnlyDisplayModel>(std::move(root)))
    , m_copier(std::move(copier))
{
}

RootOnlyViewModel::~RootOnlyViewModel() = default;

std::shared_ptr<ViewModelInterface> RootOnlyViewModel::cloneViewModel(bool /*shareGeometry*/) const
{
    return std::make_shared<RootOnlyViewModel>(m_copier(m_displayModel->getRootDisplayItem()), m_copier);
}

DisplayModel* RootOnlyViewModel::getDisplayModel() const
{
    return m_displayModel.get();
}

EditorDisplayModel* RootOnlyViewModel::getEditorDisplayModel() const
{
    return nullptr;
}

ViewBase* RootOnlyViewModel::getView() const
{
    return nullptr;
}

DisplayModel* RootOnlyViewModel::getLabelDisplayModel() const
{
    return nullptr;
}

} // namespace Brennvik
