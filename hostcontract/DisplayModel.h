#pragma once

#include "HostTypes.h"
#include "InitialEntryLookups.h"

namespace Brennvik {

/// The display model of one view model: the tree of display items the
/// application draws, and the entry points to redraw it.
class BRENNVIK_HOST_EXPORT DisplayModel
{
public:
    virtual ~DisplayModel() = default;

    /// May be null.
    virtual DefaultEntryOwner* getDefaultEntryOwner() const = 0;
    /// May be null.
    virtual Kind7Source* getKind7Source() const = 0;
    /// May be null.
    virtual Kind6Provider* getKind6Provider() const = 0;
    /// May be empty (a model that holds nothing yet).
    virtual std::shared_ptr<DisplayItemInterface> getRootDisplayItem() const = 0;
    /// May be empty.
    virtual std::shared_ptr<Kind7Lookup> getKind7Lookup() const = 0;
    /// Redraws after changes; see DisplayUpdate for the kinds.
    virtual void doDisplayUpdate(DisplayUpdateKind kind) = 0;
    /// Redraws after visibility changes.
    virtual void doVisibilityUpdate() = 0;
    /// May be empty.
    virtual std::shared_ptr<ActiveContext> getActiveContext() const = 0;
    /// Index to pass to the kind-6 provider.
    virtual Kind6Index getKind6Index() const = 0;
};

} // namespace Brennvik
