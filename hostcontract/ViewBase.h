#pragma once

#include "HostExport.h"
#include "ViewTransformationProvider.h"

#include <QPointer>

class QWidget;

namespace Brennvik {

/// A 3D view of the host: the widget it draws on and the projection of the
/// main window's camera.
class BRENNVIK_HOST_EXPORT ViewBase
{
public:
    ViewBase();
    virtual ~ViewBase();
    ViewBase(const ViewBase&) = delete;
    ViewBase& operator=(const ViewBase&) = delete;

    /// The projection from world points to pixels of the view widget.
    const ViewTransformationProvider& getMainWindowTransformationProvider() const;
    /// The widget the view is drawn on; null until one is set or after it was destroyed.
    virtual QWidget* getViewWidget() const;

    /// The projection, to set the camera.
    ViewTransformationProvider& mainWindowTransformationProvider();
    /// Not owned; forgotten by itself when the widget is destroyed.
    void setViewWidget(QWidget* widget);

private:
    ViewTransformationProvider m_transformationProvider;
    QPointer<QWidget> m_viewWidget;
};

} // namespace Brennvik
