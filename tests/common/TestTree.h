#pragma once

#include <referencehost/model/CloneDefect.h>
#include <referencehost/model/DisplayItem.h>

#include <QList>
#include <QPair>
#include <QString>
#include <QStringList>

#include <memory>
#include <string>
#include <vector>

namespace Brennvik {
class SceneViewModel;
}

namespace Brennvik::Test {

/// A display item tree written as a nested initializer list:
///     buildTree({"root", {{"a", {{"a1"}, {"a2", {}, false}}}, {"b"}}})
/// makes plain DisplayItems named root, a, a1, a2 (hidden) and b.
struct TreeNode
{
    std::string name;
    std::vector<TreeNode> children = {};
    bool visible = true;
};

/// Builds the tree of \a node from plain DisplayItems; returns its root.
std::shared_ptr<DisplayItem> buildTree(const TreeNode& node);

/// The subtree's structure as text, e.g. "root(a(a1,a2),b)".
std::string treeShape(const std::shared_ptr<DisplayItemInterface>& root);

/// The first item of \a root's subtree in pre-order named \a name; empty if none.
std::shared_ptr<DisplayItem> findItem(const std::shared_ptr<DisplayItemInterface>& root, const std::string& name);

/// The items of \a root's subtree in pre-order, walked through getChildren.
DisplayItemList preOrder(const std::shared_ptr<DisplayItemInterface>& root);

/// One line per item in pre-order with everything a faithful copy keeps and
/// nothing that must differ: depth, concrete type, name, visibility, selection
/// and its flags, child count, shell, label, geometry list (by names) and both
/// property lists without their pointer entries. Two trees are equal in all of
/// that exactly when their lines are equal.
QStringList treeLines(const std::shared_ptr<DisplayItemInterface>& root);

/// The line treeLines writes for \a item at \a depth.
QString itemLine(const DisplayItemInterface& item, int depth);

/// A view model whose display model holds \a root (nothing else).
std::shared_ptr<SceneViewModel> makeViewModel(const std::shared_ptr<DisplayItem>& root);

/// Clone defects as (kind, target name) pairs, for data-driven tests.
using DefectList = QList<QPair<CloneDefect::Kind, QString>>;

/// Makes every clone of \a viewModel carry \a defects (property and value left empty).
void setDefects(SceneViewModel& viewModel, const DefectList& defects);

} // namespace Brennvik::Test
