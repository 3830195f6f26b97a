#pragma once

#include <memory>

class QWidget;

namespace Brennvik {

class ViewModelInterface;

/// Holds the 3D view model that a tool works on, weakly: the tool never
/// keeps a view model alive that the application has dropped.
class ViewModelHolder
{
public:
    /// \a widget is enabled while a view model is held; not owned.
    explicit ViewModelHolder(QWidget* widget);
    virtual ~ViewModelHolder();

    /// Keeps \a viewModel weakly and enables the widget when it is set,
    /// disables it when it is empty.
    virtual void setViewModel(std::shared_ptr<ViewModelInterface> viewModel);

protected:
    QWidget* m_widget;
    std::weak_ptr<ViewModelInterface> m_viewModel;
};

} // namespace Brennvik
