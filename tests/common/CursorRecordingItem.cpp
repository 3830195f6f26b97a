#include "CursorRecordingItem.h"

#include <QCursor>
#include <QGuiApplication>

#include <utility>

namespace Brennvik::Test {

int currentOverrideCursor()
{
    const QCursor* cursor = QGuiApplication::overrideCursor();
    return cursor ? int(cursor->shape()) : NoOverrideCursor;
}

CursorRecordingItem::CursorRecordingItem(std::string displayName, std::shared_ptr<CursorLog> log)
    : DisplayItem(std::move(displayName))
    , m_log(std::move(log))
{
}

void CursorRecordingItem::reactInNextCall(Getter getter, std::function<void()> reaction)
{
    m_reactingGetter = getter;
    m_reaction = std::move(reaction);
}

DisplayItemList CursorRecordingItem::getChildren() const
{
    note(Getter::Children);
    return DisplayItem::getChildren();
}

void CursorRecordingItem::getProperties(PropertyList& businessObjectProperties,
                                        PropertyList& displayItemProperties) const
{
    m_log->append(currentOverrideCursor());
    DisplayItem::getProperties(businessObjectProperties, displayItemProperties);
}

bool CursorRecordingItem::isVisible() const
{
    note(Getter::Visibility);
    return DisplayItem::isVisible();
}

std::shared_ptr<DisplayItem> CursorRecordingItem::copyWithoutChildren() const
{
    auto copy = std::make_shared<CursorRecordingItem>(getDisplayName(), m_log);
    copy->copyStateFrom(*this);
    return copy;
}

void CursorRecordingItem::note(Getter getter) const
{
    m_log->append(currentOverrideCursor());
    if (m_reaction && getter == m_reactingGetter)
        std::exchange(m_reaction, {})();
}

std::shared_ptr<CursorRecordingItem> cursorRecordingTree(const std::shared_ptr<CursorLog>& log, int childCount)
{
    auto root = std::make_shared<CursorRecordingItem>("root", log);
    for (int i = 0; i < childCount; ++i) {
        const std::string name = "item " + std::to_string(i);
        auto child = std::make_shared<CursorRecordingItem>(name, log);
        child->appendChild(std::make_shared<CursorRecordingItem>(name + " child", log));
        root->appendChild(child);
    }
    return root;
}

} // namespace Brennvik::Test
