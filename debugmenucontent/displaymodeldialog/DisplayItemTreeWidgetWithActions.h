#pragma once

// Lets a Designer form hold a DisplayItemTreeWidget with its display item
// actions.
//
// uic can only write `new <class>(<parent>)`, while the tree widget also
// needs its bool. The form names its custom widget
// Brennvik::DisplayItemTreeWidgetWithActions, and this header makes both
// places where uic writes that name mean the real class:
// - the member declaration `Brennvik::DisplayItemTreeWidgetWithActions *m;`
//   is not followed by '(', so it reads the alias below: the member is a
//   plain DisplayItemTreeWidget pointer;
// - the creation `new Brennvik::DisplayItemTreeWidgetWithActions(parent)`
//   expands the function-like macro below into
//   `new Brennvik::DisplayItemTreeWidget(parent, true)`.
// No subclass is involved: the form's tree is exactly a DisplayItemTreeWidget.

#include <debugmenucontent/treewidgets/DisplayItemTreeWidget.h>

namespace Brennvik {

using DisplayItemTreeWidgetWithActions = DisplayItemTreeWidget;

} // namespace Brennvik

#define DisplayItemTreeWidgetWithActions(parent) DisplayItemTreeWidget((parent), true)
