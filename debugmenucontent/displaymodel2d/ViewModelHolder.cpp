#include "ViewModelHolder.h"

#include <hostcontract/ViewModelInterface.h>

#include <QWidget>

namespace Brennvik {

ViewModelHolder::ViewModelHolder(QWidget* widget)
    : m_widget(widget)
{
}

ViewModelHolder::~ViewModelHolder() = default;

void ViewModelHolder::setViewModel(std::shared_ptr<ViewModelInterface> viewModel)
{
    m_viewModel = viewModel;
    m_widget->setEnabled(!m_viewModel.expired());
}

} // namespace Brennvik
