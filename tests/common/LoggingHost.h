#pragma once

#include <hostcontract/DisplayModel.h>
#include <hostcontract/InitialEntryLookups.h>
#include <hostcontract/ViewModelInterface.h>

#include <referencehost/model/DisplayItem.h>

#include <QStringList>

#include <memory>
#include <string>

namespace Brennvik {
class SceneViewModel;
}

namespace Brennvik::Test {

/// The calls that a logging host received, in order: the operation's name,
/// and for an item's getChildren the item's display name ("getChildren root").
using CallLog = std::shared_ptr<QStringList>;

/// A plain display item that notes every getChildren call in the log.
class LoggingItem : public DisplayItem
{
public:
    LoggingItem(std::string displayName, CallLog log);

    DisplayItemList getChildren() const override;

private:
    CallLog m_log;
};

/// The active context and every lookup of the initial entry in one object:
/// each call is noted, and every lookup finds the same entry item.
class LoggingEntryLookups :
    public ActiveContext,
    public Kind6Provider,
    public Kind7Source,
    public Kind7Lookup,
    public DefaultEntryOwner
{
public:
    LoggingEntryLookups(int contextKind, std::shared_ptr<DisplayItemInterface> entry, CallLog log);

    int getContextKind() const override;
    std::shared_ptr<DisplayItemInterface> getDisplayItemAt(Kind6Index index) const override;
    Kind7Key getKey() const override;
    std::shared_ptr<DisplayItemInterface> findDisplayItem(const Kind7Key& key) const override;
    std::shared_ptr<DisplayItemInterface> getEntryDisplayItem() const override;

private:
    int m_contextKind;
    std::weak_ptr<DisplayItemInterface> m_entry;
    CallLog m_log;
};

/// A display model over \a root whose model-level calls are noted; the
/// initial entry comes from \a lookups (none without).
class LoggingDisplayModel : public DisplayModel
{
public:
    LoggingDisplayModel(std::shared_ptr<DisplayItemInterface> root, std::shared_ptr<LoggingEntryLookups> lookups,
                        CallLog log);

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
    std::shared_ptr<LoggingEntryLookups> m_lookups;
    CallLog m_log;
};

/// A view model that shows a LoggingDisplayModel and takes its editor model
/// and its clones from \a scene; getDisplayModel and getEditorDisplayModel are noted.
class LoggingViewModel : public ViewModelInterface
{
public:
    LoggingViewModel(std::shared_ptr<SceneViewModel> scene, std::unique_ptr<LoggingDisplayModel> displayModel,
                     CallLog log);
    ~LoggingViewModel() override;

    std::shared_ptr<ViewModelInterface> cloneViewModel(bool shareGeometry) const override;
    DisplayModel* getDisplayModel() const override;
    EditorDisplayModel* getEditorDisplayModel() const override;
    ViewBase* getView() const override;
    DisplayModel* getLabelDisplayModel() const override;

private:
    std::shared_ptr<SceneViewModel> m_scene;
    std::unique_ptr<LoggingDisplayModel> m_displayModel;
    CallLog m_log;
};

} // namespace Brennvik::Test
