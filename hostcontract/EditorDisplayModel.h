#pragma once

#include "EditorDisplayItem.h"
#include "EditorDisplayUpdateViewsInterface.h"

#include <functional>

namespace Brennvik {

/// The editor's own model of edit primitives. It is also the view updater of
/// its primitives: updateViews counts the refresh and tells the listener.
class BRENNVIK_HOST_EXPORT EditorDisplayModel : public EditorDisplayUpdateViewsInterface
{
public:
    EditorDisplayModel();
    ~EditorDisplayModel() override;

    const std::vector<std::shared_ptr<EditorDisplayItem>>& getAllEditModelPrimitives() const;

    /// Makes a primitive whose views this model refreshes, and appends it.
    std::shared_ptr<EditorDisplayItem> addEditModelPrimitive(std::string displayName);
    void appendEditModelPrimitive(std::shared_ptr<EditorDisplayItem> primitive);
    /// False when \a primitive is not in the model.
    bool removeEditModelPrimitive(const std::shared_ptr<EditorDisplayItem>& primitive);
    void clear();

    void updateViews() override;
    /// How often updateViews ran.
    int viewUpdateCount() const;
    /// Called after every updateViews; empty to stop.
    void setViewsUpdatedCallback(std::function<void()> callback);

private:
    std::vector<std::shared_ptr<EditorDisplayItem>> m_primitives;
    std::function<void()> m_viewsUpdated;
    int m_viewUpdateCount = 0;
};

} // namespace Brennvik
