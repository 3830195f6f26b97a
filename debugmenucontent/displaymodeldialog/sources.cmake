# Sources of the display model dialog, relative to debugmenucontent/.
set(BRENNVIK_DISPLAYMODELDIALOG_SOURCES
    displaymodeldialog/DisplayModelDialog.h
    displaymodeldialog/DisplayModelDialog.cpp
    displaymodeldialog/DisplayModelDialogCloneMode.cpp
)
# Units no host sees: search, the search field's keys and no-match mark, tree
# building, mirroring between the two trees, the clone-mode width and first
# expansion, clone-row marking, the cloned panes and the properties of a row.
set(BRENNVIK_DISPLAYMODELDIALOG_INTERNAL_SOURCES
    displaymodeldialog/CloneModeLayout.h
    displaymodeldialog/CloneModeLayout.cpp
    displaymodeldialog/CloneRowMarking.h
    displaymodeldialog/CloneRowMarking.cpp
    displaymodeldialog/ClonedPanes.h
    displaymodeldialog/ClonedPanes.cpp
    displaymodeldialog/GuardedRow.h
    displaymodeldialog/PropertySearch.h
    displaymodeldialog/PropertySearch.cpp
    displaymodeldialog/SearchField.h
    displaymodeldialog/SearchField.cpp
    displaymodeldialog/NoMatchMark.h
    displaymodeldialog/NoMatchMark.cpp
    displaymodeldialog/RowProperties.h
    displaymodeldialog/RowProperties.cpp
    displaymodeldialog/RowRemovalWatch.h
    displaymodeldialog/TreeBuilding.h
    displaymodeldialog/TreeBuilding.cpp
    displaymodeldialog/TreeMirroring.h
    displaymodeldialog/TreeMirroring.cpp
)
# What an installed library shows of it: the exported dialog and the form it inherits.
set(BRENNVIK_DISPLAYMODELDIALOG_PUBLIC_HEADERS
    displaymodeldialog/DisplayModelDialog.h
)
set(BRENNVIK_DISPLAYMODELDIALOG_EXPORTED_CLASSES
    DisplayModelDialog
)
set(BRENNVIK_DISPLAYMODELDIALOG_FORMS
    displaymodeldialog/DisplayModelDialog.ui
)
