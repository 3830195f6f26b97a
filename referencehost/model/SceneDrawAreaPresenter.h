#pragma once

#include <hostcontract/DrawAreaPresenter.h>

#include <functional>
#include <memory>
#include <vector>

namespace Brennvik {

/// Presenter of one 3D draw area: holds the view model drawn now and remembers
/// what it was asked to show.
class BRENNVIK_HOST_EXPORT SceneDrawAreaPresenter : public DrawAreaPresenter
{
public:
    SceneDrawAreaPresenter();
    ~SceneDrawAreaPresenter() override;

    /// Draws \a viewModel from now on (empty: nothing), records the call, then
    /// runs the change callback with it.
    void showViewModel(std::shared_ptr<ViewModelInterface> viewModel) override;
    std::shared_ptr<ViewModelInterface> getViewModel() const override;

    /// How often showViewModel ran.
    int showCount() const;
    /// The arguments of every showViewModel call, oldest first. Weak: the
    /// presenter keeps only the model it draws now alive.
    const std::vector<std::weak_ptr<ViewModelInterface>>& shownHistory() const;

    /// Called after every showViewModel with the new view model; empty to stop.
    void setChangeCallback(std::function<void(const std::shared_ptr<ViewModelInterface>&)> callback);

private:
    std::shared_ptr<ViewModelInterface> m_viewModel;
    std::vector<std::weak_ptr<ViewModelInterface>> m_history;
    std::function<void(const std::shared_ptr<ViewModelInterface>&)> m_changeCallback;
};

} // namespace Brennvik
