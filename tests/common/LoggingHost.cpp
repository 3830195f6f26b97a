#include "LoggingHost.h"

#include <referencehost/model/SceneViewModel.h>

#include <utility>

namespace Brennvik::Test {

LoggingItem::LoggingItem(std::string displayName, CallLog log)
    : DisplayItem(std::move(displayName))
    , m_log(std::move(log))
{
}

DisplayItemList LoggingItem::getChildren() const
{
    m_log->append(QStringLiteral("getChildren ") + QString::fromStdString(getDisplayName()));
    return DisplayItem::getChildren();
}

LoggingEntryLookups::LoggingEntryLookups(int contextKind, std::shared_ptr<DisplayItemInterface> entry, CallLog log)
    : m_contextKind(contextKind)
    , m_entry(std::move(entry))
    , m_log(std::move(log))
{
}

int LoggingEntryLookups::getContextKind() const
{
    m_log->append(QStringLiteral("getContextKind"));
    return m_contextKind;
}

std::shared_ptr<DisplayItemInterface> LoggingEntryLookups::getDisplayItemAt(Kind6Index /*index*/) const
{
    m_log->append(QStringLiteral("getDisplayItemAt"));
    return m_entry.lock();
}

Kind7Key LoggingEntryLookups::getKey() const
{
    m_log->append(QStringLiteral("getKey"));
    return "entry";
}

std::shared_ptr<DisplayItemInterface> LoggingEntryLookups::findDisplayItem(const Kind7Key& /*key*/) const
{
    m_log->append(QStringLiteral("findDisplayItem"));
    return m_entry.lock();
}

std::shared_ptr<DisplayItemInterface> LoggingEntryLookups::getEntryDisplayItem() const
{
    m_log->append(QStringLiteral("getEntryDisplayItem"));
    return m_entry.lock();
}

LoggingDisplayModel::LoggingDisplayModel(std::shared_ptr<DisplayItemInterface> root,
                                         std::shared_ptr<LoggingEntryLookups> lookups, CallLog log)
    : m_root(std::move(root))
    , m_lookups(std::move(lookups))
    , m_log(std::move(log))
{
}

DefaultEntryOwner* LoggingDisplayModel::getDefaultEntryOwner() const
{
    m_log->append(QStringLiteral("getDefaultEntryOwner"));
    return m_lookups.get();
}

Kind7Source* LoggingDisplayModel::getKind7Source() const
{
    m_log->append(QStringLiteral("getKind7Source"));
    return m_lookups.get();
}

Kind6Provider* LoggingDisplayModel::getKind6Provider() const
{
    m_log->append(QStringLiteral("getKind6Provider"));
    return m_lookups.get();
}

std::shared_ptr<DisplayItemInterface> LoggingDisplayModel::getRootDisplayItem() const
{
    m_log->append(QStringLiteral("getRootDisplayItem"));
    return m_root;
}

std::shared_ptr<Kind7Lookup> LoggingDisplayModel::getKind7Lookup() const
{
    m_log->append(QStringLiteral("getKind7Lookup"));
    return m_lookups;
}

void LoggingDisplayModel::doDisplayUpdate(DisplayUpdateKind /*kind*/)
{
    m_log->append(QStringLiteral("doDisplayUpdate"));
}

void LoggingDisplayModel::doVisibilityUpdate()
{
    m_log->append(QStringLiteral("doVisibilityUpdate"));
}

std::shared_ptr<ActiveContext> LoggingDisplayModel::getActiveContext() const
{
    m_log->append(QStringLiteral("getActiveContext"));
    return m_lookups;
}

Kind6Index LoggingDisplayModel::getKind6Index() const
{
    m_log->append(QStringLiteral("getKind6Index"));
    return 0;
}

LoggingViewModel::LoggingViewModel(std::shared_ptr<SceneViewModel> scene,
                                   std::unique_ptr<LoggingDisplayModel> displayModel, CallLog log)
    : m_scene(std::move(scene))
    , m_displayModel(std::move(displayModel))
    , m_log(std::move(log))
{
}

LoggingViewModel::~LoggingViewModel() = default;

std::shared_ptr<ViewModelInterface> LoggingViewModel::cloneViewModel(bool shareGeometry) const
{
    m_log->append(QStringLiteral("cloneViewModel"));
    return m_scene->cloneViewModel(shareGeometry);
}

DisplayModel* LoggingViewModel::getDisplayModel() const
{
    m_log->append(QStringLiteral("getDisplayModel"));
    return m_displayModel.get();
}

EditorDisplayModel* LoggingViewModel::getEditorDisplayModel() const
{
    m_log->append(QStringLiteral("getEditorDisplayModel"));
    return m_scene->getEditorDisplayModel();
}

ViewBase* LoggingViewModel::getView() const
{
    return m_scene->getView();
}

DisplayModel* LoggingViewModel::getLabelDisplayModel() const
{
    return m_scene->getLabelDisplayModel();
}

} // namespace Brennvik::Test
