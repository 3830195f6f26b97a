#pragma once

#include <hostcontract/HostTypes.h>

class QTreeWidget;
class QTreeWidgetItem;

namespace Brennvik {

/// A (name, value) row of a property pane, not yet in a tree. The name and
/// the value are also their columns' tool tips, so that long ones can be read
/// in full.
QTreeWidgetItem* makePropertyRow(const Property& property);

/// Appends one top-level row per property to \a pane, in the list's order.
void fillPropertyPane(QTreeWidget* pane, const PropertyList& properties);

} // namespace Brennvik
