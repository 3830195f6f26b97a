#pragma once

#include <hostcontract/DisplayItem2DObserver.h>

#include <QTreeWidgetItem>

#include <memory>

class QIcon;

namespace Brennvik {

class DisplayItem2D;
class DisplayModel2DDialog;

/// One row of the 2D dialog's tree: a 2D display item's name and an eye icon
/// for its visibility. The row follows the item's events and passes them on
/// to its dialog. Unlike a 3D row it keeps its item alive.
class DisplayItemTreeWidgetItem2D : public QTreeWidgetItem, public DisplayItem2DObserver
{
public:
    /// The tree's top-level (root) row.
    DisplayItemTreeWidgetItem2D(QTreeWidget* parent, std::shared_ptr<DisplayItem2D> item, DisplayModel2DDialog* dialog);
    /// A row appended as the last child of \a parent.
    DisplayItemTreeWidgetItem2D(QTreeWidgetItem* parent, std::shared_ptr<DisplayItem2D> item,
                                DisplayModel2DDialog* dialog);
    ~DisplayItemTreeWidgetItem2D() override;

    /// The row's item.
    std::shared_ptr<DisplayItem2D> getDisplayItem();

    /// Shows the eye icon for the item's visibility now. Spelt so on
    /// purpose: hosts call the rows by this name.
    void setVisiblityIcon();
    /// Visible items become not visible, all others visible. The icon
    /// follows with the item's modified event.
    void toggleVisibility();

    void onDisplayItemModified() override;
    void onChildAdded(DisplayItem2D* parent, std::shared_ptr<DisplayItem2D> child) override;
    void onChildRemoved(DisplayItem2D* parent, std::shared_ptr<DisplayItem2D> child) override;

private:
    /// What both constructors do once the row is in its tree: takes the row's
    /// data, shows the item and starts observing it.
    void init(std::shared_ptr<DisplayItem2D> item, DisplayModel2DDialog* dialog);
    static QIcon* getVisibleIcon();
    static QIcon* getNotVisibleIcon();

    std::shared_ptr<DisplayItem2D> m_displayItem;
    DisplayModel2DDialog* m_dialog = nullptr;

    static QIcon* s_visibleIcon;
    static QIcon* s_notVisibleIcon;
};

} // namespace Brennvik
