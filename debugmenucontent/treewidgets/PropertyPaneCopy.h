#pragma once

#include <QString>

class QTreeWidget;
class QTreeWidgetItem;

namespace Brennvik {

/// A property row as one line of copied text: its name, a tab, its value.
QString propertyRowLine(const QTreeWidgetItem& row);

/// Every top-level row of \a pane as propertyRowLine writes it, in the pane's
/// order, joined by line breaks; empty for an empty pane.
QString propertyPaneText(const QTreeWidget& pane);

/// Lets the user copy from \a pane. Its rows and its header get a context
/// menu with "Copy value" and "Copy name and value" (enabled on a row) and
/// "Copy all properties" (enabled while the pane has rows); Ctrl+C copies the
/// current row's name and value. Each entry copies what the pane shows when
/// it is chosen, and copies nothing when the row has gone meanwhile. Null
/// does nothing.
void addPropertyCopying(QTreeWidget* pane);

} // namespace Brennvik
