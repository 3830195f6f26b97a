# Sources of the tree widgets, relative to debugmenucontent/.
set(BRENNVIK_TREEWIDGETS_SOURCES
    treewidgets/DisplayItemTreeWidgetItem.h
    treewidgets/DisplayItemTreeWidgetItem.cpp
    treewidgets/DisplayItemTreeWidget.h
    treewidgets/DisplayItemTreeWidget.cpp
)
# Units no host sees: the edit-model row, row texts, columns, shared icon data
# and teardown, the row state that tool tips show, the child-row index of wide
# parents, the property pane both dialogs fill, and what every dialog does for
# its users: the wait cursor, keeping tool dialogs open on Escape and copying
# from property panes.
set(BRENNVIK_TREEWIDGETS_INTERNAL_SOURCES
    treewidgets/ChildRowIndex.h
    treewidgets/ChildRowIndex.cpp
    treewidgets/EditModelTreeWidgetItem.h
    treewidgets/EditModelTreeWidgetItem.cpp
    treewidgets/RowGuard.h
    treewidgets/RowState.h
    treewidgets/RowState.cpp
    treewidgets/RowText.h
    treewidgets/RowText.cpp
    treewidgets/RowTeardown.h
    treewidgets/RowTeardown.cpp
    treewidgets/RowColumns.h
    treewidgets/SharedIconData.h
    treewidgets/SharedIconData.cpp
    treewidgets/PropertyPane.h
    treewidgets/PropertyPane.cpp
    treewidgets/WaitCursor.h
    treewidgets/KeepOpenOnEscape.h
    treewidgets/KeepOpenOnEscape.cpp
    treewidgets/PropertyPaneCopy.h
    treewidgets/PropertyPaneCopy.cpp
)
# What an installed library shows of it: the exported row and tree widget.
set(BRENNVIK_TREEWIDGETS_PUBLIC_HEADERS
    treewidgets/DisplayItemTreeWidgetItem.h
    treewidgets/DisplayItemTreeWidget.h
)
set(BRENNVIK_TREEWIDGETS_EXPORTED_CLASSES
    DisplayItemTreeWidgetItem
    DisplayItemTreeWidget
)
set(BRENNVIK_TREEWIDGETS_FORMS
)
