#pragma once

#include <debugmenucontent/displaymodeldialog/DisplayModelDialog.h>

#include <QList>
#include <QPair>
#include <QString>

#include <memory>

class QHBoxLayout;
class QLabel;
class QTreeWidget;
class QVBoxLayout;

namespace Brennvik {

class DisplayItemTreeWidget;
class DisplayItemTreeWidgetItem;
class ViewModelInterface;

/// What the tests reach of the display model dialog besides its widgets: the
/// clone-mode members (the cloned business pane shares its object name with
/// the original one, so no widget lookup tells them apart), the expansion
/// path and the flags that the path walkers and the mirroring read and write.
class DisplayModelDialogTestAccess
{
public:
    static DisplayItemTreeWidget* clonedTree(DisplayModelDialog& dialog)
    {
        return dialog.m_clonedDisplayItemTreeWidget;
    }
    static DisplayItemTreeWidgetItem* clonedTopRow(DisplayModelDialog& dialog) { return dialog.m_clonedTopRow; }
    static QVBoxLayout* clonedPropertiesColumn(DisplayModelDialog& dialog) { return dialog.m_vl_clonedProperties; }
    static QHBoxLayout* clonedBusinessHeader(DisplayModelDialog& dialog) { return dialog.m_hl_cloned_business_props; }
    static QHBoxLayout* clonedDisplayHeader(DisplayModelDialog& dialog) { return dialog.m_hl_cloned_display_props; }
    static QLabel* clonedBusinessLabel(DisplayModelDialog& dialog) { return dialog.m_lbl_cloned_business_obj_props; }
    static QLabel* clonedDisplayLabel(DisplayModelDialog& dialog) { return dialog.m_lbl_cloned_display_props; }
    static QTreeWidget* clonedBusinessPane(DisplayModelDialog& dialog)
    {
        return dialog.m_clonedBusinessObjectProperties;
    }
    static QTreeWidget* clonedDisplayPane(DisplayModelDialog& dialog) { return dialog.m_clonedDisplayItemProperties; }
    /// Puts panes where clone mode would, for walks driven without it.
    static void setClonedPanes(DisplayModelDialog& dialog, QTreeWidget* businessObjectPane, QTreeWidget* displayPane)
    {
        dialog.m_clonedBusinessObjectProperties = businessObjectPane;
        dialog.m_clonedDisplayItemProperties = displayPane;
    }
    static std::shared_ptr<ViewModelInterface> clonedViewModel(DisplayModelDialog& dialog)
    {
        return dialog.m_clonedViewModel;
    }
    static bool useClone(DisplayModelDialog& dialog) { return dialog.m_useClone; }
    static bool showCloneIn3d(DisplayModelDialog& dialog) { return dialog.m_showCloneIn3d; }
    static QList<QPair<int, QString>>& expandPath(DisplayModelDialog& dialog) { return dialog.m_expandPath; }
    static bool& onlyCompareMirrored(DisplayModelDialog& dialog) { return dialog.m_onlyCompareMirrored; }
    static bool syncingCurrentItem(DisplayModelDialog& dialog) { return dialog.m_syncingCurrentItem; }
};

} // namespace Brennvik
