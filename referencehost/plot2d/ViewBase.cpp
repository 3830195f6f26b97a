#include <hostcontract/ViewBase.h>

#include <QWidget>

namespace Brennvik {

ViewBase::ViewBase() = default;

ViewBase::~ViewBase() = default;

const ViewTransformationProvider& ViewBase::getMainWindowTransformationProvider() const
{
    return m_transformationProvider;
}

QWidget* ViewBase::getViewWidget() const
{
    return m_viewWidget;
}

ViewTransformationProvider& ViewBase::mainWindowTransformationProvider()
{
    return m_transformationProvider;
}

void ViewBase::setViewWidget(QWidget* widget)
{
    m_viewWidget = widget;
}

} // namespace Brennvik
