#pragma once

#include <conformancekit/ConformanceHost.h>

namespace Brennvik {

/// The conformance adapter of the reference host: plain DisplayItems in a
/// SceneViewModel, the kit's own tree view.
class ReferenceConformanceHost : public Conformance::ConformanceHost
{
public:
    std::string hostName() const override;
    std::shared_ptr<DisplayItemInterface> makeItem(const std::string& name) override;
    void appendChild(const std::shared_ptr<DisplayItemInterface>& parent,
                     const std::shared_ptr<DisplayItemInterface>& child) override;
    /// A business property of the item.
    void setProperty(const std::shared_ptr<DisplayItemInterface>& item, const std::string& name,
                     const std::string& value) override;
    /// The "pointer" entries: the items' addresses.
    bool isIdentityProperty(const std::string& name) const override;
    std::shared_ptr<ViewModelInterface> makeViewModel(const std::shared_ptr<DisplayItemInterface>& root) override;
};

} // namespace Brennvik
