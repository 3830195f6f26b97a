#pragma once

#include "HostTypes.h"
#include "HostExport.h"

namespace Brennvik {

class EditorDisplayUpdateViewsInterface;

/// One edit primitive of the editor's display model (a pick point, a guide
/// line, a cutting plane). Has no observers: its state is read when needed.
class BRENNVIK_HOST_EXPORT EditorDisplayItem
{
public:
    /// \a viewUpdater refreshes the views that show this primitive; not owned, never null.
    EditorDisplayItem(std::string displayName, EditorDisplayUpdateViewsInterface* viewUpdater);
    virtual ~EditorDisplayItem();

    bool isSelectable() const;
    void setSelectable(bool selectable);
    bool isSelected() const;
    void setIsSelected(bool selected);
    bool isVisible() const;
    void setIsVisible(bool visible);
    EditorDisplayUpdateViewsInterface* getViewUpdater() const;

    virtual std::string getDisplayName() const;
    /// Appends the primitive's (name, value) pairs.
    virtual void getProperties(PropertyList& properties) const;

    /// Replaces the primitive's own properties.
    void setProperties(PropertyList properties);

private:
    std::string m_displayName;
    EditorDisplayUpdateViewsInterface* m_viewUpdater;
    PropertyList m_properties;
    bool m_selectable = true;
    bool m_selected = false;
    bool m_visible = true;
};

} // namespace Brennvik
