#pragma once

#include "DeferredDisplayItem.h"
#include "TypedConformanceHost.h"

namespace Brennvik {

/// A broken host for the conformance kit: its display items (and its way of
/// changing the visibility of 2D items) deliver events from the event loop
/// instead of inside the call that caused them. Everything else is right.
class DeferredEventsHost : public TypedConformanceHost<DeferredDisplayItem>
{
public:
    std::string hostName() const override;
    void setProperty(const std::shared_ptr<DisplayItemInterface>& item, const std::string& name,
                     const std::string& value) override;
    /// A view model whose clone is a deep copy.
    std::shared_ptr<ViewModelInterface> makeViewModel(const std::shared_ptr<DisplayItemInterface>& root) override;
    /// Applies the visibility later, from the event loop.
    void setVisibility2D(const std::shared_ptr<DisplayItem2D>& item, DisplayItem2D::Visibility visibility) override;
};

} // namespace Brennvik
