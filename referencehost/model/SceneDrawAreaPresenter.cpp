#include "SceneDrawAreaPresenter.h"

namespace Brennvik {

SceneDrawAreaPresenter::SceneDrawAreaPresenter() = default;

SceneDrawAreaPresenter::~SceneDrawAreaPresenter() = default;

void SceneDrawAreaPresenter::showViewModel(std::shared_ptr<ViewModelInterface> viewModel)
{
    m_viewModel = std::move(viewModel);
    m_history.push_back(m_viewModel);
    const auto callback = m_changeCallback;
    if (callback)
        callback(m_viewModel);
}

std::shared_ptr<ViewModelInterface> SceneDrawAreaPresenter::getViewModel() const
{
    return m_viewModel;
}

int SceneDrawAreaPresenter::showCount() const
{
    return static_cast<int>(m_history.size());
}

const std::vector<std::weak_ptr<ViewModelInterface>>& SceneDrawAreaPresenter::shownHistory() const
{
    return m_history;
}

void SceneDrawAreaPresenter::setChangeCallback(std::function<void(const std::shared_ptr<ViewModelInterface>&)> callback)
{
    m_changeCallback = std::move(callback);
}

} // namespace Brennvik
