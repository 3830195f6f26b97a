#pragma once

#include <hostcontract/ViewModelInterface.h>

#include <functional>
#include <memory>

namespace Brennvik {

class DisplayItemInterface;
class RootOnlyDisplayModel;

/// A view model around a RootOnlyDisplayModel whose clone copies the tree
/// with a function given by the double: deep, or not at all.
class RootOnlyViewModel : public ViewModelInterface
{
public:
    using TreeCopier
        = std::function<std::shared_ptr<DisplayItemInterface>(const std::shared_ptr<DisplayItemInterface>&)>;

    RootOnlyViewModel(std::shared_ptr<DisplayItemInterface> root, TreeCopier copier);
    ~RootOnlyViewModel() override;

    /// A new view model around the copier's copy of the root.
    std::shared_ptr<ViewModelInterface> cloneViewModel(bool shareGeometry) const override;
    DisplayModel* getDisplayModel() const override;
    EditorDisplayModel* getEditorDisplayModel() const override;
    ViewBase* getView() const override;
    DisplayModel* getLabelDisplayModel() const override;

private:
    std::unique_ptr<RootOnlyDisplayModel> m_displayModel;
    TreeCopier m_copier;
};

} // namespace Brennvik
