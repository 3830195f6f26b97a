#include "RandomRun.h"

#include <debugmenucontent/displaymodeldialog/DisplayModelDialog.h>
#include <debugmenucontent/treewidgets/DisplayItemTreeWidgetItem.h>

#include <hostcontract/BkHQWidget2D.h>
#include <hostcontract/DisplayItem2D.h>
#include <hostcontract/DisplayModel2D.h>
#include <hostcontract/EditorDisplayModel.h>

#include <referencehost/model/CloneDefect.h>
#include <referencehost/model/DisplayItem.h>
#include <referencehost/model/GeometryModuleItem.h>
#include <referencehost/model/LabelableItem.h>
#include <referencehost/model/SceneViewModel.h>
#include <referencehost/plot2d/PlotLabelItem.h>

#include "Plot2DHost.h"
#include "TestTree.h"

#include <QTreeWidget>

namespace Brennvik::Test {

QString RandomRun::hostAddSubtree()
{
    const auto items = modelItems();
    if (items.empty())
        return QString();
    auto parent = pickFrom(items);
    const int how = pick(3);
    if (how == 0) {
        auto child = makeRandomItem(pick(3));
        const std::size_t index = std::size_t(pick(int(parent->childCount()) + 1));
        note(QStringLiteral("insert %1 at %2 under %3")
                 .arg(QString::fromStdString(child->getDisplayName()))
                 .arg(index)
                 .arg(QString::fromStdString(parent->getDisplayName())));
        parent->insertChild(index, child);
        expectAdded(parent.get(), {child});
    } else if (how == 1) {
        auto child = makeRandomItem(pick(3));
        note(QStringLiteral("append %1 under %2")
                 .arg(QString::fromStdString(child->getDisplayName()),
                      QString::fromStdString(parent->getDisplayName())));
        parent->appendChild(child);
        expectAdded(parent.get(), {child});
    } else {
        std::vector<std::shared_ptr<DisplayItem>> children;
        for (int i = 0, n = 1 + pick(3); i < n; ++i)
            children.push_back(makeRandomItem(1));
        note(QStringLiteral("appendChildren %1 under %2")
                 .arg(children.size())
                 .arg(QString::fromStdString(parent->getDisplayName())));
        parent->appendChildren(children);
        expectAdded(parent.get(), DisplayItemList(children.begin(), children.end()));
    }
    return QString();
}

QString RandomRun::hostRemove()
{
    auto items = modelItems();
    if (items.size() < 2)
        return QString();
    auto item = items[std::size_t(1 + pick(int(items.size()) - 1))];
    DisplayItem* parent = item->parentItem();
    if (!parent)
        return QString();
    DisplayItemSet removed{item};
    if (chance(30)) {
        // Several siblings in one event.
        for (const auto& sibling : parent->children()) {
            if (chance(30))
                removed.insert(sibling);
        }
    }
    note(QStringLiteral("remove %1 items under %2")
             .arg(removed.size())
             .arg(QString::fromStdString(parent->getDisplayName())));
    const auto parentRef = parent->shared_from_this();
    if (removed.size() == 1)
        parent->removeChild(item, false);
    else
        parent->removeChildren(removed, chance(50));
    expectRemoved(parent, removed);
    if (chance(40) && m_detached.size() < 6)
        m_detached.push_back(item);
    return QString();
}

QString RandomRun::hostReattach()
{
    if (m_detached.empty())
        return QString();
    const std::size_t index = std::size_t(pick(int(m_detached.size())));
    auto item = m_detached[index];
    m_detached.erase(m_detached.begin() + std::ptrdiff_t(index));
    const auto items = modelItems();
    if (items.empty() || item->parentItem())
        return QString();
    auto parent = pickFrom(items);
    for (DisplayItem* p = parent.get(); p; p = p->parentItem()) {
        if (p == item.get())
            return QString();
    }
    note(QStringLiteral("reattach %1 under %2")
             .arg(QString::fromStdString(item->getDisplayName()), QString::fromStdString(parent->getDisplayName())));
    parent->appendChild(item);
    expectAdded(parent.get(), {item});
    return QString();
}

QString RandomRun::hostToggleVisible()
{
    std::vector<std::shared_ptr<DisplayItem>> items = modelItems();
    items.insert(items.end(), m_detached.begin(), m_detached.end());
    auto item = pickFrom(items);
    if (!item)
        return QString();
    note(QStringLiteral("visible %1 %2").arg(QString::fromStdString(item->getDisplayName())).arg(!item->isVisible()));
    item->setVisible(!item->isVisible());
    item->notifyVisualPropertiesChanged();
    return QString();
}

QString RandomRun::hostChangeProperties()
{
    auto item = pickFrom(modelItems());
    if (!item)
        return QString();
    const int how = pick(5);
    note(QStringLiteral("properties %1 (%2)").arg(QString::fromStdString(item->getDisplayName())).arg(how));
    switch (how) {
    case 0:
        // The row keeps the name it was built with.
        item->setDisplayName(item->getDisplayName() + "'");
        break;
    case 1:
        item->setBusinessProperty("material", "M" + std::to_string(pick(100)));
        break;
    case 2:
        item->setDisplayProperty("p" + std::to_string(pick(3)), std::to_string(pick(1000)));
        break;
    case 3:
        if (auto labelable = std::dynamic_pointer_cast<LabelableItem>(item))
            labelable->setLabel("label " + std::to_string(pick(100)));
        else
            item->notifyPropertiesChanged();
        break;
    default:
        item->notifyPropertiesChanged();
        break;
    }
    return QString();
}

QString RandomRun::hostToggleSelection()
{
    auto item = pickFrom(modelItems());
    if (!item)
        return QString();
    note(QStringLiteral("selection %1").arg(QString::fromStdString(item->getDisplayName())));
    switch (pick(3)) {
    case 0:
        item->setSelected(!item->isSelected());
        item->notifyVisualPropertiesChanged();
        break;
    case 1:
        item->setSelectionAllowed(!item->isSelectionAllowed());
        break;
    default:
        item->setSelectable(!item->isSelectable());
        break;
    }
    return QString();
}

QString RandomRun::hostDeleteCurrentRowItem()
{
    auto* row = dynamic_cast<DisplayItemTreeWidgetItem*>(m_dialog->m_displayItemTreeWidget->currentItem());
    if (!row)
        return QString();
    auto item = std::dynamic_pointer_cast<DisplayItem>(row->getDisplayItem());
    if (!item || !item->parentItem())
        return QString();
    DisplayItem* parent = item->parentItem();
    const auto parentRef = parent->shared_from_this();
    note(QStringLiteral("deleteCurrent %1").arg(QString::fromStdString(item->getDisplayName())));
    parent->removeChild(item, false);
    expectRemoved(parent, {item});
    return QString();
}

QString RandomRun::hostReplaceViewModel()
{
    const int how = pick(10);
    std::shared_ptr<SceneViewModel> next;
    if (how < 5) {
        next = makeRandomViewModel();
        note(QStringLiteral("replace with a new view model"));
    } else if (how < 7) {
        next = m_spareViewModel;
        note(QStringLiteral("replace with the spare view model (%1)").arg(next ? "set" : "empty"));
    } else if (how < 8) {
        note(QStringLiteral("replace with no view model"));
    } else {
        next = m_viewModel;
        note(QStringLiteral("set the same view model again"));
    }
    replaceViewModel(next);
    if (m_dialog->isEnabled() != (m_viewModel != nullptr))
        return QStringLiteral("dialog enabled %1 with view model %2")
            .arg(m_dialog->isEnabled())
            .arg(m_viewModel != nullptr);
    return QString();
}

QString RandomRun::hostGeometryList()
{
    std::vector<std::shared_ptr<GeometryModuleItem>> modules;
    for (const auto& item : modelItems()) {
        if (auto module = std::dynamic_pointer_cast<GeometryModuleItem>(item))
            modules.push_back(module);
    }
    auto module = pickFrom(modules);
    if (!module)
        return QString();
    note(QStringLiteral("geometry list of %1").arg(QString::fromStdString(module->getDisplayName())));
    const auto entries = module->getGeometryDisplayItems();
    if (!entries.empty() && chance(50)) {
        module->removeGeometryDisplayItem(pickFrom(entries).get());
    } else {
        // Only items of the module's own subtree: the host lists what it groups.
        const auto candidates = hostPreOrder(module);
        if (candidates.size() > 1)
            module->addGeometryDisplayItem(candidates[std::size_t(1 + pick(int(candidates.size()) - 1))]);
    }
    // The list changes silently; a host that changes it tells the item's readers.
    module->notifyPropertiesChanged();
    return QString();
}

QString RandomRun::hostCloneDefects()
{
    if (!m_viewModel)
        return QString();
    DefectList defects;
    const auto items = modelItems();
    const int n = pick(3);
    for (int i = 0; i < n && items.size() > 1; ++i) {
        const auto target = items[std::size_t(1 + pick(int(items.size()) - 1))];
        defects << qMakePair(CloneDefect::Kind(pick(8)), QString::fromStdString(target->getDisplayName()));
    }
    note(QStringLiteral("clone defects %1").arg(defects.size()));
    setDefects(*m_viewModel, defects);
    return QString();
}

QString RandomRun::hostEditor()
{
    if (!m_viewModel)
        return QString();
    note(QStringLiteral("editor primitives"));
    // No event: the rows change only with the next rebuild.
    EditorDisplayModel& editor = m_viewModel->ensureEditorDisplayModel();
    if (!editor.getAllEditModelPrimitives().empty() && chance(50))
        editor.removeEditModelPrimitive(pickFrom(editor.getAllEditModelPrimitives()));
    else
        editor.addEditModelPrimitive("edit " + freshName());
    return QString();
}

QString RandomRun::host2D()
{
    std::vector<DisplayModel2D*> models;
    for (BkHQWidget2D* plot : m_scene.plots)
        models.push_back(Plot2DHost::modelOf(plot));
    models.insert(models.end(), m_scene.labelModels.begin(), m_scene.labelModels.end());
    DisplayModel2D* model = pickFrom(models);
    std::vector<std::shared_ptr<DisplayItem2D>> items;
    std::function<void(const std::shared_ptr<DisplayItem2D>&)> walk = [&](const std::shared_ptr<DisplayItem2D>& i) {
        items.push_back(i);
        for (const auto& c : i->getChildren())
            walk(c);
    };
    walk(model->getRootDisplayItem());
    auto item = pickFrom(items);
    const int how = pick(5);
    if (how == 0) {
        auto child = std::make_shared<DisplayItem2D>("item " + freshName());
        if (chance(40))
            child->appendChild(std::make_shared<DisplayItem2D>("sub " + freshName()));
        note(QStringLiteral("2D add under %1").arg(QString::fromStdString(item->getDisplayName())));
        if (chance(50))
            item->insertChild(std::size_t(pick(int(item->getChildren().size()) + 1)), child);
        else
            item->appendChild(child);
        expect2DAdded(item.get(), child);
    } else if (how == 1 && item->getParent()) {
        DisplayItem2D* parent = item->getParent();
        note(QStringLiteral("2D remove %1").arg(QString::fromStdString(item->getDisplayName())));
        const auto keep = parent->shared_from_this();
        parent->removeChild(item);
        expect2DRemoved(parent, item);
    } else if (how == 2) {
        note(QStringLiteral("2D visibility %1").arg(QString::fromStdString(item->getDisplayName())));
        item->setVisibility(DisplayItem2D::Visibility(pick(3)));
    } else if (how == 3) {
        note(QStringLiteral("2D property %1").arg(QString::fromStdString(item->getDisplayName())));
        item->setDisplayProperty("width", std::to_string(pick(10)));
        item->setBusinessProperty("source", std::to_string(pick(10)));
    } else {
        // Plot widgets and labels shown or hidden: the list changes at its next update.
        if (chance(50) && !m_scene.plots.empty()) {
            BkHQWidget2D* plot = pickFrom(m_scene.plots);
            note(QStringLiteral("2D plot widget visible %1").arg(!plot->isVisible()));
            plot->setVisible(!plot->isVisible());
        } else if (!m_scene.labels.empty()) {
            auto label = pickFrom(m_scene.labels);
            note(QStringLiteral("2D label visible %1").arg(!label->isVisible()));
            label->setVisible(!label->isVisible());
            label->notifyVisualPropertiesChanged();
        }
    }
    return QString();
}

QString RandomRun::hostBreakItem()
{
    std::vector<std::shared_ptr<BrokenItem>> broken;
    for (const auto& item : modelItems()) {
        if (auto b = std::dynamic_pointer_cast<BrokenItem>(item))
            broken.push_back(b);
    }
    auto item = pickFrom(broken);
    if (!item)
        return QString();
    // Silent, as a careless host would be: rows show the change at the next build.
    auto flaws = randomFlaws();
    note(QStringLiteral("break %1 (%2 flaws)").arg(QString::fromStdString(item->getDisplayName())).arg(flaws.size()));
    item->setFlaws(std::move(flaws));
    return QString();
}

} // namespace Brennvik::Test
