#pragma once

#include <debugmenucontent/DebugMenuContentExport.h>

#include "ui_DebugCloneDisplayModelDialog.h"

#include <QDialog>

#include <memory>
#include <string>
#include <unordered_set>
#include <utility>
#include <vector>

class QTextBlock;

namespace Brennvik {

class DisplayItemInterface;
class DisplayItemTreeWidgetItem;
class ViewModelInterface;

/// A modal one-shot check of a view model's clone.
///
/// Clones the view model once, at construction, shows the display-item trees
/// of the original and of the clone side by side, and lists below them every
/// structural difference of the clone (child counts, types, shared objects,
/// visibility), or "Trees are equal". Nothing is recomputed afterwards; the
/// clone lives as long as the dialog.
class BRENNVIK_DEBUGMENU_EXPORT DebugCloneDisplayModelDialog :
    public QDialog,
    public Ui::DebugCloneDisplayModelDialogClass
{
    Q_OBJECT
public:
    /// Clones \a viewModel, builds both trees and writes the report. The view
    /// model must have a display model with a root item.
    DebugCloneDisplayModelDialog(QWidget* parent, std::shared_ptr<ViewModelInterface> viewModel);
    ~DebugCloneDisplayModelDialog() override;

private:
    void rebuildTrees();
    void compareTreeStructure();
    void buildTreeRecursively(DisplayItemTreeWidgetItem* row, std::shared_ptr<DisplayItemInterface> item);
    void compareDisplayItemsRecursively(std::shared_ptr<DisplayItemInterface> original,
                                        std::shared_ptr<DisplayItemInterface> cloned);

    // Two items whose children are being compared, and the next child position.
    struct ComparedItems
    {
        std::shared_ptr<DisplayItemInterface> original;
        std::shared_ptr<DisplayItemInterface> cloned;
        std::vector<std::shared_ptr<DisplayItemInterface>> originalChildren;
        std::vector<std::shared_ptr<DisplayItemInterface>> clonedChildren;
        std::size_t next;
    };
    // The items of both sides on the way down to the pair compared now.
    struct PathItems
    {
        std::unordered_set<const DisplayItemInterface*> original;
        std::unordered_set<const DisplayItemInterface*> cloned;
        bool holds(const std::shared_ptr<DisplayItemInterface>& originalItem,
                   const std::shared_ptr<DisplayItemInterface>& clonedItem) const
        {
            return original.count(originalItem.get()) > 0 || cloned.count(clonedItem.get()) > 0;
        }
    };
    void openComparison(std::vector<ComparedItems>& stack, PathItems& onPath,
                        const std::shared_ptr<DisplayItemInterface>& original,
                        const std::shared_ptr<DisplayItemInterface>& cloned);
    bool compareChildPair(const std::shared_ptr<DisplayItemInterface>& originalChild,
                          const std::shared_ptr<DisplayItemInterface>& clonedChild);
    void recordDifference(const char* message, const std::shared_ptr<DisplayItemInterface>& original,
                          const std::shared_ptr<DisplayItemInterface>& cloned);
    // Appends a paragraph; \a entry >= 0 tags its lines with the entry they belong to.
    void appendReportLines(const QString& text, int entry);
    void showDifferenceAt(const QTextBlock& line);

    std::shared_ptr<ViewModelInterface> m_viewModel;
    std::shared_ptr<ViewModelInterface> m_clonedViewModel;
    // (message, item text), in the order found.
    std::vector<std::pair<std::string, std::string>> m_differences;
    // Per difference, the items it is about on either side, held weakly:
    // a double click on its lines shows them in the trees.
    std::vector<std::pair<std::weak_ptr<DisplayItemInterface>, std::weak_ptr<DisplayItemInterface>>> m_differenceItems;
};

} // namespace Brennvik
