#pragma once

#include <hostcontract/DisplayItemInterface.h>
#include <hostcontract/DisplayItemTreeTraverser.h>

#include <memory>
#include <typeinfo>

namespace Brennvik {

/// How DisplayItemTypeFilter<T> tells an item of type T: a dynamic cast.
/// Specialisable, e.g. to count the casts.
template<typename T>
struct DisplayItemTypeCast
{
    /// The item as a T, sharing its ownership; empty when it is none.
    static std::shared_ptr<T> cast(const std::shared_ptr<DisplayItemInterface>& item)
    {
        return std::dynamic_pointer_cast<T>(item);
    }
};

/// A visitor of a display item walk that passes on the items of type T only.
///
/// It remembers the dynamic type of the last item that was not a T, so that
/// a run of items of one other type costs one cast, not one per item.
template<typename T>
class DisplayItemTypeFilter : public DisplayItemTreeTraverser::NodeProcessorInterface
{
public:
    DisplayItemTypeFilter() = default;
    ~DisplayItemTypeFilter() override = default;

    /// Calls processTypedNode when \a item is a T.
    void processNode(std::shared_ptr<DisplayItemInterface> item) override
    {
        if (!item)
            return;
        const std::type_info& type = typeid(*item);
        if (m_lastRejectedType && *m_lastRejectedType == type)
            return;
        if (std::shared_ptr<T> typed = DisplayItemTypeCast<T>::cast(item))
            processTypedNode(std::move(typed)); // a match leaves the cache alone
        else
            m_lastRejectedType = &type;
    }

    /// Called once for each visited item of type T.
    virtual void processTypedNode(std::shared_ptr<T> item) = 0;

private:
    const std::type_info* m_lastRejectedType = nullptr;
};

} // namespace Brennvik
