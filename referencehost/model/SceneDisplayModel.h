#pragma once

#include <hostcontract/DisplayModel.h>

#include <functional>
#include <map>
#include <memory>
#include <optional>

namespace Brennvik {

class DisplayItem;
class DisplayItemCloneMap;

/// The display model of one view model: a tree of DisplayItems and the entry
/// lookups of the active context. Redraws are counted; a callback (the 3D
/// view's repaint) runs after each.
class BRENNVIK_HOST_EXPORT SceneDisplayModel : public DisplayModel
{
public:
    SceneDisplayModel();
    /// Detaches the tree: items still held elsewhere no longer name this model.
    ~SceneDisplayModel() override;
    SceneDisplayModel(const SceneDisplayModel&) = delete;
    SceneDisplayModel& operator=(const SceneDisplayModel&) = delete;

    /// \name DisplayModel
    ///@{
    DefaultEntryOwner* getDefaultEntryOwner() const override;
    Kind7Source* getKind7Source() const override;
    Kind6Provider* getKind6Provider() const override;
    std::shared_ptr<DisplayItemInterface> getRootDisplayItem() const override;
    std::shared_ptr<Kind7Lookup> getKind7Lookup() const override;
    /// Counts the update by kind, then runs the update callback.
    void doDisplayUpdate(DisplayUpdateKind kind) override;
    /// Counts the update, then runs the update callback.
    void doVisibilityUpdate() override;
    std::shared_ptr<ActiveContext> getActiveContext() const override;
    Kind6Index getKind6Index() const override;
    ///@}

    /// Makes \a root (with its subtree) the model's tree; the previous tree is
    /// detached from the model. An empty root empties the model. Throws
    /// std::invalid_argument for an item that has a parent or belongs to another model.
    void setRootDisplayItem(std::shared_ptr<DisplayItem> root);
    std::shared_ptr<DisplayItem> rootDisplayItem() const;

    void setActiveContext(std::shared_ptr<ActiveContext> context);
    void setKind6Provider(std::shared_ptr<Kind6Provider> provider);
    void setKind6Index(Kind6Index index);
    void setKind7Source(std::shared_ptr<Kind7Source> source);
    void setKind7Lookup(std::shared_ptr<Kind7Lookup> lookup);
    void setDefaultEntryOwner(std::shared_ptr<DefaultEntryOwner> owner);

    /// Copies the active context, the lookups and the kind-6 index of \a other,
    /// re-pointed through \a map at the counterparts of its items. Lookups of
    /// types this host does not know are shared, not copied.
    void copyEntryLookupsFrom(const SceneDisplayModel& other, const DisplayItemCloneMap& map);

    /// How often doDisplayUpdate ran with \a kind.
    int displayUpdateCount(DisplayUpdateKind kind) const;
    /// How often doDisplayUpdate ran, all kinds together.
    int totalDisplayUpdateCount() const;
    /// How often doVisibilityUpdate ran.
    int visibilityUpdateCount() const;
    /// The kind of the last doDisplayUpdate; empty if none ran.
    std::optional<DisplayUpdateKind> lastDisplayUpdateKind() const;
    /// Sets all update counts back to zero.
    void resetUpdateCounts();

    /// Called after every display or visibility update; empty to stop.
    void setUpdateCallback(std::function<void()> callback);

private:
    void runUpdateCallback();

    std::shared_ptr<DisplayItem> m_root;
    std::shared_ptr<ActiveContext> m_activeContext;
    std::shared_ptr<Kind6Provider> m_kind6Provider;
    Kind6Index m_kind6Index = 0;
    std::shared_ptr<Kind7Source> m_kind7Source;
    std::shared_ptr<Kind7Lookup> m_kind7Lookup;
    std::shared_ptr<DefaultEntryOwner> m_defaultEntryOwner;
    std::map<DisplayUpdateKind, int> m_displayUpdateCounts;
    std::optional<DisplayUpdateKind> m_lastDisplayUpdateKind;
    int m_visibilityUpdateCount = 0;
    std::function<void()> m_updateCallback;
};

} // namespace Brennvik
