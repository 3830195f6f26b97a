#pragma once

#include <debugmenucontent/DebugMenuContentExport.h>

#include "ViewModelHolder.h"
#include "ui_DisplayModel2DDialog.h"

#include <QDialog>
#include <QPointer>

#include <memory>
#include <string>
#include <vector>

class QShowEvent;
class QTreeWidgetItem;

namespace Brennvik {

class BkHQWidget2D;
class DisplayItem2D;
class DisplayItemTreeWidgetItem2D;
class DisplayModel2D;
class MainWindowPresenter;
class PlotLabelDisplayItem;
struct PlacedPlotLabel;
class ViewModelInterface;

/// The debugging dialog of the 2D plots' display models.
///
/// Lists the plots on screen (plot widgets first, then the plot labels of
/// the 3D view, each by its screen position), shows the display item tree
/// of the plot chosen in the list, prints the current row's properties, and
/// toggles an item's visibility on double click.
class BRENNVIK_DEBUGMENU_EXPORT DisplayModel2DDialog :
    public QDialog,
    public ViewModelHolder,
    public Ui::DisplayModel2DDialogClass
{
    Q_OBJECT
public:
    /// \a presenter gives the plot widgets; it must outlive the dialog.
    DisplayModel2DDialog(const MainWindowPresenter& presenter, QWidget* parent);
    ~DisplayModel2DDialog() override;

    /// Keeps \a viewModel weakly for the plot labels of its 3D view. Unlike
    /// the holder's own, it leaves the dialog enabled either way.
    void setViewModel(std::shared_ptr<ViewModelInterface> viewModel) override;

    /// The display model of the list row last reported; null when there is
    /// none or its plot has none.
    DisplayModel2D* getDisplayModelOfSelectedPlot() const;
    /// Shows \a model (not owned, may be null) in the tree.
    void setDisplayModel2D(DisplayModel2D* model);

    /// Refreshes the icons of the rows below \a item (the root row for
    /// null, which needs a tree built before); \a item's own stays.
    /// Spelt so on purpose: hosts call it by this name.
    void updateVisiblity(QTreeWidgetItem* item);

    /// \name Row callbacks
    ///@{
    /// \a child was added to the item of \a row: its subtree is appended as the last rows.
    void displayItemAdded(DisplayItemTreeWidgetItem2D* row, std::shared_ptr<DisplayItem2D> child);
    /// \a child was removed from the item of \a row: the first row showing it goes.
    void displayItemRemoved(DisplayItemTreeWidgetItem2D* row, std::shared_ptr<DisplayItem2D> child);
    /// The item of \a row changed: its properties are printed again when it is current.
    void displayItemModified(DisplayItemTreeWidgetItem2D* row);
    /// Prints the current row's properties once for each time its item is in \a items.
    void displayItemsModified(const std::vector<std::shared_ptr<DisplayItem2D>>& items);
    ///@}

protected:
    /// Lists the plots again each time the dialog is shown.
    void showEvent(QShowEvent* event) override;

private slots:
    void onDisplayItemTreeWidgetCurrentItemChanged(QTreeWidgetItem* current, QTreeWidgetItem* previous);
    void onDisplayItemTreeWidgetItemDoubleClicked(QTreeWidgetItem* item, int column);
    void onUpdateListPBClicked();

private:
    void onPlotWidgetSelectionChanged(int row);
    void rebuildTree();
    void buildTreeRecursively(DisplayItemTreeWidgetItem2D* parentRow, std::shared_ptr<DisplayItem2D> item);
    void addChildRecursively(DisplayItemTreeWidgetItem2D* parentRow, std::shared_ptr<DisplayItem2D> item);
    void printProperties(const QTreeWidgetItem* item);

    // The listing's steps, in the order onUpdateListPBClicked takes them.
    void clearListing();
    void guardPlotWidgets();
    void listPlotWidgets(float pixelRatio);
    void listPlotLabels(const std::vector<PlacedPlotLabel>& placedLabels);
    void appendListRow(const std::string& text);
    void selectFirstRowWhenNoneIs();

    const MainWindowPresenter* m_mainWindowPresenter;
    std::vector<BkHQWidget2D*> m_plotWidgets;
    std::vector<PlotLabelDisplayItem*> m_plotLabels;
    int m_selectedIndex;
    DisplayItemTreeWidgetItem2D* m_rootItem;
    DisplayModel2D* m_displayModel2D;
    // Parallel to m_plotWidgets and m_plotLabels: tell whether a listed plot
    // widget or label still exists before a picked row reads it.
    std::vector<QPointer<BkHQWidget2D>> m_plotWidgetGuards;
    std::vector<std::weak_ptr<PlotLabelDisplayItem>> m_plotLabelGuards;
};

} // namespace Brennvik
