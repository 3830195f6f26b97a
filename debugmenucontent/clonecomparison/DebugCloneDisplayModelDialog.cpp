#include "DebugCloneDisplayModelDialog.h"

#include <debugmenucontent/treewidgets/DisplayItemTreeWidget.h>
#include <debugmenucontent/treewidgets/DisplayItemTreeWidgetItem.h>

#include <hostcontract/DisplayItemInterface.h>
#include <hostcontract/DisplayModel.h>
#include <hostcontract/ViewModelInterface.h>

#include <QPlainTextEdit>
#include <QString>

#include <typeinfo>

namespace Brennvik {

namespace {

std::shared_ptr<DisplayItemInterface> rootOf(const std::shared_ptr<ViewModelInterface>& viewModel)
{
    return viewModel->getDisplayModel()->getRootDisplayItem();
}

} // namespace

DebugCloneDisplayModelDialog::DebugCloneDisplayModelDialog(QWidget* parent,
                                                           std::shared_ptr<ViewModelInterface> viewModel)
    : QDialog(parent, Qt::WindowFlags())
    , m_viewModel(std::move(viewModel))
    , m_clonedViewModel()
    , m_differences()
{
    setupUi(this);
    setModal(true);

    m_clonedViewModel = m_viewModel->cloneViewModel(false);
    rebuildTrees();
    compareTreeStructure();
}

// The members release the differences, the clone and then the view model.
DebugCloneDisplayModelDialog::~DebugCloneDisplayModelDialog() = default;

void DebugCloneDisplayModelDialog::rebuildTrees()
{
    // Runs once, on empty trees. The rows follow no dialog: they only keep
    // their own icons up to date.
    // Each subtree is built with its top row out of the tree and put back in
    // one insertion: rows added under a shown row each cost the view a
    // notification.
    const auto build = [this](QTreeWidget* tree, const std::shared_ptr<DisplayItemInterface>& root) {
        auto* topRow = new DisplayItemTreeWidgetItem(tree, root, nullptr, false);
        const int position = tree->indexOfTopLevelItem(topRow);
        tree->takeTopLevelItem(position);
        buildTreeRecursively(topRow, root);
        tree->insertTopLevelItem(position, topRow);
    };
    build(m_displayItemTree, rootOf(m_viewModel));
    build(m_clonedDisplayItemTree, rootOf(m_clonedViewModel));
}

void DebugCloneDisplayModelDialog::buildTreeRecursively(DisplayItemTreeWidgetItem* row,
                                                        std::shared_ptr<DisplayItemInterface> item)
{
    for (const std::shared_ptr<DisplayItemInterface>& child : item->getChildren()) {
        auto* childRow = new DisplayItemTreeWidgetItem(row, child, nullptr, false);
        buildTreeRecursively(childRow, child);
    }
}

void DebugCloneDisplayModelDialog::compareTreeStructure()
{
    compareDisplayItemsRecursively(rootOf(m_viewModel), rootOf(m_clonedViewModel));

    if (m_differences.empty()) {
        m_outputTextField->setPlainText(QStringLiteral("Trees are equal"));
        return;
    }
    // One entry: the message, the item, and a blank line before the next.
    for (const auto& [message, itemText] : m_differences) {
        m_outputTextField->appendPlainText(QString::fromStdString(message));
        m_outputTextField->appendPlainText(QString::fromStdString(itemText));
        m_outputTextField->appendPlainText(QStringLiteral("\n"));
    }
}

void DebugCloneDisplayModelDialog::compareDisplayItemsRecursively(std::shared_ptr<DisplayItemInterface> original,
                                                                  std::shared_ptr<DisplayItemInterface> cloned)
{
    const DisplayItemList originalChildren = original->getChildren();
    const DisplayItemList clonedChildren = cloned->getChildren();

    // Children of lists that do not match by length cannot be paired.
    if (originalChildren.size() != clonedChildren.size()) {
        m_differences.emplace_back("Child count differs", original->getDescription());
        return;
    }

    // Item texts come from the original side; the walk never stops at the
    // first difference.
    for (std::size_t i = 0; i < originalChildren.size(); ++i) {
        const std::shared_ptr<DisplayItemInterface>& originalChild = originalChildren[i];
        const std::shared_ptr<DisplayItemInterface>& clonedChild = clonedChildren[i];

        const DisplayItemInterface& originalObject = *originalChild;
        const DisplayItemInterface& clonedObject = *clonedChild;
        if (typeid(originalObject) != typeid(clonedObject)) {
            m_differences.emplace_back("Type differs", originalChild->getDescription());
            continue;
        }
        if (originalChild == clonedChild) {
            // The clone holds the original object instead of a copy.
            m_differences.emplace_back("Pointer was copied", originalChild->getDescription());
            continue;
        }
        if (clonedChild->isVisible() != originalChild->isVisible())
            m_differences.emplace_back("Visibility differs", originalChild->getDescription());
        compareDisplayItemsRecursively(originalChild, clonedChild);
    }
}

} // namespace Brennvik
