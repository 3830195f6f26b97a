#include <hostcontract/ViewBase.h>

#include <referencehost/model/HostCallLog.h>

#include <QWidget>

namespace Brennvik {

ViewBase::ViewBase() = default;

ViewBase::~ViewBase() = default;

const ViewTransformationProvider& ViewBase::getMainWindowTransformationProvider() const
{
    HostCallLog::note("getMainWindowTransformationProvider");
    return m_transformationProvider;
}

QWidget* ViewBase::getViewWidget() const
{
    HostCallLog::note("getViewWidget");
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
