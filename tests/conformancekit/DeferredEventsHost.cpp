#include "DeferredEventsHost.h"

#include "DeferredDisplayItem.h"
#include "RootOnlyViewModel.h"

#include <QCoreApplication>
#include <QMetaObject>

#include <stdexcept>

namespace Brennvik {

namespace {

std::shared_ptr<DeferredDisplayItem> deferredItem(const std::shared_ptr<DisplayItemInterface>& item)
{
    auto deferred = std::dynamic_pointer_cast<DeferredDisplayItem>(item);
    if (!deferred)
        throw std::invalid_argument("not an item of the deferred-events host");
    return deferred;
}

} // namespace

std::string DeferredEventsHost::hostName() const
{
    return "host with deferred events";
}

std::shared_ptr<DisplayItemInterface> DeferredEventsHost::makeItem(const std::string& name)
{
    return std::make_shared<DeferredDisplayItem>(name);
}

void DeferredEventsHost::appendChild(const std::shared_ptr<DisplayItemInterface>& parent,
                                     const std::shared_ptr<DisplayItemInterface>& child)
{
    deferredItem(parent)->appendChild(deferredItem(child));
}

void DeferredEventsHost::setProperty(const std::shared_ptr<DisplayItemInterface>& item, const std::string& name,
                                     const std::string& value)
{
    deferredItem(item)->setProperty(name, value);
}

std::shared_ptr<ViewModelInterface> DeferredEventsHost::makeViewModel(const std::shared_ptr<DisplayItemInterface>& root)
{
    return std::make_shared<RootOnlyViewModel>(root, [](const std::shared_ptr<DisplayItemInterface>& tree) {
        return std::shared_ptr<DisplayItemInterface>(deferredItem(tree)->deepCopy());
    });
}

void DeferredEventsHost::setVisibility2D(const std::shared_ptr<DisplayItem2D>& item,
                                         DisplayItem2D::Visibility visibility)
{
    QMetaObject::invokeMethod(
        QCoreApplication::instance(), [item, visibility] { item->setVisibility(visibility); }, Qt::QueuedConnection);
}

} // namespace Brennvik
