#pragma once

#include <hostcontract/HostTypes.h>

class QTreeWidget;
class QTreeWidgetItem;

namespace Brennvik {

class DisplayItemTreeWidgetItem;

/// The property lists of a display item row: the host's own pairs, then, for
/// a labelable item, its label and whether labels are allowed, last in the
/// display-item list. Both lists stay empty when the row is null or its item
/// has gone.
void collectDisplayItemProperties(const DisplayItemTreeWidgetItem* row, PropertyList& businessObjectProperties,
                                  PropertyList& displayItemProperties);

/// The property lists of any row of the display model dialog's tree: a
/// display item row's as above; an edit-model row's single list goes to the
/// display-item list; other rows have none.
void collectRowProperties(const QTreeWidgetItem* row, PropertyList& businessObjectProperties,
                          PropertyList& displayItemProperties);

/// Empties \a pane and fills it with \a cloned, colouring each value against
/// the pair at the same position of \a original when \a compare is set: red
/// when it differs, light grey when it is equal or not compared. Returns
/// whether a value differed; a null pane is left out, the comparison is made
/// all the same.
bool fillComparedPane(QTreeWidget* pane, const PropertyList& cloned, const PropertyList& original, bool compare);

} // namespace Brennvik
