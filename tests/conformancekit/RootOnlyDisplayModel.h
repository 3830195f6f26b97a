#pragma once

#include <hostcontract/DisplayModel.h>

namespace Brennvik {

/// A display model that holds a root and nothing else: no entry lookups,
/// updates that draw nothing. Enough for the conformance doubles.
class RootOnlyDisplayModel : public DisplayModel
{
public:
    explicit RootOnlyDisplayModel(std::shared_ptr<DisplayItemInterface> root);
    ~RootOnlyDisplayModel() override;

    DefaultEntryOwner* getDefaultEntryOwner() const override;
    Kind7Source* getKind7Source() const override;
    Kind6Provider* getKind6Provider() const override;
    std::shared_ptr<DisplayItemInterface> getRootDisplayItem() const override;
    std::shared_ptr<Kind7Lookup> getKind7Lookup() const override;
    void doDisplayUpdate(DisplayUpdateKind kind) override;
    void doVisibilityUpdate() override;
    std::shared_ptr<ActiveContext> getActiveContext() const override;
    Kind6Index getKind6Index() const override;

private:
    std::shared_ptr<DisplayItemInterface> m_root;
};

} // namespace Brennvik
