#pragma once

class QHBoxLayout;
class QLabel;
class QLayout;
class QSpacerItem;
class QTreeWidget;
class QVBoxLayout;
class QWidget;

namespace Brennvik {

class DisplayItemTreeWidget;

/// The widgets of one cloned property pane: a header row with its title and
/// spacer, and the pane below it.
struct ClonedPane
{
    QHBoxLayout* header;
    QLabel* title;
    QSpacerItem* spacer;
    QTreeWidget* pane;
};

/// The object names and the title (untranslated) of one cloned property pane.
struct ClonedPaneNames
{
    const char* header;
    const char* title;
    const char* titleText;
    const char* pane;
};

/// The cloned tree, made with \a dialog as parent and added to \a mainLayout.
DisplayItemTreeWidget* addClonedTree(QWidget* dialog, QHBoxLayout* mainLayout);

/// A header row and a two-column property pane ("Name", "Value") with the
/// copy entries, parented to \a dialog and appended to \a column in that order. Texts are translated
/// in the dialog form's context.
ClonedPane addClonedPane(QWidget* dialog, QVBoxLayout* column, const ClonedPaneNames& names);

/// Empties \a layout: its widgets are scheduled for deletion, its inner
/// layouts emptied and deleted with its other items. Null does nothing.
void clearLayout(QLayout* layout);

} // namespace Brennvik
