# Sources of the tree widgets, relative to debugmenucontent/.
set(BRENNVIK_TREEWIDGETS_SOURCES
    treewidgets/DisplayItemTreeWidgetItem.h
    treewidgets/DisplayItemTreeWidgetItem.cpp
    treewidgets/DisplayItemTreeWidget.h
    treewidgets/DisplayItemTreeWidget.cpp
)
# Units no host sees: the edit-model row, row texts and teardown, and the
# child-row index of wide parents.
set(BRENNVIK_TREEWIDGETS_INTERNAL_SOURCES
    treewidgets/ChildRowIndex.h
    treewidgets/ChildRowIndex.cpp
    treewidgets/EditModelTreeWidgetItem.h
    treewidgets/EditModelTreeWidgetItem.cpp
    treewidgets/RowGuard.h
    treewidgets/RowText.h
    treewidgets/RowText.cpp
    treewidgets/RowTeardown.h
    treewidgets/RowTeardown.cpp
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
