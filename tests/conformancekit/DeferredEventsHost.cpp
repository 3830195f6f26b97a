#include "DeferredEventsHost.h"

#include "RootOnlyViewModel.h"

#include <QCoreApplication>
#include <QMetaObject>

namespace Brennvik {

std::string DeferredEventsHost::hostName() const
{
    return "host with deferred events";
}

void DeferredEventsHost::setProperty(const std::shared_ptr<DisplayItemInterface>& item, const std::string& name,
                                     const std::string& value)
{
    ownItem(item)->setProperty(name, value);
}

std::shared_ptr<ViewModelInterface> DeferredEventsHost::makeViewModel(const std::shared_ptr<DisplayItemInterface>& root)
{
    return std::make_shared<RootOnlyViewModel>(root, [](const std::shared_ptr<DisplayItemInterface>& tree) {
        return std::shared_ptr<DisplayItemInterface>(ownItem(tree)->deepCopy());
    });
}

void DeferredEventsHost::setVisibility2D(const std::shared_ptr<DisplayItem2D>& item,
                                         DisplayItem2D::Visibility visibility)
{
    QMetaObject::invokeMethod(
        QCoreApplication::instance(), [item, visibility] { item->setVisibility(visibility); }, Qt::QueuedConnection);
}

} // namespace Brennvik
