#include "TestTree.h"

#include <referencehost/model/SceneDisplayModel.h>
#include <referencehost/model/SceneViewModel.h>

#include <hostcontract/GeometryModuleDisplayItemInterface.h>
#include <hostcontract/LabelableDisplayItemInterface.h>
#include <hostcontract/ShellDisplayItem.h>

#include <typeinfo>

namespace Brennvik::Test {

namespace {

void appendLines(const std::shared_ptr<DisplayItemInterface>& item, int depth, QStringList& lines)
{
    lines << itemLine(*item, depth);
    for (const auto& child : item->getChildren())
        appendLines(child, depth + 1, lines);
}

QString propertiesText(const PropertyList& properties)
{
    QStringList parts;
    for (const auto& [name, value] : properties) {
        if (name == "pointer" || name == "pointer (DisplayItemInterface)")
            continue;
        parts << QString::fromStdString(name) + '=' + QString::fromStdString(value);
    }
    return parts.join(QStringLiteral("; "));
}

} // namespace

std::shared_ptr<DisplayItem> buildTree(const TreeNode& node)
{
    auto item = std::make_shared<DisplayItem>(node.name);
    item->setVisible(node.visible);
    for (const auto& child : node.children)
        item->appendChild(buildTree(child));
    return item;
}

std::string treeShape(const std::shared_ptr<DisplayItemInterface>& root)
{
    if (!root)
        return {};
    std::string text = root->getDisplayName();
    const DisplayItemList children = root->getChildren();
    if (!children.empty()) {
        text += '(';
        for (std::size_t i = 0; i < children.size(); ++i) {
            if (i)
                text += ',';
            text += treeShape(children[i]);
        }
        text += ')';
    }
    return text;
}

std::shared_ptr<DisplayItem> findItem(const std::shared_ptr<DisplayItemInterface>& root, const std::string& name)
{
    for (const auto& item : preOrder(root)) {
        if (item->getDisplayName() == name)
            return std::dynamic_pointer_cast<DisplayItem>(item);
    }
    return nullptr;
}

DisplayItemList preOrder(const std::shared_ptr<DisplayItemInterface>& root)
{
    DisplayItemList items;
    if (!root)
        return items;
    std::vector<std::shared_ptr<DisplayItemInterface>> pending{root};
    while (!pending.empty()) {
        auto item = std::move(pending.back());
        pending.pop_back();
        const DisplayItemList children = item->getChildren();
        pending.insert(pending.end(), children.rbegin(), children.rend());
        items.push_back(std::move(item));
    }
    return items;
}

QStringList treeLines(const std::shared_ptr<DisplayItemInterface>& root)
{
    QStringList lines;
    if (root)
        appendLines(root, 0, lines);
    return lines;
}

QString itemLine(const DisplayItemInterface& item, int depth)
{
    const auto* displayItem = dynamic_cast<const DisplayItem*>(&item);
    QString line = QString(depth * 2, ' ');
    line += QString::fromStdString(displayItem ? displayItem->typeName() : std::string(typeid(item).name()));
    line += QStringLiteral(" \"%1\"").arg(QString::fromStdString(item.getDisplayName()));
    line += item.isVisible() ? QStringLiteral(" visible") : QStringLiteral(" hidden");
    line += item.isSelected() ? QStringLiteral(" selected") : QStringLiteral(" unselected");
    line += QStringLiteral(" allowed=%1 selectable=%2 children=%3")
                .arg(item.isSelectionAllowed())
                .arg(item.isSelectable())
                .arg(item.getChildren().size());
    if (const auto* shell = dynamic_cast<const ShellDisplayItem*>(&item))
        line += QStringLiteral(" shell=[%1]").arg(QString::fromStdString(shell->getShellTypeAndNameAsString()));
    if (const auto* labelable = dynamic_cast<const LabelableDisplayItemInterface*>(&item))
        line += QStringLiteral(" label=[%1] labels=%2")
                    .arg(QString::fromStdString(labelable->getLabel()))
                    .arg(labelable->areLabelsAllowed());
    if (const auto* module = dynamic_cast<const GeometryModuleDisplayItemInterface*>(&item)) {
        QStringList names;
        for (const auto& geometry : module->getGeometryDisplayItems())
            names << QString::fromStdString(geometry->getDisplayName());
        line += QStringLiteral(" geometry=[%1]").arg(names.join(','));
    }
    PropertyList business;
    PropertyList display;
    item.getProperties(business, display);
    line += QStringLiteral(" business={%1} display={%2}").arg(propertiesText(business), propertiesText(display));
    return line;
}

std::shared_ptr<SceneViewModel> makeViewModel(const std::shared_ptr<DisplayItem>& root)
{
    auto viewModel = std::make_shared<SceneViewModel>();
    viewModel->displayModel().setRootDisplayItem(root);
    return viewModel;
}

void setDefects(SceneViewModel& viewModel, const DefectList& defects)
{
    std::vector<CloneDefect> list;
    for (const auto& defect : defects)
        list.push_back(CloneDefect{defect.first, defect.second.toStdString(), {}, {}});
    viewModel.setCloneDefects(list);
}

} // namespace Brennvik::Test
