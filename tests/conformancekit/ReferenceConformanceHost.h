#pragma once

#include "TypedConformanceHost.h"

#include <referencehost/model/DisplayItem.h>

namespace Brennvik {

/// The conformance adapter of the reference host: plain DisplayItems in a
/// SceneViewModel, the kit's own tree view.
class ReferenceConformanceHost : public TypedConformanceHost<DisplayItem>
{
public:
    std::string hostName() const override;
    /// A business property of the item.
    void setProperty(const std::shared_ptr<DisplayItemInterface>& item, const std::string& name,
                     const std::string& value) override;
    /// The "pointer" entries: the items' addresses.
    bool isIdentityProperty(const std::string& name) const override;
    std::shared_ptr<ViewModelInterface> makeViewModel(const std::shared_ptr<DisplayItemInterface>& root) override;
};

} // namespace Brennvik
