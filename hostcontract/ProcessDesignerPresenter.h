#pragma once

#include "BasePresenter.h"
#include "HostExport.h"

#include <QMetaObject>

#include <map>
#include <set>

class QWidget;

namespace Brennvik {

/// Presenter of a process designer: its 2D draw areas (plot widgets).
class BRENNVIK_HOST_EXPORT ProcessDesignerPresenter : public virtual BasePresenter
{
public:
    ProcessDesignerPresenter();
    ~ProcessDesignerPresenter() override;

    /// The 2D draw area widgets, alive ones only.
    const std::set<QWidget*>& getDrawAreas2D() const;
    /// Adds \a widget (not owned) to the draw areas and to the virtual draw
    /// area; a destroyed widget leaves both by itself. Null is ignored.
    void addDrawArea2D(QWidget* widget);
    void removeDrawArea2D(QWidget* widget);

private:
    std::set<QWidget*> m_drawAreas2D;
    std::map<QWidget*, QMetaObject::Connection> m_destroyedConnections;
};

} // namespace Brennvik
