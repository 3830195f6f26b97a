#pragma once

#include <referencehost/model/DisplayItem.h>

#include <QList>

#include <functional>
#include <memory>
#include <string>

namespace Brennvik::Test {

/// The override cursors seen inside host calls, one entry per call: the
/// cursor's shape, or NoOverrideCursor when the application had none.
using CursorLog = QList<int>;
constexpr int NoOverrideCursor = -1;

/// The application's override cursor now, as CursorLog notes it.
int currentOverrideCursor();

/// A display item that notes the application's override cursor each time a
/// dialog asks it for its children, its properties or its visibility: what a
/// user sees while the host works. Its copies (the clone's items) note into
/// the same log.
class CursorRecordingItem : public DisplayItem
{
public:
    enum class Getter { Children, Visibility };

    CursorRecordingItem(std::string displayName, std::shared_ptr<CursorLog> log);

    /// Runs \a reaction inside the next call of \a getter (getChildren or
    /// isVisible), once, after noting the cursor.
    void reactInNextCall(Getter getter, std::function<void()> reaction);

    DisplayItemList getChildren() const override;
    void getProperties(PropertyList& businessObjectProperties, PropertyList& displayItemProperties) const override;
    bool isVisible() const override;
    std::shared_ptr<DisplayItem> copyWithoutChildren() const override;

private:
    // Notes the cursor, then runs the reaction if one is due for \a getter.
    void note(Getter getter) const;

    std::shared_ptr<CursorLog> m_log;
    Getter m_reactingGetter = Getter::Children;
    // Mutable: the getters are const, as the host's are.
    mutable std::function<void()> m_reaction;
};

/// A root with \a childCount children, each with one child, all noting into \a log.
std::shared_ptr<CursorRecordingItem> cursorRecordingTree(const std::shared_ptr<CursorLog>& log, int childCount = 3);

} // namespace Brennvik::Test
