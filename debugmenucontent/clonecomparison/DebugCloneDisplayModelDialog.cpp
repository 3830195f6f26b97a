#include "DebugCloneDisplayModelDialog.h"

#include "DifferenceLines.h"

#include <debugmenucontent/treewidgets/DisplayItemTreeWidget.h>
#include <debugmenucontent/treewidgets/DisplayItemTreeWidgetItem.h>
#include <debugmenucontent/treewidgets/WaitCursor.h>

#include <hostcontract/DisplayItemInterface.h>
#include <hostcontract/DisplayModel.h>
#include <hostcontract/ViewModelInterface.h>

#include <QPlainTextEdit>
#include <QString>
#include <QTextBlock>
#include <QTextDocument>

#include <typeinfo>
#include <unordered_set>
#include <vector>

namespace Brennvik {

namespace {

// Empty when the host gives no model, display model or root: a broken host
// then shows empty trees instead of bringing the dialog down.
std::shared_ptr<DisplayItemInterface> rootOf(const std::shared_ptr<ViewModelInterface>& viewModel)
{
    DisplayModel* displayModel = viewModel ? viewModel->getDisplayModel() : nullptr;
    return displayModel ? displayModel->getRootDisplayItem() : nullptr;
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
    // Escape still closes this dialog, unlike the tool dialogs: it is modal,
    // so it cannot be lost behind the application, and it has no button.
    setModal(true);
    // A double click on a difference shows its item in both trees.
    new LineDoubleClickWatch(m_outputTextField, [this](const QTextBlock& line) { showDifferenceAt(line); });

    const WaitCursor waitCursor;
    if (m_viewModel)
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
        if (!root)
            return;
        auto* topRow = new DisplayItemTreeWidgetItem(tree, root, nullptr, false);
        const int position = tree->indexOfTopLevelItem(topRow);
        tree->takeTopLevelItem(position);
        buildTreeRecursively(topRow, root);
        tree->insertTopLevelItem(position, topRow);
    };
    build(m_displayItemTree, rootOf(m_viewModel));
    build(m_clonedDisplayItemTree, rootOf(m_clonedViewModel));
}

// Depth first with an explicit stack, as a recursive build would go: the
// host's tree may be a chain far deeper than the call stack. An empty child
// gets no row; an item met again on its own way down (it lists itself or an
// ancestor) gets a row, and nothing below it.
void DebugCloneDisplayModelDialog::buildTreeRecursively(DisplayItemTreeWidgetItem* row,
                                                        std::shared_ptr<DisplayItemInterface> item)
{
    struct Frame
    {
        DisplayItemTreeWidgetItem* row;
        const DisplayItemInterface* item;
        DisplayItemList children;
        std::size_t next;
    };
    std::unordered_set<const DisplayItemInterface*> onPath{item.get()};
    std::vector<Frame> stack;
    stack.push_back({row, item.get(), item->getChildren(), 0});
    while (!stack.empty()) {
        Frame& frame = stack.back();
        if (frame.next == frame.children.size()) {
            onPath.erase(frame.item);
            stack.pop_back();
            continue;
        }
        const std::shared_ptr<DisplayItemInterface> child = frame.children[frame.next++];
        if (!child)
            continue;
        auto* childRow = new DisplayItemTreeWidgetItem(frame.row, child, nullptr, false);
        if (!onPath.insert(child.get()).second)
            continue;
        DisplayItemList grandChildren = child->getChildren();
        stack.push_back({childRow, child.get(), std::move(grandChildren), 0});
    }
}

void DebugCloneDisplayModelDialog::compareTreeStructure()
{
    // The roots are compared only through their children, never by their own
    // type, identity or visibility: hosts read the report as the differences
    // below the root and rely on it staying so.
    compareDisplayItemsRecursively(rootOf(m_viewModel), rootOf(m_clonedViewModel));

    if (m_differences.empty()) {
        m_outputTextField->setPlainText(QStringLiteral("Trees are equal"));
        return;
    }
    // One entry: the message, the item, and a paragraph holding a line break,
    // which shows as a blank line before the next. Kept as it is: those who
    // read the report back rely on this layout.
    for (std::size_t entry = 0; entry < m_differences.size(); ++entry) {
        const auto& [message, itemText] = m_differences[entry];
        appendReportLines(QString::fromStdString(message), int(entry));
        appendReportLines(QString::fromStdString(itemText), int(entry));
        appendReportLines(QStringLiteral("\n"), -1);
    }
}

void DebugCloneDisplayModelDialog::appendReportLines(const QString& text, int entry)
{
    QTextDocument* document = m_outputTextField->document();
    // The first paragraph fills the empty document's block; later ones start new blocks.
    const int first = document->isEmpty() ? 0 : document->blockCount();
    m_outputTextField->appendPlainText(text);
    if (entry < 0)
        return;
    // The tag moves with its line, whatever is edited above it.
    for (QTextBlock block = document->findBlockByNumber(first); block.isValid(); block = block.next())
        block.setUserState(entry);
}

void DebugCloneDisplayModelDialog::showDifferenceAt(const QTextBlock& line)
{
    const int entry = line.userState();
    if (entry < 0 || std::size_t(entry) >= m_differenceItems.size())
        return;
    // The report names the original's item: with it gone, the line names nothing.
    const std::shared_ptr<DisplayItemInterface> original = m_differenceItems[std::size_t(entry)].first.lock();
    if (!original)
        return;
    showItemRow(m_displayItemTree, original);
    showItemRow(m_clonedDisplayItemTree, m_differenceItems[std::size_t(entry)].second.lock());
}

// Pre-order with an explicit stack, in the order of a recursive walk: the
// findings of a pair come before those of its children. Pairs with an empty
// side are skipped, and a pair whose items are already on the way down (a
// cycle) is compared but not descended into again.
void DebugCloneDisplayModelDialog::compareDisplayItemsRecursively(std::shared_ptr<DisplayItemInterface> original,
                                                                  std::shared_ptr<DisplayItemInterface> cloned)
{
    std::vector<ComparedItems> stack;
    PathItems onPath;
    openComparison(stack, onPath, original, cloned);
    while (!stack.empty()) {
        ComparedItems& frame = stack.back();
        if (frame.next == frame.originalChildren.size()) {
            onPath.original.erase(frame.original.get());
            onPath.cloned.erase(frame.cloned.get());
            stack.pop_back();
            continue;
        }
        const std::size_t i = frame.next++;
        const std::shared_ptr<DisplayItemInterface> originalChild = frame.originalChildren[i];
        const std::shared_ptr<DisplayItemInterface> clonedChild = frame.clonedChildren[i];
        if (compareChildPair(originalChild, clonedChild) && !onPath.holds(originalChild, clonedChild))
            openComparison(stack, onPath, originalChild, clonedChild);
    }
}

void DebugCloneDisplayModelDialog::openComparison(std::vector<ComparedItems>& stack, PathItems& onPath,
                                                  const std::shared_ptr<DisplayItemInterface>& original,
                                                  const std::shared_ptr<DisplayItemInterface>& cloned)
{
    // Only the roots can be empty here: children with an empty side are skipped.
    if (!original || !cloned)
        return;
    DisplayItemList originalChildren = original->getChildren();
    DisplayItemList clonedChildren = cloned->getChildren();

    // Children of lists that do not match by length cannot be paired.
    if (originalChildren.size() != clonedChildren.size()) {
        recordDifference("Child count differs", original, cloned);
        return;
    }
    onPath.original.insert(original.get());
    onPath.cloned.insert(cloned.get());
    stack.push_back({original, cloned, std::move(originalChildren), std::move(clonedChildren), 0});
}

// Records what differs between two children at the same position; true when
// their subtrees are to be compared too. Item texts come from the original
// side; the walk never stops at the first difference.
bool DebugCloneDisplayModelDialog::compareChildPair(const std::shared_ptr<DisplayItemInterface>& originalChild,
                                                    const std::shared_ptr<DisplayItemInterface>& clonedChild)
{
    if (!originalChild || !clonedChild)
        return false;
    const DisplayItemInterface& originalObject = *originalChild;
    const DisplayItemInterface& clonedObject = *clonedChild;
    if (typeid(originalObject) != typeid(clonedObject)) {
        recordDifference("Type differs", originalChild, clonedChild);
        return false;
    }
    if (originalChild == clonedChild) {
        // The clone holds the original object instead of a copy.
        recordDifference("Pointer was copied", originalChild, clonedChild);
        return false;
    }
    if (clonedChild->isVisible() != originalChild->isVisible())
        recordDifference("Visibility differs", originalChild, clonedChild);
    return true;
}

void DebugCloneDisplayModelDialog::recordDifference(const char* message,
                                                    const std::shared_ptr<DisplayItemInterface>& original,
                                                    const std::shared_ptr<DisplayItemInterface>& cloned)
{
    m_differences.emplace_back(message, original->getDescription());
    m_differenceItems.emplace_back(original, cloned);
}

} // namespace Brennvik
