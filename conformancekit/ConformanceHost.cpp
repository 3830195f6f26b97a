#include "ConformanceHost.h"

#include <hostcontract/DisplayItemInterface.h>

#include <QTreeView>

namespace Brennvik::Conformance {

ConformanceHost::ConformanceHost() = default;

ConformanceHost::~ConformanceHost() = default;

std::string ConformanceHost::hostName() const
{
    return "host";
}

void ConformanceHost::setVisibility(const std::shared_ptr<DisplayItemInterface>& item, bool visible)
{
    item->setVisible(visible);
    item->notifyVisualPropertiesChanged();
}

void ConformanceHost::setSelection(const std::shared_ptr<DisplayItemInterface>& item, bool selected)
{
    item->setSelected(selected);
    item->notifyVisualPropertiesChanged();
}

bool ConformanceHost::isIdentityProperty(const std::string& /*name*/) const
{
    return false;
}

QAbstractItemView* ConformanceHost::makeTreeView(QWidget* parent)
{
    return new QTreeView(parent);
}

std::shared_ptr<DisplayItem2D> ConformanceHost::makeItem2D(const std::string& name)
{
    return std::make_shared<DisplayItem2D>(name);
}

void ConformanceHost::setVisibility2D(const std::shared_ptr<DisplayItem2D>& item, DisplayItem2D::Visibility visibility)
{
    item->setVisibility(visibility);
}

} // namespace Brennvik::Conformance
