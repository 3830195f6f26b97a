#pragma once

#include <debugmenucontent/DebugMenuContentExport.h>

#include "ui_DebugCloneDisplayModelDialog.h"

#include <QDialog>

#include <memory>
#include <string>
#include <utility>
#include <vector>

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

    std::shared_ptr<ViewModelInterface> m_viewModel;
    std::shared_ptr<ViewModelInterface> m_clonedViewModel;
    // (message, item text), in the order found.
    std::vector<std::pair<std::string, std::string>> m_differences;
};

} // namespace Brennvik
