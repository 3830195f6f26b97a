#pragma once

#include <QTreeWidgetItem>
#include <QtGlobal>

#include <memory>

class QIcon;

namespace Brennvik {

class DisplayModelDialog;
class EditorDisplayItem;

/// One tree row that stands for one edit primitive of the editor's display
/// model.
///
/// The plain sibling of DisplayItemTreeWidgetItem: the same row text and
/// toggles, but no observer (edit primitives raise no events), so the row
/// refreshes its own icon when it changes the primitive. Holds the
/// primitive weakly; every operation on a gone primitive does nothing.
class EditModelTreeWidgetItem : public QTreeWidgetItem
{
public:
    /// A top-level row of \a parent; column 1 stays empty.
    EditModelTreeWidgetItem(QTreeWidget* parent, std::shared_ptr<EditorDisplayItem> item, DisplayModelDialog* dialog);
    /// A row appended as the last child of \a parent; a non-negative
    /// \a itemIndex is shown in column 1.
    EditModelTreeWidgetItem(QTreeWidgetItem* parent, std::shared_ptr<EditorDisplayItem> item,
                            DisplayModelDialog* dialog, int itemIndex);
    ~EditModelTreeWidgetItem() override;

    /// The row's edit primitive; empty when it no longer exists.
    std::shared_ptr<EditorDisplayItem> getEditorDisplayItem() const;

    /// Flips the primitive's selection when it is selectable. Nothing else:
    /// the views and the dialog are not told.
    void toggleSelection();
    /// Flips the primitive's visibility, refreshes the icon at once, updates
    /// the primitive's views and tells the dialog.
    void toggleVisibility();

private:
    void init(int itemIndex);
    // Spelt so on purpose, as on the display item rows.
    void setVisiblityIcon();

    std::weak_ptr<EditorDisplayItem> m_editorDisplayItem;
    DisplayModelDialog* m_dialog;
    // 0 from construction; nothing reads it. Kept so that the row keeps the
    // layout hosts know.
    qint32 m_reserved;

    // Shared by every edit-model row; created on first use, never freed.
    static QIcon* s_visibleIcon;
    static QIcon* s_notVisibleIcon;
};

} // namespace Brennvik
